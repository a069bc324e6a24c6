// The range that "rw-test" takes from its arguments.
#include <gmock/gmock.h>

#include "i2c/i2c_eeprom_rw_test.h"
#include "tests/i2c/eeprom_rw_test.h"

namespace {

using testing::IsEmpty;

// A part, the arguments, and the transfers with which the range is read.
struct CSetup {
    std::string name;
    uint32_t mem_size;
    uint8_t xfer_unit;
    std::vector<uint16_t> arguments;
    CCalls chunks;
};
void PrintTo(const CSetup& setup, std::ostream* out) {
    *out << setup.name;
}
std::string NameOf(const testing::TestParamInfo<CSetup>& info) {
    return info.param.name;
}

struct CWords {
    std::vector<uint16_t> words;
};
COutMsg& operator<<(COutMsg& out, const CWords& words) {
    for (const uint16_t word : words.words) {
        out << word;
    }
    return out;
}

class I2cEepromRwSetup : public CEepromRwTest {
  protected:
    void MountFor(uint32_t mem_size, uint8_t xfer_unit) {
        i2c_eeprom_attr_t attr = Part(mem_size, 255);
        attr.xfer_unit = xfer_unit;
        Mount(attr);
        // The save phase shows the range; no more is needed.
        m_bus.OnTransfer([this](size_t, const CI2cXfrReq& req) {
            if (req.dir == 0) {
                Send(Node("rw-test"), MSG_STOP);
            }
        });
    }
    // The reads that come before the first write.
    CCalls SaveReads() const {
        CCalls reads;
        for (const std::string& call : Calls()) {
            if (call.rfind("RD ", 0) != 0) {
                break;
            }
            reads.push_back(call.substr(3));
        }
        return reads;
    }
};

class I2cEepromRwRange : public I2cEepromRwSetup, public testing::WithParamInterface<CSetup> {};
INSTANTIATE_TEST_SUITE_P(
    , I2cEepromRwRange,
    testing::Values(CSetup{"AllByDefault", 256, 1, {}, {"0+255", "255+1"}},
                    CSetup{"StartAlone", 256, 1, {250}, {"250+6"}},
                    CSetup{"BothEnds", 256, 1, {5, 9}, {"5+5"}},
                    CSetup{"Reversed", 256, 1, {100, 10}, {"10+91"}},
                    CSetup{"StartAtTheLimit", 256, 1, {255, 250}, {"250+6"}},
                    CSetup{"LastAddress", 256, 1, {254, 255}, {"254+2"}},
                    CSetup{"UnitOf16ByDefault", 256, 16, {}, {"0+241"}},
                    CSetup{"UnitOf16AtTheLimit", 256, 16, {238, 240}, {"238+3"}},
                    CSetup{"UnitOf0", 255, 0, {}, {"0+255", "255+1"}},
                    CSetup{"SixteenBitLimit", 65536, 1, {65533, 65535}, {"65533+3"}},
                    CSetup{"LimitOfATwiceSixteenBitPart", 131072, 1, {65534, 65535}, {"65534+2"}},
                    CSetup{"LimitThatWraps", 0x10101, 1, {}, {"0+255", "255+1"}},
                    CSetup{"UnitAboveTheSize", 4, 8, {65530, 65532}, {"65530+3"}}),
    NameOf);

TEST_P(I2cEepromRwRange, IsWhatTheArgumentsSay) {
    MountFor(GetParam().mem_size, GetParam().xfer_unit);
    Call("rw-test", CWords{GetParam().arguments});
    EXPECT_EQ(SaveReads(), GetParam().chunks);
    EXPECT_THAT(Messages(), IsEmpty());
}

// A range that the setup refuses, and how it is named.
class I2cEepromRwRefusal : public I2cEepromRwSetup, public testing::WithParamInterface<CSetup> {};
INSTANTIATE_TEST_SUITE_P(
    , I2cEepromRwRefusal,
    testing::Values(CSetup{"EndBehindTheLimit", 256, 1, {0, 256}, {"0:256"}},
                    CSetup{"BothBehindTheLimit", 256, 1, {300, 400}, {"300:400"}},
                    CSetup{"ReversedBehindTheLimit", 256, 1, {65535, 7}, {"7:65535"}},
                    CSetup{"StartAloneBehindTheLimit", 256, 1, {256}, {"255:256"}},
                    CSetup{"UnitOf16", 256, 16, {0, 241}, {"0:241"}},
                    CSetup{"LimitThatWrapsTo0", 65537, 1, {0, 1}, {"0:1"}}),
    NameOf);

TEST_P(I2cEepromRwRefusal, NamesTheRange) {
    MountFor(GetParam().mem_size, GetParam().xfer_unit);
    EXPECT_EQ(Call("rw-test", CWords{GetParam().arguments}).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(),
              (CLines{{0x10, "ERROR: Invalid address range " + GetParam().chunks[0]}}));
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
}

TEST_F(I2cEepromRwSetup, KeepsItsRangeInItself) {
    class COpenTest : public CDiagI2cEepromReadWriteTest {
      public:
        COpenTest() : CDiagI2cEepromReadWriteTest(8192, 1) {}
        using CDiagI2cEepromReadWriteTest::m_ea;
        using CDiagI2cEepromReadWriteTest::m_sa;
    };
    COpenTest test;
    EXPECT_EQ(test.m_sa, 0U);
    EXPECT_EQ(test.m_ea, 127U);
    COutMsg request;
    request << uint16_t{100} << uint16_t{10};
    CInMsg in(request);
    EXPECT_TRUE(test.TestSetup(in));
    EXPECT_EQ(test.m_sa, 10U);
    EXPECT_EQ(test.m_ea, 100U);
}

TEST_F(I2cEepromRwSetup, TakesItsDefaultForAnArgumentCutShort) {
    MountFor(256, 1);
    Call("rw-test", uint8_t{9});
    EXPECT_EQ(SaveReads(), (CCalls{"0+255", "255+1"}));
    m_journal.Clear();
    Call("rw-test", uint16_t{250}, uint8_t{0});
    EXPECT_EQ(SaveReads(), CCalls{"250+6"});
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(I2cEepromRwSetup, TakesNoNoticeOfFurtherArguments) {
    MountFor(256, 1);
    Call("rw-test", uint16_t{5}, uint16_t{9}, uint16_t{7});
    EXPECT_EQ(SaveReads(), CCalls{"5+5"});
}

TEST_F(I2cEepromRwSetup, TakesItsDefaultsAgainAfterARunWithArguments) {
    MountFor(256, 1);
    Run(5, 9);
    m_journal.Clear();
    Call("rw-test");
    EXPECT_EQ(SaveReads(), (CCalls{"0+255", "255+1"}));
}

TEST_F(I2cEepromRwSetup, RunsAfterARefusedRange) {
    Mount(Part(256));
    EXPECT_EQ(Run(0, 256).bytes, Bytes{FAIL});
    EXPECT_EQ(Run(0, 9).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Test().GetStatus(), DS_PASSED);
}

}  // namespace
