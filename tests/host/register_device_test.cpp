// Registers one by one: found, peeked, poked, and their bits set and cleared.
#include <gmock/gmock.h>

#include "framework/diag_log_word.h"
#include "framework/diag_param.h"
#include "tests/host/register_device.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"

namespace {

using RegisterDevice = RegisterDeviceBase;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(RegisterDevice, FindsAnEntryByItsWholeName) {
    EXPECT_EQ(m_device.getRegEntry("ctrl"), &m_regs.front());
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
        for (const char* reg : {"ctrl", "ctrl[4]", "ctrl[4294967295]", "mode[1]", "nothing",
                                "status", "cause", "fifo", "reset"}) {
            EXPECT_EQ(Call(command, reg, 1).Code(), MSG_ERR_FAIL) << command << " " << reg;
        }
    }
    EXPECT_THAT(m_device.m_reads, IsEmpty());
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, SetsNoBitWhereOnesThatAreWrittenBackHaveEffects) {
    for (const diag_regacc_et access : {DIAG_REGACC_W1C, DIAG_REGACC_W1T}) {
        m_regs[2].access = access;
        EXPECT_EQ(Call("regset", "mode", 1).Code(), MSG_ERR_FAIL);
        EXPECT_EQ(Call("regclr", "mode", 1).Code(), MSG_ERR_FAIL);
    }
    EXPECT_THAT(m_device.m_reads, IsEmpty());
    m_regs[2].access = DIAG_REGACC_W1S;
    EXPECT_EQ(Call("regset", "mode", 1).Code(), MSG_SUCCESS);
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
    EXPECT_TRUE(m_device.SetClrBits(0x100, &m_regs.front(), 3, true));
    EXPECT_EQ(m_device.m_data["ctrl[3]"], 0x4544U);
}

TEST_F(RegisterDevice, SetsAndClearsNoBitsBehindTheEndOfAnArray) {
    EXPECT_FALSE(m_device.SetClrBits(1, &m_regs.front(), 4, true));
    EXPECT_FALSE(m_device.SetClrBits(1, &m_regs[2], 1, false));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, SetsAndClearsNoBitsThatARegisterDoesNotHave) {
    const CLogCapture log;
    for (const bool set : {true, false}) {
        EXPECT_FALSE(m_device.SetClrBits(0x10000, &m_regs.front(), 3, set));
        EXPECT_FALSE(m_device.SetClrBits(0x8000000000000001, &m_regs[2], 0, set));
    }
    EXPECT_THAT(log.Texts(LW_WARN), ElementsAre("0x10000 does not fit register ctrl\n",
                                                "0x8000000000000001 does not fit register mode\n",
                                                "0x10000 does not fit register ctrl\n",
                                                "0x8000000000000001 does not fit register mode\n"));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
    EXPECT_THAT(m_device.m_writes, IsEmpty());
}

TEST_F(RegisterDevice, TakesTheSignOfASignedRegisterForABit) {
    m_regs[2].dtype = VT_INT8;
    m_device.m_data["mode"] = 1;
    EXPECT_TRUE(m_device.SetClrBits(0x80, &m_regs[2], 0, true));
    EXPECT_EQ(m_device.m_data["mode"], 0x81U);
    EXPECT_TRUE(m_device.SetClrBits(0xFFFFFFFFFFFFFF82, &m_regs[2], 0, true));
    EXPECT_EQ(m_device.m_data["mode"], 0x83U);
    EXPECT_TRUE(m_device.SetClrBits(UINT64_MAX, &m_regs[2], 0, false));
    EXPECT_EQ(m_device.m_data["mode"], 0U);
    // The bits above the sign are not like it.
    EXPECT_FALSE(m_device.SetClrBits(0xFFFFFFFFFFFFFF00, &m_regs[2], 0, true));
    EXPECT_FALSE(m_device.SetClrBits(0x180, &m_regs[2], 0, true));
}

TEST_F(RegisterDevice, HasNoBitsInWhatIsNoNumber) {
    m_regs[2].dtype = VT_STRING;
    EXPECT_FALSE(m_device.SetClrBits(1, &m_regs[2], 0, true));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
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

TEST(RegisterDeviceWithoutATable, HasNoRegisters) {
    CMemRegisterDevice device(nullptr);
    EXPECT_EQ(device.getRegEntry("ctrl"), nullptr);
    EXPECT_FALSE(device.dumpRegs(LW_PRINT, ""));
    EXPECT_NO_THROW(device.showRegTable(""));
    EXPECT_EQ(Send(NodeAt(device, "regpeek"), MSG_CALL, std::string("ctrl")).Code(), MSG_ERR_FAIL);
}

}  // namespace
