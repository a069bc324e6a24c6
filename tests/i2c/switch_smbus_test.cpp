// The SMBus operations of a switch.
#include "tests/i2c/switch_test.h"

namespace {

uint8_t g_byte;
uint16_t g_word;
uint8_t g_block[3];

// Notes every operation with all its arguments.
class CSmbusBus : public CScriptedBus {
  public:
    CSmbusBus(CJournal& journal, const std::string& name)
        : CScriptedBus(name), m_name(name), m_journal(journal) {}

    bool result = true;

    bool smb_write_quick(int8_t ch, uint8_t addr) override {
        return Note("smb_write_quick", {ch, addr});
    }
    bool smb_read_quick(int8_t ch, uint8_t addr) override {
        return Note("smb_read_quick", {ch, addr});
    }
    bool smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) override {
        return Note("smb_send_byte", {ch, addr, data});
    }
    bool smb_receive_byte(int8_t ch, uint8_t addr, uint8_t* data) override {
        return Note("smb_receive_byte", {ch, addr, data == &g_byte});
    }
    bool smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) override {
        return Note("smb_write_byte", {ch, addr, cmd, data});
    }
    bool smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t* data) override {
        return Note("smb_read_byte", {ch, addr, cmd, data == &g_byte});
    }
    bool smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) override {
        return Note("smb_write_word", {ch, addr, cmd, data});
    }
    bool smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t* data) override {
        return Note("smb_read_word", {ch, addr, cmd, data == &g_word});
    }
    bool smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                         uint8_t* buf) override {
        return Note("smb_block_write", {ch, addr, cmd, len, buf == g_block});
    }
    bool smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) override {
        return Note("smb_block_read", {ch, addr, cmd, len, buf == g_block});
    }
    bool smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                uint8_t* buf) override {
        return Note("smb_block_process_call", {ch, addr, cmd, len, buf == g_block});
    }

  private:
    bool Note(const std::string& operation, const std::vector<int64_t>& args) {
        std::string text = m_name + ": " + operation;
        for (const int64_t arg : args) {
            text += " " + std::to_string(arg);
        }
        m_journal.Note(text);
        return result;
    }

    const std::string m_name;
    CJournal& m_journal;
};

// One operation and how the bus notes it: channel, address and the rest, with
// 1 for a buffer that is the caller's.
struct CCase {
    std::string operation;
    std::function<bool(CI2cDevice&, int8_t ch)> run;
    std::string args;
};
void PrintTo(const CCase& one, std::ostream* out) {
    *out << one.operation;
}

const std::vector<CCase> CASES = {
    {"smb_write_quick", [](CI2cDevice& dev, int8_t ch) { return dev.smb_write_quick(ch, 81); },
     "81"},
    {"smb_read_quick", [](CI2cDevice& dev, int8_t ch) { return dev.smb_read_quick(ch, 82); }, "82"},
    {"smb_send_byte", [](CI2cDevice& dev, int8_t ch) { return dev.smb_send_byte(ch, 83, 201); },
     "83 201"},
    {"smb_receive_byte",
     [](CI2cDevice& dev, int8_t ch) { return dev.smb_receive_byte(ch, 84, &g_byte); }, "84 1"},
    {"smb_write_byte",
     [](CI2cDevice& dev, int8_t ch) { return dev.smb_write_byte(ch, 85, 202, 203); }, "85 202 203"},
    {"smb_read_byte",
     [](CI2cDevice& dev, int8_t ch) { return dev.smb_read_byte(ch, 86, 204, &g_byte); },
     "86 204 1"},
    {"smb_write_word",
     [](CI2cDevice& dev, int8_t ch) { return dev.smb_write_word(ch, 87, 205, 54321); },
     "87 205 54321"},
    {"smb_read_word",
     [](CI2cDevice& dev, int8_t ch) { return dev.smb_read_word(ch, 88, 206, &g_word); },
     "88 206 1"},
    {"smb_block_write",
     [](CI2cDevice& dev, int8_t ch) { return dev.smb_block_write(ch, 89, 207, 70000, g_block); },
     "89 207 70000 1"},
    {"smb_block_read",
     [](CI2cDevice& dev, int8_t ch) { return dev.smb_block_read(ch, 90, 208, 70001, g_block); },
     "90 208 70001 1"},
    {"smb_block_process_call",
     [](CI2cDevice& dev, int8_t ch) {
         return dev.smb_block_process_call(ch, 91, 209, 70002, g_block);
     },
     "91 209 70002 1"},
};

std::string CaseName(const testing::TestParamInfo<CCase>& info) {
    return info.param.operation;
}

class EveryI2cSwitchSmbusOperation : public CSwitchTest, public testing::WithParamInterface<CCase> {
  protected:
    EveryI2cSwitchSmbusOperation()
        : m_smbus(*new CSmbusBus(m_journal, "smbus")),
          m_top(Hang(m_smbus, new CJournalSwitch(m_journal, "top", 1, 0x70))),
          m_mid(AddSwitch(m_top, 1, "mid", 2, 0x71)) {
        m_root.AddChild(&m_smbus, CDiagObj::NO_SORT);
    }

    // What the operation brings about below and on the bus.
    CEntries EntriesOf(CJournalSwitch& sw, int8_t ch, bool result = true) {
        m_journal.Clear();
        EXPECT_EQ(GetParam().run(sw, ch), result);
        return m_journal.Entries();
    }
    CEntries ArrivedOn(const std::string& bus) const {
        return {Call(bus + ": " + GetParam().operation + " -1 " + GetParam().args)};
    }

    CSmbusBus& m_smbus;
    CJournalSwitch& m_top;
    CJournalSwitch& m_mid;
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cSwitchSmbusOperation, testing::ValuesIn(CASES), CaseName);

TEST_P(EveryI2cSwitchSmbusOperation, ArrivesOnTheBusWithoutChannelAndElseUnchanged) {
    for (const int8_t ch : {int8_t{-1}, int8_t{0}, int8_t{5}}) {
        EXPECT_EQ(EntriesOf(m_top, ch), ArrivedOn("smbus"));
        EXPECT_EQ(EntriesOf(m_mid, ch), ArrivedOn("smbus"));
    }
}

TEST_P(EveryI2cSwitchSmbusOperation, BringsBackTheResultOfTheBus) {
    m_smbus.result = false;
    EXPECT_EQ(EntriesOf(m_top, 0, false), ArrivedOn("smbus"));
    EXPECT_EQ(EntriesOf(m_mid, 0, false), ArrivedOn("smbus"));
}

TEST_P(EveryI2cSwitchSmbusOperation, TouchesNoChannelInOtherModesThan3) {
    for (const uint8_t mode : Bytes{0, 1, 2, 7}) {
        m_top.SetSwMode(mode);
        EXPECT_EQ(EntriesOf(m_mid, 1), ArrivedOn("smbus"));
    }
}

TEST_P(EveryI2cSwitchSmbusOperation, AsksForThePathOfItsChannelInMode3) {
    m_top.SetSwMode(3);
    // The upstream switch is given no channel, so that it does not ask.
    EXPECT_EQ(EntriesOf(m_mid, 0),
              CEntries{Trace("(mid-2): I2C path configuraiton skipped!\n")} + ArrivedOn("smbus"));
    EXPECT_EQ(EntriesOf(m_top, 1),
              CEntries{Trace("(top-1): I2C path configuraiton skipped!\n")} + ArrivedOn("smbus"));
    EXPECT_EQ(EntriesOf(m_mid, -1), ArrivedOn("smbus"));
}

TEST_P(EveryI2cSwitchSmbusOperation, GoesOnWhenThePathCannotBeOpened) {
    m_top.m_sw_mode = true;
    m_top.m_auto_path = 1;
    m_top.FailAt("SelChannel");
    EXPECT_EQ(EntriesOf(m_top, 1),
              (CEntries{Trace("(top-1): select channel"), Call("top-1: SelChannel(1)")} +
               ArrivedOn("smbus")));
}

TEST_P(EveryI2cSwitchSmbusOperation, FindsItsUpstreamDevice) {
    EXPECT_EQ(EntriesOf(m_mid, 0), ArrivedOn("smbus"));
    EXPECT_EQ(m_mid.m_pDev, &m_top);
    EXPECT_EQ(m_top.m_pDev, &m_smbus);
}

TEST_P(EveryI2cSwitchSmbusOperation, KeepsItsUpstreamDeviceUnlessItIsAQuickWrite) {
    CSmbusBus other(m_journal, "other");
    m_top.m_pDev = &other;
    const bool quick_write = GetParam().operation == "smb_write_quick";
    EXPECT_EQ(EntriesOf(m_top, 0), ArrivedOn(quick_write ? "smbus" : "other"));
    EXPECT_EQ(m_top.m_pDev, quick_write ? &m_smbus : &other);
}

TEST_P(EveryI2cSwitchSmbusOperation, TakesNoLock) {
    const CGuard<CMutex> bus(m_smbus.m_lock);
    const CGuard<CMutex> top(m_top.m_lock);
    EXPECT_EQ(EntriesOf(m_top, 0), ArrivedOn("smbus"));
}

// A quick write goes to the device right above and takes for granted that
// there is one; the others look for it.
class EveryI2cSwitchSmbusOperationButOne : public EveryI2cSwitchSmbusOperation {};
INSTANTIATE_TEST_SUITE_P(, EveryI2cSwitchSmbusOperationButOne,
                         testing::ValuesIn(CASES.begin() + 1, CASES.end()), CaseName);

TEST_P(EveryI2cSwitchSmbusOperationButOne, FailsWithoutUpstreamDevice) {
    CJournalSwitch mux(m_journal, "mux", 9, 0x77);
    EXPECT_EQ(EntriesOf(mux, 0, false),
              CEntries{ArgError("(mux-9): Inproper parent object for switch!\n")});
    CDiagDevice device("fan", "no bus", TDEVICE);
    CJournalSwitch& misplaced = Hang(device, new CJournalSwitch(m_journal, "mux", 8, 0x77));
    EXPECT_EQ(EntriesOf(misplaced, 0, false),
              CEntries{ArgError("(mux-8): Inproper parent object for switch channel!\n")});
}

TEST_P(EveryI2cSwitchSmbusOperationButOne, PassesAChannelThatIsADevice) {
    auto* channel = new CDiagDevice("ch-node", "a channel", TDEVICE);
    m_top.AddChild(channel, CDiagObj::NO_SORT);
    CJournalSwitch& sw = Hang(*channel, new CJournalSwitch(m_journal, "mux", 9, 0x74, 2, 0));
    EXPECT_EQ(EntriesOf(sw, 0), ArrivedOn("smbus"));
}

}  // namespace
