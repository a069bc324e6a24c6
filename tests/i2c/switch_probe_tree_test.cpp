// A probe that goes down a tree of switches.
#include "tests/i2c/switch_probe_test.h"

namespace {

using CAddresses = std::list<uint8_t>;

// "top-1" (0x70) on the bus, "mid-2" (0x71) on its channel 1, "low-3" (0x72)
// on channel 0 of that.
class I2cSwitchProbeTree : public CSwitchProbeTest {
  protected:
    I2cSwitchProbeTree()
        : m_top(AddSwitch("top", 1, 0x70)),
          m_mid(AddSwitch(m_top, 1, "mid", 2, 0x71, 1)),
          m_low(AddSwitch(m_mid, 0, "low", 3, 0x72, 1)) {}

    // The chips themselves, and one device in each place.
    void Populate() {
        Place(0x20);
        Place(0x70);
        Place(0x30, m_left);
        Place(0x40, m_right);
        Place(0x71, m_right);
        PlaceChoosy(0x51, m_below_mid);
        Place(0x72, m_below_mid);
        Place(0x60, m_below_low);
    }

    // The bus itself reads without command only.
    static CEntries BusSweep(const CFinds& found) {
        CEntries all;
        for (uint8_t addr = 1; addr <= 125; ++addr) {
            all += {Call("read " + std::to_string(addr))};
            if (const auto find = found.find(addr); find != found.end()) {
                all += find->second;
            }
        }
        return all;
    }
    static CEntries Down(const CJournalSwitch& to, int ch) {
        return {Print(std::string("CDiagI2cSwitch::probe: probe devices ") + to.GetName() +
                      " channal " + std::to_string(ch) + "\n")};
    }

    CJournalSwitch& m_top;
    CJournalSwitch& m_mid;
    CJournalSwitch& m_low;
    const std::vector<CHop> m_left = {{&m_top, 0}};
    const std::vector<CHop> m_right = {{&m_top, 1}};
    const std::vector<CHop> m_below_mid = {{&m_top, 1}, {&m_mid, 0}};
    const std::vector<CHop> m_below_low = {{&m_top, 1}, {&m_mid, 0}, {&m_low, 0}};
};

TEST_F(I2cSwitchProbeTree, GoesDownAfterEachChannelAndClosesFromTheBottomUp) {
    EXPECT_TRUE(m_bus.probe(0));
    const CEntries expected =
        BusSweep({}) + CEntries{Print("i2c-0: probe devices from switch top-1 (addr=0x70) \n")} +
        EmptyChannel(m_top, 1, 0) + EmptyChannel(m_top, 1, 1) + Down(m_mid, 1) +
        EmptyChannel(m_mid, 2, 0) + Down(m_low, 0) + EmptyChannel(m_low, 3, 0) +
        ChannelsClosed(m_low) + ChannelsClosed(m_mid) + ChannelsClosed(m_top);
    ExpectJournal(expected);
}

TEST_F(I2cSwitchProbeTree, FindsEachDeviceWhereItIs) {
    Populate();
    EXPECT_TRUE(m_bus.probe(0));

    const CEntries bus_20 = {Print("         device with addr = 0x20 found \n")};
    const CEntries bus_70 = {Print("         device with addr = 0x70 found \n")};
    // What shines through from above is not reported again, but for 0x40 and
    // 0x71 behind low-3: that looks for them on channel 0 of top-1, since it
    // is itself on a channel 0.
    const CEntries expected =
        BusSweep({{0x20, bus_20}, {0x70, bus_70}}) +
        CEntries{Print("i2c-0: probe devices from switch top-1 (addr=0x70) \n")} +
        ChannelOpened(m_top, 1, 0) +
        Sweep({{0x20, {}}, {0x70, {}}, {0x30, Found(m_top, 0, 0x30)}}) +
        ChannelOpened(m_top, 1, 1) +
        Sweep({{0x20, {}},
               {0x70, {}},
               {0x40, Found(m_top, 1, 0x40)},
               {0x71, Found(m_top, 1, 0x71)}}) +
        Down(m_mid, 1) + ChannelOpened(m_mid, 2, 0) +
        Sweep({{0x20, {}}, {0x70, {}}, {0x40, {}}, {0x71, {}}, {0x72, Found(m_mid, 0, 0x72)}},
              {{0x51, FoundByCommand(m_mid, 0, 0x51)}}) +
        Down(m_low, 0) + ChannelOpened(m_low, 3, 0) +
        Sweep({{0x20, {}},
               {0x70, {}},
               {0x40, Found(m_low, 0, 0x40)},
               {0x71, Found(m_low, 0, 0x71)},
               {0x72, {}},
               {0x60, Found(m_low, 0, 0x60)}},
              {{0x51, {}}}) +
        ChannelsClosed(m_low) + ChannelsClosed(m_mid) + ChannelsClosed(m_top);
    ExpectJournal(expected);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x20, 0x70}));
}

TEST_F(I2cSwitchProbeTree, GrowsByOneLevelPerSwitchFromTheSwitchItStartsAt) {
    Place(0x20);
    Place(0x40, m_right);
    m_bus.AddMyDeviceAddr(0x20);
    EXPECT_TRUE(m_top.probe(0));
    // At level 1 only what top-1 saw upstream counts, so 0x40 is found again;
    // at level 2 likewise.
    const CEntries expected =
        Sweep({{0x20, {}}}) + Upstream(m_top, {0x20}) + ChannelOpened(m_top, 0, 0) +
        Sweep({{0x20, {}}}) + m_nothing_found + ChannelOpened(m_top, 0, 1) +
        Sweep({{0x20, {}}, {0x40, Found(m_top, 1, 0x40)}}) + Down(m_mid, 1) +
        ChannelOpened(m_mid, 1, 0) + Sweep({{0x20, {}}, {0x40, Found(m_mid, 0, 0x40)}}) +
        Down(m_low, 0) + ChannelOpened(m_low, 2, 0) +
        Sweep({{0x20, {}}, {0x40, Found(m_low, 0, 0x40)}}) + ChannelsClosed(m_low) +
        ChannelsClosed(m_mid) + ChannelsClosed(m_top);
    ExpectJournal(expected);
}

TEST_F(I2cSwitchProbeTree, MarksEverySwitchWhileItRuns) {
    std::vector<std::string> marks;
    m_low.OnCall([&] {
        marks.push_back(std::string(m_top.m_is_probing ? "top " : "") +
                        (m_mid.m_is_probing ? "mid " : "") + (m_low.m_is_probing ? "low" : ""));
    });
    EXPECT_TRUE(m_bus.probe(0));
    EXPECT_EQ(marks, std::vector<std::string>(2, "top mid low"));
    for (const CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
        EXPECT_FALSE(sw->m_is_probing) << sw->GetName();
    }
}

// A switch whose own probe only looks at its mark and leaves it alone.
class CMarkedSwitch : public CJournalSwitch {
  public:
    using CJournalSwitch::CJournalSwitch;
    bool probe(int level) override {
        marked = m_is_probing;
        at_level = level;
        return false;
    }
    bool marked = false;
    int at_level = -1;
};

TEST_F(I2cSwitchProbeTree, MarksASwitchBeforeItsProbeAndUnmarksItAfter) {
    auto* inner = new CMarkedSwitch(m_journal, "inner", 4, 0x73, 1, int8_t{0});
    Hang(*m_low.getChannelMenu(0), inner);
    EXPECT_TRUE(m_low.probe(5));
    EXPECT_TRUE(inner->marked);
    EXPECT_EQ(inner->at_level, 6);
    EXPECT_FALSE(inner->m_is_probing);
    EXPECT_EQ(m_journal.Calls().back(), "low-3: DisableChannels()");
}

TEST_F(I2cSwitchProbeTree, GoesDownToEverySwitchOfAChannelInOrder) {
    AddSwitch(m_low, 0, "first", 4, 0x73, 0);
    m_low.getChannelMenu(0)->AddChild(new CDiagDevice("slave", "no switch", TDEVICE),
                                      CDiagObj::NO_SORT);
    CJournalSwitch& second = AddSwitch(m_low, 0, "second", 5, 0x74, 0);
    EXPECT_TRUE(m_low.probe(1));
    auto* first = dynamic_cast<CJournalSwitch*>(m_low.getChannelMenu(0)->FindChild("first-4"));
    ASSERT_NE(first, nullptr);
    ExpectJournal(EmptyChannel(m_low, 1, 0) + Down(*first, 0) + ChannelsClosed(*first) +
                  Down(second, 0) + ChannelsClosed(second) + ChannelsClosed(m_low));
}

TEST_F(I2cSwitchProbeTree, StartsWithTheCommandOfTheBus) {
    Populate();
    m_mid.AddMyDeviceAddr(0, 0x33);

    EXPECT_EQ(Send(Command("probe"), MSG_CALL).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x70, 0x20}));
    EXPECT_EQ(m_top.GetMyDeviceAddrList(0), CAddresses{0x30});
    EXPECT_EQ(m_top.GetMyDeviceAddrList(1), (CAddresses{0x40, 0x71}));
    EXPECT_EQ(m_mid.GetMyDeviceAddrList(0), (CAddresses{0x51, 0x72}));
    for (const CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
        EXPECT_FALSE(sw->IsOpen(0) || sw->IsOpen(1)) << sw->GetName();
    }
}

}  // namespace
