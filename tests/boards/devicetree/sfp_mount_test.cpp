// What a cage of the description becomes, and the memories of the module in it.
#include <algorithm>
#include <string>
#include <vector>

#include "decode/decoders.h"
#include "tests/boards/devicetree/eeprom_mount_test.h"
#include "tests/support/bytes.h"

namespace {

using Names = std::vector<std::string>;

constexpr size_t PAGE = 256;
constexpr size_t MONITORING_TYPE = 92;

class SfpMount : public CEepromMountTest {
  protected:
    Names Children(const std::string& path) {
        Names names;
        for (const CDiagObj* child : NodeAt(*m_root, path).GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }

    // A module of that monitoring type; with diagnostics at its second address, or not.
    void MountModule(uint8_t monitoring_type, bool answers_twice) {
        m_second = Pattern(2 * PAGE);
        m_second.erase(m_second.begin(), m_second.begin() + PAGE);
        const std::filesystem::path second = "images/" + std::string(FOLDER) + "/0x51.bin";
        if (answers_twice) {
            m_folder.Write(second.string(), m_second);
        } else {
            std::filesystem::remove(m_folder / second);
        }
        MountBehindThree("sff,sfp", PAGE);
        m_held[MONITORING_TYPE] = monitoring_type;
        Refill();
        m_log.Clear();
    }
    static Names Told(const Bytes& image) { return LinesOf(FindDecoder("sfp")->decode(image)); }
    Bytes Both() const {
        Bytes both = m_held;
        both.insert(both.end(), m_second.begin(), m_second.end());
        return both;
    }
    Bytes SerialId() const { return {m_held.begin(), m_held.begin() + 128}; }

    static constexpr const char* FOLDER = "i2c-0/0x70/ch1/0x71/ch2/0x72/ch3";
    Bytes m_second;
};

}  // namespace

TEST_F(SfpMount, HasItsCommandsAndItsDiagnosticsBehindThoseOfAnEeprom) {
    MountModule(0, false);
    EXPECT_EQ(Children(m_path),
              (Names{"enable-path", "clr-path", "read", "memory", "rw-test", "read-cont",
                     "show-eeprom-info", "type", "decode", "diagnostics"}));
    EXPECT_EQ(Children(m_path + "/diagnostics"),
              (Names{"enable-path", "clr-path", "read", "memory", "rw-test", "read-cont"}));
}

TEST_F(SfpMount, TellsTheDiagnosticsOfAModuleThatHasThem) {
    MountModule(0x68, true);
    Call("decode");
    EXPECT_EQ(m_log.Texts(LW_PRINT), Told(Both()));
    EXPECT_FALSE(Answers());
}

TEST_F(SfpMount, DoesNotAskForDiagnosticsOfAModuleThatHasNone) {
    // None at all; and those that share one address, which takes a page select.
    for (const uint8_t type : {uint8_t{0x00}, uint8_t{0x28}, uint8_t{0x44}, uint8_t{0x6C}}) {
        MountModule(type, true);
        Call("decode");
        EXPECT_EQ(m_log.Texts(LW_PRINT), Told(SerialId())) << unsigned{type};
        EXPECT_EQ(m_log.Texts(LW_ERR_TEST), Names{});
    }
}

TEST_F(SfpMount, TellsTheSerialIdWhenPromisedDiagnosticsDoNotAnswer) {
    MountModule(0x68, false);
    EXPECT_EQ(Call("decode").bytes, CByteVector{MSG_ERR_FAIL});
    EXPECT_EQ(m_log.Texts(LW_PRINT), Told(SerialId()));
    EXPECT_FALSE(Answers());
}

TEST_F(SfpMount, ReadsTheDiagnosticsAsBytesToo) {
    MountModule(0, true);
    const CAnswer answer = Send(NodeAt(*m_root, m_path + "/diagnostics/memory"), MSG_PEEKV,
                                uint64_t{96}, uint64_t{96});
    ASSERT_EQ(answer.Code(), MSG_SUCCESS);
    EXPECT_EQ(answer.bytes.back(), m_second[96]);
    EXPECT_FALSE(Answers());
}

TEST_F(SfpMount, KeepsTheDiagnosticsInAFileOfTheirOwn) {
    MountModule(0, true);
    EXPECT_EQ(BytesOf(m_folder.Path() / "state" / FOLDER / "0x51.bin"), m_second);
    EXPECT_EQ(DescriptionAt("/sim/i2c-0.top-0.ch1.middle-0.ch2.low-0.ch3.dev.diagnostics"),
              "contents of " + (m_folder.Path() / "state" / FOLDER / "0x51.bin").string());
}

TEST_F(SfpMount, TakesBothAddressesOfItsBus) {
    CBlobBuilder builder;
    builder.Begin("i2c@100").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
    builder.Cells("phandle", {1}).Device("eeprom", "atmel,24c02", 0x51).End().End();
    builder.Begin("cage").Text("compatible", "sff,sfp").Cells("i2c-bus", {1}).End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/i2c-0"), Names{"eeprom"});
    EXPECT_EQ(m_log.Joined(LW_WARN),
              "left out: /cage: address 0x51 is already taken by /i2c@100/eeprom\n");
}

TEST_F(SfpMount, ClassifiesTheModuleOverTheBus) {
    MountModule(0, false);
    m_held[3] = 0x10;
    Refill();
    EXPECT_EQ(Call("type").bytes, (CByteVector{MSG_SUCCESS, 0, 0, 0, 10}));
    m_held[3] = 0;
    m_held[6] = 0x08;
    Refill();
    EXPECT_EQ(Call("type").bytes, (CByteVector{MSG_SUCCESS, 0, 0, 0, 1}));
}
