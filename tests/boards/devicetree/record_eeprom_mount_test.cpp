// What an EEPROM whose contents have a meaning becomes.
#include <string>
#include <vector>

#include "decode/decoders.h"
#include "tests/boards/devicetree/eeprom_mount_test.h"
#include "tests/support/bytes.h"

namespace {

using Names = std::vector<std::string>;

struct kind_t {
    std::string compatible;
    std::string kind;  // of its decoder
    size_t size;
    bool read_only;
    Names commands;  // the library's own
};

const std::vector<kind_t> KINDS = {
    {"atmel,spd", "spd", 256, true, {"show-spd-info"}},
    {"morva,mfg-eeprom",
     "mfg",
     8192,
     false,
     {"show-manuf-info", "get-serial-num", "get-board-info", "chk-mfg"}},
};

class RecordEepromMount : public CEepromMountTest {
  protected:
    Names Children() {
        Names names;
        for (const CDiagObj* child : NodeAt(*m_root, m_path).GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }

    // What "decode" shall print of these contents.
    static Names Told(const std::string& kind, const Bytes& contents) {
        return LinesOf(FindDecoder(kind)->decode(contents));
    }
    std::string WarningOf(const std::string& compatible, uint32_t addr,
                          const Properties& properties) {
        m_log.Clear();
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

TEST_F(RecordEepromMount, HasItsCommandsBehindThoseOfAnEepromAndDecodeLast) {
    for (const kind_t& kind : KINDS) {
        SCOPED_TRACE(kind.compatible);
        Names want = {"enable-path", "clr-path", "read"};
        if (!kind.read_only) {
            want.emplace_back("write-byte");
        }
        want.insert(want.end(), {"memory", "rw-test", "read-cont"});
        want.insert(want.end(), kind.commands.begin(), kind.commands.end());
        want.emplace_back("decode");
        MountBehindThree(kind.compatible, kind.size);
        EXPECT_EQ(Children(), want);
        EXPECT_EQ(Warnings(), Names{});
    }
}

TEST_F(RecordEepromMount, TellsWhatItHoldsOverTheBusBehindThreeSwitches) {
    for (const kind_t& kind : KINDS) {
        SCOPED_TRACE(kind.compatible);
        MountBehindThree(kind.compatible, kind.size);
        m_log.Clear();
        // No checksum of the pattern holds.
        EXPECT_EQ(Call("decode").bytes, CByteVector{MSG_ERR_FAIL});
        EXPECT_EQ(m_log.Texts(LW_PRINT), Told(kind.kind, m_held));
        EXPECT_FALSE(Answers());
    }
}

TEST_F(RecordEepromMount, TellsWhatItHoldsAtThatMoment) {
    MountOnRoot("morva,mfg-eeprom", 8192);
    m_held[3] = 'Q';
    Refill();
    m_log.Clear();
    Call("decode");
    EXPECT_EQ(m_log.Texts(LW_PRINT), Told("mfg", m_held));
}

TEST_F(RecordEepromMount, PassesWhenItsChecksumHolds) {
    MountOnRoot("morva,mfg-eeprom", 8192);
    std::fill(m_held.begin(), m_held.end(), uint8_t{0});
    m_held[94] = 0x4B;  // of 94 zeros, by another program
    m_held[95] = 0xBE;
    Refill();
    EXPECT_EQ(Call("decode").bytes, CByteVector{MSG_SUCCESS});
    EXPECT_EQ(Call("show-manuf-info").bytes, CByteVector{MSG_SUCCESS});
}

TEST_F(RecordEepromMount, TellsNothingOfWhatItCannotRead) {
    MountBehindThree("atmel,spd", 256);

    ASSERT_EQ(
        Send(NodeAt(*m_root, "/sim/nack"), MSG_CALL, std::string("i2c-0"), uint8_t{0x50}).Code(),
        MSG_SUCCESS);
    m_log.Clear();
    EXPECT_EQ(Call("decode").bytes, CByteVector{MSG_ERR_FAIL});
    EXPECT_EQ(m_log.Texts(LW_PRINT), Names{});
    EXPECT_EQ(m_log.Texts(LW_ERR_SW).size() + m_log.Texts(LW_ERR_TEST).size(), 1U);
    ASSERT_EQ(Send(NodeAt(*m_root, "/sim/clear"), MSG_CALL).Code(), MSG_SUCCESS);
    EXPECT_FALSE(Answers());
}

TEST_F(RecordEepromMount, OfAMemoryModuleHangsAtEachAddressOfASlot) {
    MountOnBus([](CBlobBuilder& bus) {
        for (uint32_t addr = 0x50; addr <= 0x57; ++addr) {
            bus.Device("dimm" + std::to_string(addr - 0x50), "atmel,spd", addr).End();
        }
    });
    EXPECT_EQ(NamesAt("/i2c-0"),
              (Names{"dimm0", "dimm1", "dimm2", "dimm3", "dimm4", "dimm5", "dimm6", "dimm7"}));
    for (const std::string& name : NamesAt("/i2c-0")) {
        m_path = "/i2c-0/" + name;
        m_log.Clear();
        Call("show-spd-info");
        EXPECT_EQ(m_log.Texts(LW_PRINT).at(0),
                  "0      : ff info_size_crc  bytes written into serial memory, CRC coverage\n");
    }
}

TEST_F(RecordEepromMount, OfAMemoryModuleHangsAtNoOtherAddress) {
    for (const auto& [addr, text] : {std::pair(0x4FU, "0x4f"), std::pair(0x58U, "0x58")}) {
        EXPECT_EQ(WarningOf("atmel,spd", addr, [](CBlobBuilder&) {}),
                  std::string("left out: /i2c@100/dev: property \"reg\" is ") + text +
                      ", should be an address of a memory slot from 0x50 to 0x57\n");
    }
}

TEST_F(RecordEepromMount, ThatIsSmallerThanItsRecordIsLeftOut) {
    EXPECT_EQ(
        WarningOf("morva,mfg-eeprom", 0x50,
                  [](CBlobBuilder& dev) { dev.Cells("size", {64}).Cells("address-width", {8}); }),
        "left out: /i2c@100/dev: property \"size\" is 64, should be a power of two from 128 to "
        "2048\n");
    EXPECT_EQ(
        WarningOf("atmel,spd", 0x50, [](CBlobBuilder& dev) { dev.Cells("size", {128}); }),
        "left out: /i2c@100/dev: property \"size\" is 128, should be a power of two from 256 to "
        "2048\n");
}
