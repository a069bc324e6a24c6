#include "boards/chips/mux_chip.h"

#include "tests/boards/chips/mux_test.h"

namespace {

using CTexts = std::vector<std::string>;

class MuxChip : public CMuxTest {};

class EveryMuxChip : public CMuxTest, public testing::WithParamInterface<const char*> {};

TEST_P(EveryMuxChip, SelectsEachChannelAlone) {
    const CMuxPair mux = AddMux(GetParam(), 0x70);
    for (unsigned int ch = 0; ch < mux.chip.Channels(); ++ch) {
        AddMemory(mux.chip.Channel(ch), 0x50, static_cast<uint8_t>(0xA0 + ch));
    }
    for (unsigned int ch = 0; ch < mux.chip.Channels(); ++ch) {
        EXPECT_EQ(Call(mux.driver, "sel-channel", static_cast<uint8_t>(ch)).Code(), MSG_SUCCESS);
        EXPECT_EQ(ReadByte(0x50), static_cast<int>(0xA0 + ch)) << "channel " << ch;
    }
    EXPECT_EQ(Call(mux.driver, "disable-channels").Code(), MSG_SUCCESS);
    EXPECT_EQ(ReadByte(0x50), -1);
}

TEST_P(EveryMuxChip, RefusesAChannelThatItDoesNotHave) {
    const CMuxPair mux = AddMux(GetParam(), 0x70);
    const auto beyond = static_cast<uint8_t>(mux.chip.Channels());
    const uint8_t before = mux.chip.Control();
    for (const char* command : {"sel-channel", "set-channel", "clear-channel"}) {
        const CLogCapture log;
        EXPECT_EQ(Call(mux.driver, command, beyond).Code(), MSG_ERR_FAIL) << command;
        const CTexts errors = log.Texts(LW_ERR_SW);
        ASSERT_EQ(errors.size(), 1U) << command;
        EXPECT_NE(errors[0].find("has channels 0 to " + std::to_string(beyond - 1)),
                  std::string::npos)
            << errors[0];
    }
    EXPECT_EQ(mux.chip.Control(), before);
    EXPECT_TRUE(m_bus.Tape().empty());
}

INSTANTIATE_TEST_SUITE_P(Family, EveryMuxChip,
                         testing::Values("pca9540", "pca9542", "pca9543", "pca9544", "pca9545",
                                         "pca9546", "pca9547", "pca9548"),
                         [](const auto& part) { return std::string(part.param); });

TEST_F(MuxChip, HangsItsChannelsBelowItAsPlainMenus) {
    const CMuxPair mux = AddMux("pca9540", 0x70);
    for (int ch = 0; ch < 2; ++ch) {
        const CDiagMenu* menu = mux.driver.getChannelMenu(ch);
        ASSERT_NE(menu, nullptr);
        EXPECT_EQ(menu->GetNodeType(), TMENU);
        EXPECT_EQ(menu->GetName(), "ch" + std::to_string(ch));
        EXPECT_EQ(menu->GetParent(), &mux.driver);
    }
    EXPECT_EQ(mux.driver.getChannelMenu(2), nullptr);
    EXPECT_EQ(mux.driver.getChannelMenu(-1), nullptr);
}

TEST_F(MuxChip, ShowsWhatTheChipSaysAndNotWhatWasWritten) {
    const CMuxPair mux = AddMux("pca9548", 0x70);
    Call(mux.driver, "sel-channel", uint8_t{1});
    byte_t behind_its_back = 0x24;
    CI2cXfrReq req;
    req.saddr = 0x70;
    req.data = &behind_its_back;
    req.tsize = 1;
    ASSERT_TRUE(m_bus.I2cTrans(req));

    const CLogCapture log;
    EXPECT_EQ(Call(mux.driver, "show-channels").Code(), MSG_SUCCESS);
    EXPECT_EQ(log.Texts(LW_PRINT),
              CTexts{"pca9548-0(0x70): control register 0x24, open channels: 2 5\n"});
}

TEST_F(MuxChip, ShowsThatNoChannelIsOpenAndWhatInterrupts) {
    const CMuxPair mux = AddMux("pca9545", 0x70);
    const CLogCapture log;
    EXPECT_EQ(Call(mux.driver, "show-channels").Code(), MSG_SUCCESS);
    EXPECT_EQ(log.Texts(LW_PRINT),
              (CTexts{"pca9545-0(0x70): control register 0x00, open channels: none\n",
                      "pca9545-0(0x70): interrupting channels: none\n"}));
}

TEST_F(MuxChip, OpensASecondChannelOfAMaskPartBesideTheFirst) {
    const CMuxPair mux = AddMux("pca9546", 0x70);
    AddMemory(mux.chip.Channel(0), 0x50, 0x3C);
    AddMemory(mux.chip.Channel(3), 0x50, 0x69);
    Call(mux.driver, "set-channel", uint8_t{0});
    Call(mux.driver, "set-channel", uint8_t{3});
    EXPECT_EQ(mux.chip.Control(), 0x09);
    EXPECT_EQ(ReadByte(0x50), 0x3C & 0x69) << "both pull the wire low where they send 0";
    Call(mux.driver, "clear-channel", uint8_t{0});
    EXPECT_EQ(ReadByte(0x50), 0x69);
}

TEST_F(MuxChip, SetsAndClearsSetsOfChannels) {
    const CMuxPair mux = AddMux("pca9548", 0x70);
    EXPECT_EQ(Call(mux.driver, "set-channels", uint32_t{0x0F}).Code(), MSG_SUCCESS);
    EXPECT_EQ(Call(mux.driver, "set-channels", uint32_t{0x30}).Code(), MSG_SUCCESS);
    EXPECT_EQ(mux.chip.Control(), 0x3F);
    EXPECT_EQ(Call(mux.driver, "clear-channels", uint32_t{0x15}).Code(), MSG_SUCCESS);
    EXPECT_EQ(mux.chip.Control(), 0x2A);
    EXPECT_EQ(Call(mux.driver, "set-channels", uint32_t{0}).Code(), MSG_SUCCESS);
    EXPECT_EQ(mux.chip.Control(), 0x2A);
    EXPECT_EQ(Call(mux.driver, "set-channels", uint32_t{0x101}).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(mux.chip.Control(), 0x2A);
}

TEST_F(MuxChip, RefusesASecondChannelOfAPartThatOpensOne) {
    const CMuxPair mux = AddMux("pca9547", 0x70);
    Call(mux.driver, "sel-channel", uint8_t{2});
    const CLogCapture log;
    EXPECT_EQ(Call(mux.driver, "set-channel", uint8_t{5}).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(mux.chip.Control(), 0x0A);
    EXPECT_EQ(log.Texts(LW_ERR_SW),
              CTexts{"pca9547-0(0x70): a pca9547 opens one channel at a time, not 2 5 together; "
                     "sel-channel closes the others\n"});
    EXPECT_EQ(log.Texts(LW_PRINT), CTexts{"   Enable Channel 5 error!\n"});
    // The open one again, and closing another, change nothing.
    EXPECT_EQ(Call(mux.driver, "set-channel", uint8_t{2}).Code(), MSG_SUCCESS);
    EXPECT_EQ(Call(mux.driver, "clear-channel", uint8_t{5}).Code(), MSG_SUCCESS);
    EXPECT_EQ(mux.chip.Control(), 0x0A);
    EXPECT_EQ(Call(mux.driver, "clear-channel", uint8_t{2}).Code(), MSG_SUCCESS);
    EXPECT_EQ(mux.chip.Control(), 0x00);
}

TEST_F(MuxChip, TellsWhyTheChipDidNotTakeAChannel) {
    auto* driver = new CMuxChip(*FindMuxPart("pca9548"), "missing", "multiplexer", 7, 0x71, -1);
    m_bus.AddChild(driver, CDiagObj::NO_SORT);
    for (const char* command : {"sel-channel", "set-channel", "clear-channel"}) {
        const CLogCapture log;
        EXPECT_EQ(Call(*driver, command, uint8_t{3}).Code(), MSG_ERR_FAIL) << command;
        const CTexts errors = log.Texts(LW_ERR_TEST);
        ASSERT_EQ(errors.size(), 1U) << command;
        EXPECT_NE(errors[0].find("missing-7(0x71): cannot "), std::string::npos) << errors[0];
        EXPECT_NE(errors[0].find(m_bus.GetLastError()), std::string::npos) << errors[0];
    }
    EXPECT_EQ(Call(*driver, "show-channels").Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call(*driver, "disable-channels").Code(), MSG_ERR_FAIL);
}

TEST_F(MuxChip, MovesOneByteForASelection) {
    const CMuxPair mux = AddMux("pca9547", 0x77);
    Call(mux.driver, "sel-channel", uint8_t{6});
    Call(mux.driver, "disable-channels");
    EXPECT_EQ(m_bus.Tape(), (CTexts{"[08] 77 w 0e", "[0e] 77 w 00"}));
}

TEST_F(MuxChip, KeepsAListOfDevicesForEachChannel) {
    const CMuxPair mux = AddMux("pca9540", 0x70);
    mux.driver.AddMyDeviceAddr(1, 0x50);
    mux.driver.AddMyDeviceAddr(1, 0x48);
    mux.driver.AddMyDeviceAddr(1, 0x50);
    mux.driver.AddMyDeviceAddr(9, 0x50);
    EXPECT_EQ(mux.driver.GetMyDeviceAddrList(1), (std::list<uint8_t>{0x50, 0x48}));
    EXPECT_TRUE(mux.driver.GetMyDeviceAddrList(0).empty());
    EXPECT_TRUE(mux.driver.GetMyDeviceAddrList(9).empty());

    const CLogCapture log;
    mux.driver.ShowMyDeviceAddrList(1);
    EXPECT_EQ(log.Joined(LW_PRINT), "devices connected to channel 1: 0x50 0x48 \n");
    mux.driver.ClearMyDeviceAddrList();
    EXPECT_TRUE(mux.driver.GetMyDeviceAddrList(1).empty());
}

TEST_F(MuxChip, MovesAsMuchAtOnceAsItsRootBus) {
    const CMuxPair upper = AddMux("pca9547", 0x77);
    const CMuxPair lower = AddMux(upper, 3, "pca9548", 0x70);
    EXPECT_EQ(lower.driver.GetMaxTransSize(), m_bus.GetMaxTransSize());
    CMuxChip lost(*FindMuxPart("pca9548"), "lost", "multiplexer", 0, 0x70, -1);
    EXPECT_EQ(lost.GetMaxTransSize(), 0U);
}

TEST_F(MuxChip, StandsForOnePathWithAllOthersOfItsRootBus) {
    const CMuxPair first = AddMux("pca9547", 0x77);
    const CMuxPair second = AddMux("pca9548", 0x70);
    const CMuxPair below = AddMux(first, 3, "pca9548", 0x71);
    for (const CMuxPair& mux : {first, second, below}) {
        EXPECT_EQ(mux.driver.PathTo(mux.driver), &m_bus);
    }
}

}  // namespace
