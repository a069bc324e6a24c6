// Images at the edge of what the EEPROM and its 16-bit addresses hold.
#include <gmock/gmock.h>

#include "tests/i2c/param_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ParamEepromSize : public CParamEepromTest {
  protected:
    // A table whose modules have that many register pairs.
    static CTable TableOf(const std::vector<uint32_t>& pairs, uint32_t signature) {
        CTable table = {.signature = signature};
        for (const uint32_t count : pairs) {
            table.modules.emplace_back();
            for (uint32_t i = 0; i < count; ++i) {
                table.modules.back().regs.emplace_back(0x10000000 + i, ~i);
            }
        }
        return table;
    }

    void ExpectRefused(const CTable& table, const std::string& text) {
        const std::string file = File(table);
        for (const char* command : {"prog-param-eeprom", "check-param-eeprom"}) {
            Forget();
            EXPECT_EQ(Send(Command(command), MSG_CALL, file).bytes, Bytes{FAIL});
            EXPECT_THAT(m_log.Texts(0x10), ElementsAre("init function failed: init " + text,
                                                       "CMB command failed: Invoke " + text));
            EXPECT_THAT(Calls(), IsEmpty());
        }
        EXPECT_TRUE(m_bus.HoldsInitialBytes());
    }

    void ExpectStored(const CTable& table) {
        const Bytes image = ImageOf(table);
        const std::string file = File(table);
        EXPECT_EQ(Program(file).bytes, Bytes{SUCCESS});
        EXPECT_TRUE(Memory(0, image.size()) == image);
        EXPECT_EQ(Check(file).bytes, CheckAnswer(SUCCESS, 3, WordAt(image, 0)));
        EXPECT_THAT(m_log.Texts(0x10), IsEmpty());
    }
};

TEST_F(ParamEepromSize, MayBeThatOfTheEeprom) {
    MountParam(Part(132));
    ASSERT_EQ(ImageOf(CompactTable()).size(), 132U);
    ExpectStored(CompactTable());
}

TEST_F(ParamEepromSize, MayNotBeOneByteMore) {
    MountParam(Part(131));
    ExpectRefused(CompactTable(), "the image has 132 bytes, the EEPROM 131\n");
}

TEST_F(ParamEepromSize, IsComparedInTheExtendedLayoutToo) {
    MountParam(Part(128));
    ExpectStored(ExtendedTable());
}

TEST_F(ParamEepromSize, IsRefusedInAnEepromOfNoSize) {
    MountParam(Part(0));
    ExpectRefused(ExtendedTable(), "the image has 116 bytes, the EEPROM 0\n");
}

TEST_F(ParamEepromSize, MayReachTheLastAddress) {
    MountParam(Part(65536));
    const CTable table = TableOf({8184}, CTable::COMPACT);
    ASSERT_EQ(ImageOf(table).size(), 65536U);
    ExpectStored(table);
}

TEST_F(ParamEepromSize, MayReachTheLastAddressWithAModuleWithoutRegisters) {
    MountParam(Part(65536));
    const CTable table = TableOf({8000, 176, 0}, CTable::EXTENDED);
    ASSERT_EQ(ImageOf(table).size(), 65536U);
    ExpectStored(table);
}

TEST_F(ParamEepromSize, MayReachTheLastAddressWithAModuleWithRegisters) {
    MountParam(Part(65536));
    const CTable table = TableOf({8000, 0, 176}, CTable::EXTENDED);
    ASSERT_EQ(ImageOf(table).size(), 65536U);
    ExpectStored(table);
}

TEST_F(ParamEepromSize, MayNotExceedTheAddressesThoughTheEepromIsLarger) {
    MountParam(Part(131072));
    ExpectRefused(TableOf({8185}, CTable::COMPACT),
                  "the image has 65544 bytes, of the EEPROM's 131072 only 65536 can be reached\n");
}

TEST_F(ParamEepromSize, MayNotExceedTheAddressesByNumbersThatOverflow16Bits) {
    MountParam(Part(131072));
    // 65,536 pairs and a bit: the low 16 bits of all sizes are small.
    ExpectRefused(TableOf({65536}, CTable::COMPACT),
                  "the image has 524352 bytes, the EEPROM 131072\n");
}

}  // namespace
