// What an EEPROM of the description becomes.
#include "framework/diag_array.h"
#include "tests/boards/devicetree/eeprom_mount_test.h"

namespace {

using Names = std::vector<std::string>;

class EepromKind : public CEepromMountTest {
  protected:
    Names ChildrenOf(const std::string& path) {
        Names names;
        for (const CDiagObj* child : NodeAt(*m_root, path).GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }
    // The bytes that "read" prints, without the addresses.
    std::string Read(const std::string& path, uint32_t addr, uint32_t length) {
        m_log.Clear();
        EXPECT_EQ(Send(NodeAt(*m_root, path + "/read"), MSG_CALL, addr, length).Code(),
                  MSG_SUCCESS);
        return m_log.Joined(LW_PRINT);
    }
    std::string WarningOf(
        const std::string& compatible, uint32_t addr,
        const Properties& properties = [](CBlobBuilder&) {}) {
        MountOnBus([&](CBlobBuilder& bus) {
            bus.Device("dev", compatible, addr);
            properties(bus);
            bus.End();
        });
        EXPECT_EQ(NamesAt("/i2c-0"), Names{});
        return m_log.Joined(LW_WARN);
    }
};

}  // namespace

TEST_F(EepromKind, HasTheChildrenOfAnEepromInTheirOrder) {
    MountOnRoot("atmel,24c64", 8192);
    EXPECT_EQ(ChildrenOf(m_path), (Names{"read", "write-byte", "memory", "rw-test", "read-cont"}));
    MountBehindThree("atmel,24c512", 65536);
    EXPECT_EQ(ChildrenOf(m_path), (Names{"enable-path", "clr-path", "read", "write-byte", "memory",
                                         "rw-test", "read-cont"}));
    MountOnRoot("atmel,24c02", 256, [](CBlobBuilder& dev) { dev.Bytes("read-only", ""); });
    EXPECT_EQ(ChildrenOf(m_path), (Names{"read", "memory", "rw-test", "read-cont"}));
}

TEST_F(EepromKind, KeepsTheNameAndTheBoundsOfTheMemory) {
    MountOnRoot("atmel,24c64", 8192);
    const auto& memory = dynamic_cast<CDiagArrayBase&>(NodeAt(*m_root, m_path + "/memory"));
    EXPECT_STREQ(memory.GetDescription(), "EEPROM memory area");
    EXPECT_EQ(memory.GetStartAddr(), 0U);
    EXPECT_EQ(memory.GetEndAddr(), 8192U);
    EXPECT_EQ(memory.GetValueType(), 0x31);
    EXPECT_FALSE(memory.IsReadOnly());
}

TEST_F(EepromKind, IsWhatItsPropertiesSay) {
    MountOnRoot("microchip,24c02", 256);
    EXPECT_EQ(DescriptionAt(m_path), "microchip,24c02 at 0x50: 256 bytes");
    MountOnRoot("morva,mfg-eeprom", 1024, [](CBlobBuilder& dev) {
        dev.Cells("size", {1024}).Cells("pagesize", {16}).Cells("address-width", {16});
        dev.Bytes("read-only", "");
    });
    EXPECT_EQ(DescriptionAt(m_path), "morva,mfg-eeprom at 0x50: 1024 bytes, read-only");
    EXPECT_EQ(Read(m_path, 1000, 24), Dump(1000, 24));
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(EepromKind, IsKnownByAVendorsFallback) {
    m_held = Pattern(256);
    m_folder.Write("images/i2c-0/0x50.bin", m_held);
    MountOnBus([](CBlobBuilder& bus) {
        const std::string compatibles = std::string("acme,new-part") + '\0' + "atmel,24c02";
        bus.Device("dev", compatibles, 0x50).End();
    });
    EXPECT_EQ(DescriptionAt("/i2c-0/dev"), "atmel,24c02 at 0x50: 256 bytes");
    EXPECT_EQ(Read("/i2c-0/dev", 3, 5), Dump(3, 5));
}

TEST_F(EepromKind, MovesAPageAtOnceButNotMoreThanTheLibraryCan) {
    MountOnRoot("atmel,24c256", 32768);
    m_log.Clear();
    ASSERT_EQ(Call("read", uint32_t{0}, uint32_t{512}).Code(), MSG_SUCCESS);
    EXPECT_EQ(m_log.Texts(LW_HW_TRACE).size(), 512U / 64);
    MountOnRoot("acme,24c256", 32768, [](CBlobBuilder& dev) { dev.Cells("pagesize", {256}); });
    m_log.Clear();
    ASSERT_EQ(Call("read", uint32_t{0}, uint32_t{512}).Code(), MSG_SUCCESS);
    EXPECT_EQ(m_log.Texts(LW_HW_TRACE).size(), 512U / 128);
}

TEST_F(EepromKind, OfSeveralAddressesIsOneDeviceOfItsWholeSize) {
    MountOnRoot("atmel,24c16", 2048);
    EXPECT_EQ(NamesAt("/i2c-0"), Names{"dev"});
    EXPECT_TRUE(Read(m_path, 0, 2048) == Dump(0, 2048));
    EXPECT_EQ(Read(m_path, 250, 20), Dump(250, 20));
    ASSERT_EQ(Poke(0x77, 1020, 1030).Code(), MSG_SUCCESS);
    Bytes want = m_held;
    std::fill(want.begin() + 1020, want.begin() + 1031, 0x77);
    EXPECT_TRUE(Contents() == want);
}

TEST_F(EepromKind, Of64KiBReadsEveryByteButNotAllAtOnce) {
    MountOnRoot("atmel,24c512", 65536);
    EXPECT_EQ(Call("read", uint32_t{0}).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("read", uint32_t{0}, uint32_t{65536}).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call("read", uint32_t{0}, uint32_t{70000}).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(m_log.Texts(LW_ERR_SW),
              Names(3, "ERROR: cannot read 65536 bytes at once, give a length of at most 65535\n"));
    EXPECT_TRUE(Read(m_path, 0, 65535) == Dump(0, 65535));
    EXPECT_EQ(Read(m_path, 65535, 1), Dump(65535, 1));
    m_log.Clear();
    EXPECT_EQ(Call("read", uint32_t{1}).Code(), MSG_SUCCESS);
    EXPECT_TRUE(m_log.Joined(LW_PRINT) == Dump(1, 65535));
}

TEST_F(EepromKind, Of64KiBLeavesBadArgumentsToTheCommand) {
    MountOnRoot("atmel,24c512", 65536);
    EXPECT_TRUE(Call("read").bytes.empty());
    EXPECT_EQ(m_log.Texts(LW_ERR_SW).size(), 1U);
    EXPECT_EQ(m_log.Joined(LW_ERR_SW).find("Param exception: "), 0U);
    // Nothing lies behind the end, and that much is read.
    EXPECT_EQ(Read(m_path, 65536, 16), "\n");
    EXPECT_EQ(Call("read", uint32_t{70000}).Code(), MSG_ERR_FAIL);
    EXPECT_NE(m_log.Joined(LW_ERR_SW).find("malloc(-4464) failed"), std::string::npos);
}

TEST_F(EepromKind, BeyondTheLibrarysReachIsADeviceForEachAddress) {
    const std::vector<std::pair<std::string, unsigned int>> parts = {
        {"24c1024", 2}, {"24cm01", 2}, {"24c2048", 4}, {"24cm02", 4}};
    for (const auto& [part, blocks] : parts) {
        SCOPED_TRACE(part);
        MountOnRoot("atmel," + part, size_t{65536} * blocks);
        EXPECT_EQ(NamesAt("/i2c-0"), Names{"dev"});
        EXPECT_EQ(NamesAt(m_path).size(), blocks);
        EXPECT_EQ(Warnings(), Names{});
        const Bytes whole = m_held;
        for (unsigned int block = 0; block < blocks; ++block) {
            const auto begin = whole.begin() + 65536 * static_cast<ptrdiff_t>(block);
            m_held.assign(begin, begin + 65536);
            const std::string path = m_path + "/block" + std::to_string(block);
            EXPECT_EQ(Read(path, 0, 40), Dump(0, 40));
            EXPECT_EQ(Read(path, 65500, 36), Dump(65500, 36));
            EXPECT_EQ(Send(NodeAt(*m_root, path + "/write-byte"), MSG_CALL, uint32_t{65535},
                           uint8_t{0xE0})
                          .Code(),
                      MSG_SUCCESS);
            EXPECT_EQ(Contents()[65536 * block + 65535], 0xE0);
            EXPECT_EQ(
                Send(NodeAt(*m_root, path + "/rw-test"), MSG_CALL, uint16_t{60000}, uint16_t{60300})
                    .Code(),
                MSG_SUCCESS);
        }
    }
    EXPECT_EQ(DescriptionAt("/i2c-0/dev"), "atmel,24cm02 at 0x50: 262144 bytes");
    EXPECT_EQ(DescriptionAt("/i2c-0/dev/block3"), "block 3 at 0x53: 65536 bytes");
}

TEST_F(EepromKind, BeyondTheLibrarysReachTakesAllItsAddresses) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("large@50", "atmel,24c1024", 0x50).End();
        bus.Device("small@51", "atmel,24c02", 0x51).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), Names{"large@50"});
    EXPECT_EQ(m_log.Joined(LW_WARN),
              "left out: /i2c@100/small@51: address 0x51 is already taken by /i2c@100/large@50\n");
}

TEST_F(EepromKind, ThatBeginsInTheMiddleIsRefused) {
    EXPECT_EQ(WarningOf("atmel,24cm02", 0x52),
              "left out: /i2c@100/dev: a chip of 4 addresses cannot begin at 0x52\n");
}

TEST_F(EepromKind, SharesItsAddressWithOthersOnOtherChannels) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c@0").Cells("reg", {0}).Device("two", "atmel,24c04", 0x50).End().End();
        bus.Begin("i2c@1").Cells("reg", {1}).Device("one", "atmel,24c02", 0x50).End();
        bus.Device("next", "atmel,24c02", 0x51).End().End();
        bus.Begin("i2c@2").Cells("reg", {2}).Device("wide", "atmel,24c64", 0x50).End().End();
        bus.End();
    });
    EXPECT_EQ(m_log.Joined(LW_WARN), "");
    const std::vector<std::string> all = {"ch0/two", "ch1/one", "ch1/next", "ch2/wide"};
    const auto memory = [this](const std::string& name) -> CDiagMenu& {
        return NodeAt(*m_root, "/i2c-0/mux-0/" + name + "/memory");
    };
    for (size_t i = 0; i < all.size(); ++i) {
        const auto mark = static_cast<uint8_t>(0xA0 + i);
        EXPECT_EQ(Send(memory(all[i]), MSG_POKEV, mark, uint64_t{0}, uint64_t{0}).Code(),
                  MSG_SUCCESS);
    }
    // Behind its last byte each wraps to its own first one.
    EXPECT_EQ(
        Send(memory("ch1/one"), MSG_POKEV, uint8_t{0x55}, uint64_t{256}, uint64_t{256}).Code(),
        MSG_SUCCESS);
    const std::vector<uint8_t> expected = {0xA0, 0x55, 0xA2, 0xA3};
    for (size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(Send(memory(all[i]), MSG_PEEKV, uint64_t{0}, uint64_t{0}).bytes.back(),
                  expected[i])
            << all[i];
    }
}

TEST_F(EepromKind, WhoseReadsStopAtABlockIsRefused) {
    EXPECT_EQ(WarningOf("atmel,24c04", 0x50,
                        [](CBlobBuilder& dev) { dev.Bytes("no-read-rollover", ""); }),
              "left out: /i2c@100/dev: a chip of 2 addresses with \"no-read-rollover\" is not "
              "driven\n");
}

TEST_F(EepromKind, OfAModuleIgnoresThePropertiesOfItsCage) {
    MountBehindThree("sff,sfp", 256);
    EXPECT_EQ(DescriptionAt(m_path), "sff,sfp at 0x50: 256 bytes, read-only");
    EXPECT_EQ(Read(m_path, 0, 256), Dump(0, 256));
}
