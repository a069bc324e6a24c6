// Power that fails while the EEPROM is programmed or erased: from some transfer
// on nothing answers any more. What is left must not pass for the new table.
#include <gmock/gmock.h>

#include "tests/i2c/param_eeprom_test.h"

namespace {

using testing::IsEmpty;
using testing::Not;

struct CPowerCut {
    const char* name;
    CTable table;                 // that is programmed
    std::vector<uint8_t> before;  // what the chip holds
};
void PrintTo(const CPowerCut& cut, std::ostream* out) {
    *out << cut.name;
}

CTable WithVersion(CTable table, uint32_t version) {
    table.version = version;
    return table;
}
// Its words look like words that cannot be read.
CTable AllOnes() {
    CTable table = CompactTable();
    table.version = 0xFFFFFFFF;
    table.modules[0].regs = {{0xFFFFFFFF, 0xFFFFFFFF}, {0xFFFFFFFF, 0xFFFFFFFF}};
    table.modules[1] = {
        .id = 0xFFFF, .rev_start = 0xFFFF, .rev_end = 0xFFFF, .regs = {{0xFFFFFFFF, 0xFFFFFFFF}}};
    return table;
}

class ParamEepromPower : public CParamEepromTest, public testing::WithParamInterface<CPowerCut> {
  protected:
    ParamEepromPower() { MountParam(); }

    // Runs a command that has power for `transfers` transfers alone.
    template <class Run>
    CAnswer CutAfter(size_t transfers, Run&& run) {
        const size_t end = m_bus.Xfers().size() + transfers;
        m_bus.FailWhen([end](size_t i) { return i >= end; });
        CAnswer answer = run();
        m_bus.FailWhen({});
        return answer;
    }
    void Prepare() {
        Forget();
        Blank();
        Store(GetParam().before);
    }
};
INSTANTIATE_TEST_SUITE_P(
    , ParamEepromPower,
    testing::Values(
        CPowerCut{"CompactOverBlank", CompactTable(), {}},
        CPowerCut{"ExtendedOverBlank", ExtendedTable(), {}},
        CPowerCut{"CompactOverExtended", CompactTable(), ImageOf(ExtendedTable())},
        CPowerCut{"ExtendedOverCompact", ExtendedTable(), ImageOf(CompactTable())},
        CPowerCut{"OverTheVersionBefore", CompactTable(), ImageOf(WithVersion(CompactTable(), 2))},
        CPowerCut{"OnesOverBlank", AllOnes(), {}},
        CPowerCut{"OnesOverTheVersionBefore", AllOnes(), ImageOf(WithVersion(AllOnes(), 2))},
        CPowerCut{"OverZeros", CompactTable(), std::vector<uint8_t>(256)}),
    [](const auto& cut) { return cut.param.name; });

TEST_P(ParamEepromPower, ThatFailsAtAnyTransferOfProgrammingLeavesNoImage) {
    const std::string file = File(GetParam().table);
    const Bytes image = ImageOf(GetParam().table);
    const size_t transfers = 2 * WordOrderOf(GetParam().table).size();
    // The last transfer but one writes the checksum.
    for (size_t cut = 0; cut + 1 < transfers; ++cut) {
        SCOPED_TRACE(cut);
        Prepare();
        EXPECT_EQ(CutAfter(cut, [&] { return Program(file); }).bytes, Bytes{FAIL});
        EXPECT_NE(Memory(0, image.size()), image);
        EXPECT_EQ(Check(file).Code(), FAIL);
    }
    // Only that it is there is not seen when the last word cannot be read back.
    Prepare();
    EXPECT_EQ(CutAfter(transfers - 1, [&] { return Program(file); }).bytes, Bytes{FAIL});
    EXPECT_EQ(Memory(0, image.size()), image);
    EXPECT_EQ(Check(file).Code(), SUCCESS);
    Prepare();
    EXPECT_EQ(CutAfter(transfers, [&] { return Program(file); }).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, image.size()), image);
}

// Nor does what is left pass for what was there before, unless it still is.
TEST_P(ParamEepromPower, ThatFailsLeavesTheTableBeforeWholeOrNotAtAll) {
    const CTable old = WithVersion(CompactTable(), 1);
    const std::string old_file = File(XmlOf(old), "old.xml");
    const std::string file = File(GetParam().table);
    const Bytes image = ImageOf(old);
    const size_t transfers = 2 * WordOrderOf(GetParam().table).size();
    for (size_t cut = 0; cut <= transfers; ++cut) {
        SCOPED_TRACE(cut);
        Forget();
        Blank();
        Store(image);
        CutAfter(cut, [&] { return Program(file); });
        EXPECT_EQ(Check(old_file).Code(), Memory(0, image.size()) == image ? SUCCESS : FAIL);
    }
    // The first word that is written is another one already.
    EXPECT_NE(Memory(0, image.size()), image);
}

TEST_P(ParamEepromPower, ThatFailsInTheMiddleOfAWordLeavesNoImage) {
    MountParam(Part(8192, 1));
    const std::string file = File(GetParam().table);
    const Bytes image = ImageOf(GetParam().table);
    // Eight transfers a word; the last write of the last word makes it whole.
    const size_t transfers = 8 * WordOrderOf(GetParam().table).size() - 4;
    for (size_t cut = 0; cut < transfers; ++cut) {
        SCOPED_TRACE(cut);
        Prepare();
        EXPECT_EQ(CutAfter(cut, [&] { return Program(file); }).bytes, Bytes{FAIL});
        if (Memory(0, image.size()) != image) {
            EXPECT_EQ(Check(file).Code(), FAIL);
        }
        // Before the checksum there is no image, whatever bytes are alike.
        if (cut < transfers - 4) {
            EXPECT_NE(Memory(0, image.size()), image);
        }
    }
}

TEST_F(ParamEepromPower, ThatFailsWhileErasingLeavesNoImage) {
    const CTable table = CompactTable();
    const std::string file = File(table);
    const Bytes image = ImageOf(table);
    const size_t words = image.size() / 4;
    for (size_t cut = 2; cut <= words; ++cut) {
        SCOPED_TRACE(cut);
        Forget();
        Store(image);
        EXPECT_EQ(CutAfter(cut, [&] { return Erase(); }).bytes, Bytes{SUCCESS});
        EXPECT_THAT(m_log.Texts(0x10), Not(IsEmpty()));
        EXPECT_EQ(Check(file).Code(), FAIL);
    }
}

}  // namespace
