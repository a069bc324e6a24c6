#include "framework/diag_register_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "framework/diag_param.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

// Registers in memory that note every access as "name" or "name[index]".
class CMemRegisterDevice : public CDiagRegisterDevice {
  public:
    explicit CMemRegisterDevice(diag_regtable_st* table)
        : CDiagRegisterDevice("cpld", "registers in memory", table) {}

    bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        m_reads.push_back(NameOf(*reg, index));
        if (m_reads.back() == m_fail_read) {
            return false;
        }
        *data = m_data[NameOf(*reg, index)];
        return true;
    }
    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        m_writes.push_back(NameOf(*reg, index));
        if (m_writes.back() == m_fail_write) {
            return false;
        }
        m_data[NameOf(*reg, index)] = *data;
        return true;
    }

    std::map<std::string, diag_regdata_t> m_data;
    std::vector<std::string> m_reads;
    std::vector<std::string> m_writes;
    std::string m_fail_read;
    std::string m_fail_write;

  private:
    static std::string NameOf(const diag_reg_st& reg, uint32_t index) {
        std::string name = reg.name;
        if (reg.num_regs > 1) {
            name += "[" + std::to_string(index) + "]";
        }
        return name;
    }
};

diag_reg_st Reg(const char* name, const char* desc, EValueType type, uint8_t format,
                diag_regacc_et access, uint32_t num_regs = 1) {
    diag_reg_st reg{};
    reg.name = name;
    reg.desc = desc;
    reg.dtype = type;
    reg.format = format;
    reg.access = access;
    reg.num_regs = num_regs;
    reg.mask = UINT64_MAX;
    return reg;
}

class RegisterDevice : public testing::Test {
  protected:
    RegisterDevice() {
        m_device.m_data = {{"ctrl[0]", 1},      {"ctrl[1]", 0x22}, {"ctrl[2]", 0x333},
                           {"ctrl[3]", 0x4444}, {"status", 0x5},   {"mode", 0x80}};
    }
    CAnswer Call(const char* command, const std::string& reg) {
        return Send(NodeAt(m_device, command), MSG_CALL, reg);
    }
    CAnswer Call(const char* command, const std::string& reg, uint64_t data) {
        return Send(NodeAt(m_device, command), MSG_CALL, reg, data);
    }

    std::array<diag_reg_st, 6> m_regs{
        Reg("ctrl", "channel control", VT_UINT16, VF_HEX | VF_PAD, DIAG_REGACC_RW, 4),
        Reg("status", "link status", VT_UINT8, VF_HEX, DIAG_REGACC_RO),
        Reg("mode", "operating mode", VT_UINT32, VF_HEX, DIAG_REGACC_RW, 0),
        Reg("cause", "interrupt cause", VT_UINT8, VF_HEX, DIAG_REGACC_RC),
        Reg("fifo", "receive data", VT_UINT8, VF_HEX, DIAG_REGACC_DA),
        Reg("reset", "reset strobes", VT_UINT8, VF_HEX, DIAG_REGACC_WO),
    };
    diag_regtable_st m_table{m_regs.data(), 6};
    CMemRegisterDevice m_device{&m_table};
};

const std::vector<std::string> HARMLESS{"ctrl[0]", "ctrl[1]", "ctrl[2]",
                                        "ctrl[3]", "status",  "mode"};

TEST_F(RegisterDevice, FindsAnEntryByItsWholeName) {
    EXPECT_EQ(m_device.getRegEntry("ctrl"), &m_regs[0]);
    EXPECT_EQ(m_device.getRegEntry("mode"), &m_regs[2]);
    EXPECT_EQ(m_device.getRegEntry("reset"), &m_regs[5]);
}

TEST_F(RegisterDevice, FindsNoEntryByAnyOtherName) {
    for (const char* name : {"", "ctr", "ctrl[0]", "CTRL", "ctrl ", "channel control", "*"}) {
        EXPECT_EQ(m_device.getRegEntry(name), nullptr) << name;
    }
}

TEST_F(RegisterDevice, HasTheRegisterCommands) {
    for (const char* name : {"regpeek", "regpoke", "regset", "regclr", "regdump", "regtable"}) {
        const CDiagObj* command = m_device.FindChild(name);
        ASSERT_NE(command, nullptr) << name;
        EXPECT_EQ(command->GetNodeType(), TFUNC);
        EXPECT_STRNE(command->GetDescription(), "");
    }
}

TEST_F(RegisterDevice, DumpAndTableTakeAPatternThatMayBeLeftOut) {
    for (const char* name : {"regdump", "regtable"}) {
        const CDiagObj& command = NodeAt(m_device, name);
        ASSERT_EQ(command.GetChildren().size(), 1U) << name;
        const auto* pattern = dynamic_cast<const CDiagParam*>(command.GetChildren()[0]);
        ASSERT_NE(pattern, nullptr);
        EXPECT_EQ(pattern->GetValueType(), VT_STRING);
        EXPECT_EQ(pattern->GetParamType(), PT_IN | PT_OPTIONAL);
    }
}

TEST_F(RegisterDevice, PeeksAPlainRegister) {
    EXPECT_EQ(Call("regpeek", "status").bytes, CBytes().U8(0).Text("0x5").Get());
    EXPECT_EQ(Call("regpeek", "mode").bytes, CBytes().U8(0).Text("0x80").Get());
    EXPECT_THAT(m_device.m_reads, ElementsAre("status", "mode"));
}

TEST_F(RegisterDevice, PeeksOneElementOfAnArray) {
    EXPECT_EQ(Call("regpeek", "ctrl[2]").bytes, CBytes().U8(0).Text("0x0333").Get());
    EXPECT_EQ(Call("regpeek", "ctrl[0x3]").bytes, CBytes().U8(0).Text("0x4444").Get());
    EXPECT_THAT(m_device.m_reads, ElementsAre("ctrl[2]", "ctrl[3]"));
}

TEST_F(RegisterDevice, PeeksAnArrayWhole) {
    EXPECT_EQ(Call("regpeek", "ctrl").bytes,
              CBytes().U8(0).Text("0x0001 0x0022 0x0333 0x4444").Get());
    EXPECT_THAT(m_device.m_reads, ElementsAre("ctrl[0]", "ctrl[1]", "ctrl[2]", "ctrl[3]"));
}

TEST_F(RegisterDevice, PeeksARegisterThatChangesWhenReadIfNamed) {
    m_device.m_data["cause"] = 0x11;
    EXPECT_EQ(Call("regpeek", "cause").bytes, CBytes().U8(0).Text("0x11").Get());
}

TEST_F(RegisterDevice, DoesNotPeekBehindTheEndOfAnArray) {
    EXPECT_EQ(Call("regpeek", "ctrl[4]").Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("regpeek", "ctrl[4294967295]").Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("regpeek", "status[1]").Code(), MSG_ERR_FAIL);
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDevice, FailsToPeekWhatCannotBeRead) {
    m_device.m_fail_read = "status";
    EXPECT_EQ(Call("regpeek", "status").Code(), MSG_ERR_FAIL);
    m_device.m_fail_read = "ctrl[2]";
    EXPECT_EQ(Call("regpeek", "ctrl").Code(), MSG_ERR_FAIL);
}

TEST_F(RegisterDevice, FailsToPeekWhatIsNotThere) {
    EXPECT_EQ(Call("regpeek", "nothing").Code(), MSG_ERR_FAIL);
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDevice, PokesAPlainRegister) {
    EXPECT_THAT(Call("regpoke", "mode", 0x12345678).bytes, ElementsAre(0));
    EXPECT_EQ(m_device.m_data["mode"], 0x12345678U);
    EXPECT_THAT(m_device.m_writes, ElementsAre("mode"));
}

TEST_F(RegisterDevice, PokesOneElementOfAnArray) {
    EXPECT_THAT(Call("regpoke", "ctrl[3]", 0xFFFF).bytes, ElementsAre(0));
    EXPECT_EQ(m_device.m_data["ctrl[3]"], 0xFFFFU);
    EXPECT_THAT(m_device.m_writes, ElementsAre("ctrl[3]"));
}

TEST_F(RegisterDevice, PokesARegisterThatCannotBeReadWithoutReadingIt) {
    EXPECT_THAT(Call("regpoke", "reset", 0x01).bytes, ElementsAre(0));
    EXPECT_THAT(m_device.m_writes, ElementsAre("reset"));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDevice, PokesNothingItShouldNot) {
    EXPECT_EQ(Call("regpoke", "ctrl", 1).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("regpoke", "ctrl[4]", 1).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("regpoke", "mode[1]", 1).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("regpoke", "nothing", 1).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("regpoke", "ctrl[0]", 0x10000).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("regpoke", "mode", 0x100000000).Code(), MSG_ERR_FAIL);
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, FailsToPokeWhatCannotBeWritten) {
    m_device.m_fail_write = "mode";
    EXPECT_EQ(Call("regpoke", "mode", 1).Code(), MSG_ERR_FAIL);
}

TEST_F(RegisterDevice, SetsBitsAndLeavesTheOthers) {
    EXPECT_THAT(Call("regset", "mode", 0x03).bytes, ElementsAre(0));
    EXPECT_EQ(m_device.m_data["mode"], 0x83U);
    EXPECT_THAT(Call("regset", "ctrl[1]", 0x8001).bytes, ElementsAre(0));
    EXPECT_EQ(m_device.m_data["ctrl[1]"], 0x8023U);
    EXPECT_THAT(m_device.m_reads, ElementsAre("mode", "ctrl[1]"));
    EXPECT_THAT(m_device.m_writes, ElementsAre("mode", "ctrl[1]"));
}

TEST_F(RegisterDevice, ClearsBitsAndLeavesTheOthers) {
    m_device.m_data["mode"] = 0xFF;
    EXPECT_THAT(Call("regclr", "mode", 0x81).bytes, ElementsAre(0));
    EXPECT_EQ(m_device.m_data["mode"], 0x7EU);
    EXPECT_THAT(Call("regclr", "mode", 0x83).bytes, ElementsAre(0));
    EXPECT_EQ(m_device.m_data["mode"], 0x7CU);
    EXPECT_THAT(Call("regclr", "ctrl[3]", 0x4400).bytes, ElementsAre(0));
    EXPECT_EQ(m_device.m_data["ctrl[3]"], 0x0044U);
}

TEST_F(RegisterDevice, SetsAndClearsNothingItShouldNot) {
    for (const char* command : {"regset", "regclr"}) {
        for (const char* reg : {"ctrl", "ctrl[4]", "ctrl[4294967295]", "mode[1]", "nothing"}) {
            EXPECT_EQ(Call(command, reg, 1).Code(), MSG_ERR_FAIL) << command << " " << reg;
        }
    }
    EXPECT_THAT(m_device.m_reads, IsEmpty());
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, WritesNothingWhenABitCannotBeReadFirst) {
    m_device.m_fail_read = "mode";
    EXPECT_EQ(Call("regset", "mode", 1).Code(), MSG_ERR_FAIL);
    EXPECT_FALSE(m_device.SetClrBits(1, &m_regs[2], 0, false));
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, FailsToSetBitsThatCannotBeWritten) {
    m_device.m_fail_write = "mode";
    EXPECT_EQ(Call("regset", "mode", 1).Code(), MSG_ERR_FAIL);
    EXPECT_FALSE(m_device.SetClrBits(1, &m_regs[2], 0, true));
}

TEST_F(RegisterDevice, SetsAndClearsBitsForItsBoard) {
    EXPECT_TRUE(m_device.SetClrBits(0x0F, &m_regs[2], 0, true));
    EXPECT_EQ(m_device.m_data["mode"], 0x8FU);
    EXPECT_TRUE(m_device.SetClrBits(0x81, &m_regs[2], 0, false));
    EXPECT_EQ(m_device.m_data["mode"], 0x0EU);
    EXPECT_TRUE(m_device.SetClrBits(0x100, &m_regs[0], 3, true));
    EXPECT_EQ(m_device.m_data["ctrl[3]"], 0x4544U);
}

TEST_F(RegisterDevice, SetsAndClearsNoBitsBehindTheEndOfAnArray) {
    EXPECT_FALSE(m_device.SetClrBits(1, &m_regs[0], 4, true));
    EXPECT_FALSE(m_device.SetClrBits(1, &m_regs[2], 1, false));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, RefusesCommandsWithoutTheirArguments) {
    for (const char* name : {"regpeek", "regpoke", "regset", "regclr"}) {
        EXPECT_NE(Send(NodeAt(m_device, name), MSG_CALL).Code(), MSG_SUCCESS) << name;
    }
    for (const char* name : {"regpoke", "regset", "regclr"}) {
        EXPECT_NE(Call(name, "mode").Code(), MSG_SUCCESS) << name;
    }
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, DumpsAllRegistersThatReadingDoesNotChange) {
    const CLogCapture log;
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, ""));
    EXPECT_EQ(m_device.m_reads, HARMLESS);
    for (const char* text :
         {"ctrl", "0x0001", "0x0022", "0x0333", "0x4444", "status", "0x5", "mode", "0x80"}) {
        EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr(text));
    }
}

TEST_F(RegisterDevice, DumpsToTheGivenLogWord) {
    const CLogCapture log;
    EXPECT_TRUE(m_device.dumpRegs(LW_SW_DUMP, "status"));
    EXPECT_THAT(log.Joined(LW_SW_DUMP), HasSubstr("0x5"));
    EXPECT_EQ(log.Joined(LW_PRINT), "");
}

TEST_F(RegisterDevice, DumpsRegistersByTheBeginningOfTheirNames) {
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "st"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("status"));
}

TEST_F(RegisterDevice, DumpsRegistersByWildcards) {
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "*o*e"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("mode"));
    m_device.m_reads.clear();
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "?ta*"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("status"));
    m_device.m_reads.clear();
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "*"));
    EXPECT_EQ(m_device.m_reads, HARMLESS);
}

TEST_F(RegisterDevice, DoesNotTakeAWildcardPatternForABeginning) {
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "?tat"));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDevice, DumpsARegisterThatReadingChangesWhenNamedInFull) {
    m_device.m_data["cause"] = 0x21;
    m_device.m_data["fifo"] = 0x43;
    const CLogCapture log;
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "cause"));
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "fifo"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("cause", "fifo"));
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("0x21"));
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("0x43"));
}

TEST_F(RegisterDevice, LeavesRegistersThatReadingChangesAloneOtherwise) {
    for (const char* pattern : {"", "c", "caus", "caus?", "cause*", "f", "fif", "fifo*", "*", "r",
                                "rese", "reset*", "re*"}) {
        m_device.dumpRegs(LW_PRINT, pattern);
    }
    EXPECT_THAT(m_device.m_reads, Not(testing::Contains("cause")));
    EXPECT_THAT(m_device.m_reads, Not(testing::Contains("fifo")));
    EXPECT_THAT(m_device.m_reads, Not(testing::Contains("reset")));
}

TEST_F(RegisterDevice, TellsThatNoRegisterMatches) {
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "nothing"));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "statusx"));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "tatus"));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "x*"));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDevice, TellsThatADumpCouldNotReadARegister) {
    m_device.m_fail_read = "ctrl[1]";
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, ""));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "ctrl"));
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "mode"));
}

TEST_F(RegisterDevice, DumpsOnCommand) {
    const CLogCapture log;
    EXPECT_EQ(Send(NodeAt(m_device, "regdump"), MSG_CALL).Code(), MSG_SUCCESS);
    EXPECT_EQ(m_device.m_reads, HARMLESS);
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("0x4444"));
    m_device.m_reads.clear();
    EXPECT_EQ(Call("regdump", "mo").Code(), MSG_SUCCESS);
    EXPECT_THAT(m_device.m_reads, ElementsAre("mode"));
    EXPECT_EQ(Call("regdump", "nothing").Code(), MSG_ERR_FAIL);
}

TEST_F(RegisterDevice, ShowsItsTableWithoutReadingARegister) {
    const CLogCapture log;
    m_device.showRegTable("");
    const std::string shown = log.Joined(LW_PRINT);
    for (const diag_reg_st& reg : m_regs) {
        EXPECT_THAT(shown, HasSubstr(reg.name));
    }
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDevice, ShowsOnlyTheEntriesThatMatch) {
    const CLogCapture log;
    m_device.showRegTable("c");
    m_device.showRegTable("?ifo");
    const std::string shown = log.Joined(LW_PRINT);
    for (const char* name : {"ctrl", "cause", "fifo"}) {
        EXPECT_THAT(shown, HasSubstr(name));
    }
    for (const char* name : {"status", "operating mode", "reset strobes"}) {
        EXPECT_THAT(shown, Not(HasSubstr(name)));
    }
}

TEST_F(RegisterDevice, ShowsItsTableOnCommand) {
    const CLogCapture log;
    EXPECT_EQ(Send(NodeAt(m_device, "regtable"), MSG_CALL).Code(), MSG_SUCCESS);
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("status"));
    EXPECT_EQ(Call("regtable", "mo").Code(), MSG_SUCCESS);
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST(RegisterDeviceWithoutATable, HasNoRegisters) {
    CMemRegisterDevice device(nullptr);
    EXPECT_EQ(device.getRegEntry("ctrl"), nullptr);
    EXPECT_FALSE(device.dumpRegs(LW_PRINT, ""));
    EXPECT_NO_THROW(device.showRegTable(""));
    EXPECT_EQ(Send(NodeAt(device, "regpeek"), MSG_CALL, std::string("ctrl")).Code(), MSG_ERR_FAIL);
}

}  // namespace
