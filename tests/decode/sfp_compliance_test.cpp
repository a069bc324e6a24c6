// Every bit of the compliance codes and of the options, one at a time.
#include <gtest/gtest.h>

#include "tests/decode/sfp_image.h"

namespace {

struct CBit {
    size_t byte;
    int bit;
    const char* field;
    const char* value;
};

std::string CaseName(const testing::TestParamInfo<CBit>& of) {
    return "Byte" + std::to_string(of.param.byte) + "Bit" + std::to_string(of.param.bit);
}

constexpr const char* GROUPS[] = {
    "10G Ethernet",
    "InfiniBand",
    "ESCON",
    "SONET",
    "Ethernet",
    "Fibre Channel length",
    "Fibre Channel media",
    "Fibre Channel speed",
    "Fibre Channel technology",
    "Cable technology",
    "Unallocated bits",
};

class SfpComplianceBit : public testing::TestWithParam<CBit> {};

TEST_P(SfpComplianceBit, HasItsNameAndNoOther) {
    const auto& [byte, bit, field, value] = GetParam();
    const CSfpImage image = CSfpImage().Set(byte, static_cast<uint8_t>(1 << bit));
    for (const std::string group : GROUPS) {
        EXPECT_EQ(image.In(group), group == field ? value : "absent");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, SfpComplianceBit,
    testing::Values(
        CBit{3, 7, "10G Ethernet", "10GBASE-ER"}, CBit{3, 6, "10G Ethernet", "10GBASE-LRM"},
        CBit{3, 5, "10G Ethernet", "10GBASE-LR"}, CBit{3, 4, "10G Ethernet", "10GBASE-SR"},
        CBit{3, 3, "InfiniBand", "1X SX"}, CBit{3, 2, "InfiniBand", "1X LX"},
        CBit{3, 1, "InfiniBand", "1X copper active"}, CBit{3, 0, "InfiniBand", "1X copper passive"},
        CBit{4, 7, "ESCON", "multimode 1310 nm LED"},
        CBit{4, 6, "ESCON", "single-mode 1310 nm laser"}, CBit{4, 5, "SONET", "OC-192 short reach"},
        CBit{4, 2, "SONET", "OC-48 long reach"}, CBit{4, 1, "SONET", "OC-48 intermediate reach"},
        CBit{4, 0, "SONET", "OC-48 short reach"}, CBit{5, 7, "Unallocated bits", "byte 5 bit 7"},
        CBit{5, 6, "SONET", "OC-12 single-mode long reach"},
        CBit{5, 5, "SONET", "OC-12 single-mode intermediate reach"},
        CBit{5, 4, "SONET", "OC-12 short reach"}, CBit{5, 3, "Unallocated bits", "byte 5 bit 3"},
        CBit{5, 2, "SONET", "OC-3 single-mode long reach"},
        CBit{5, 1, "SONET", "OC-3 single-mode intermediate reach"},
        CBit{5, 0, "SONET", "OC-3 short reach"}, CBit{6, 7, "Ethernet", "BASE-PX"},
        CBit{6, 6, "Ethernet", "BASE-BX10"}, CBit{6, 5, "Ethernet", "100BASE-FX"},
        CBit{6, 4, "Ethernet", "100BASE-LX/LX10"}, CBit{6, 3, "Ethernet", "1000BASE-T"},
        CBit{6, 2, "Ethernet", "1000BASE-CX"}, CBit{6, 1, "Ethernet", "1000BASE-LX"},
        CBit{6, 0, "Ethernet", "1000BASE-SX"},
        CBit{7, 7, "Fibre Channel length", "very long distance (V)"},
        CBit{7, 6, "Fibre Channel length", "short distance (S)"},
        CBit{7, 5, "Fibre Channel length", "intermediate distance (I)"},
        CBit{7, 4, "Fibre Channel length", "long distance (L)"},
        CBit{7, 3, "Fibre Channel length", "medium distance (M)"},
        CBit{7, 2, "Fibre Channel technology", "shortwave laser with linear RX (SA)"},
        CBit{7, 1, "Fibre Channel technology", "longwave laser (LC)"},
        CBit{7, 0, "Fibre Channel technology", "electrical inter-enclosure (EL)"},
        CBit{8, 7, "Fibre Channel technology", "electrical intra-enclosure (EL)"},
        CBit{8, 6, "Fibre Channel technology", "shortwave laser without OFC (SN)"},
        CBit{8, 5, "Fibre Channel technology", "shortwave laser with OFC (SL)"},
        CBit{8, 4, "Fibre Channel technology", "longwave laser (LL)"},
        CBit{8, 3, "Cable technology", "active"}, CBit{8, 2, "Cable technology", "passive"},
        CBit{8, 1, "Unallocated bits", "byte 8 bit 1"},
        CBit{8, 0, "Unallocated bits", "byte 8 bit 0"},
        CBit{9, 7, "Fibre Channel media", "twin axial pair (TW)"},
        CBit{9, 6, "Fibre Channel media", "twisted pair (TP)"},
        CBit{9, 5, "Fibre Channel media", "miniature coax (MI)"},
        CBit{9, 4, "Fibre Channel media", "video coax (TV)"},
        CBit{9, 3, "Fibre Channel media", "62.5 um multimode (M6)"},
        CBit{9, 2, "Fibre Channel media", "50 um multimode (M5/M5E)"},
        CBit{9, 1, "Unallocated bits", "byte 9 bit 1"},
        CBit{9, 0, "Fibre Channel media", "single-mode (SM)"},
        CBit{10, 7, "Fibre Channel speed", "1200 MB/s"},
        CBit{10, 6, "Fibre Channel speed", "800 MB/s"},
        CBit{10, 5, "Fibre Channel speed", "1600 MB/s"},
        CBit{10, 4, "Fibre Channel speed", "400 MB/s"},
        CBit{10, 3, "Fibre Channel speed", "3200 MB/s"},
        CBit{10, 2, "Fibre Channel speed", "200 MB/s"},
        CBit{10, 1, "Fibre Channel speed", "more in byte 62"},
        CBit{10, 0, "Fibre Channel speed", "100 MB/s"}),
    CaseName);

TEST(SfpCompliance, ListsAllThatIsSet) {
    EXPECT_EQ(CSfpImage().Set(3, 0x30).In("10G Ethernet"), "10GBASE-LR, 10GBASE-SR");
    EXPECT_EQ(CSfpImage().Set(7, 0x01).Set(8, 0x40).In("Fibre Channel technology"),
              "electrical inter-enclosure (EL), shortwave laser without OFC (SN)");
}

TEST(SfpCompliance, SecondSpeedByteCountsWhenTheFirstSaysSo) {
    EXPECT_EQ(CSfpImage().Set(10, 0x08).Set(62, 0x01).In("Fibre Channel speed"), "3200 MB/s");
    EXPECT_EQ(CSfpImage().Set(10, 0x0A).Set(62, 0x81).In("Fibre Channel speed"),
              "3200 MB/s, more in byte 62, byte 62 bit 7, 64GFC");
}

struct CReach {
    uint8_t byte_4;
    uint8_t byte_5;
    const char* reach;
};

class SfpSonet : public testing::TestWithParam<CReach> {};

TEST_P(SfpSonet, ReachIsToldBySpecifiers) {
    const auto& [byte_4, byte_5, reach] = GetParam();
    EXPECT_EQ(CSfpImage().Set(4, byte_4).Set(5, byte_5).In("SONET reach"), reach);
}

// Specifier bit 1 is 0x10, bit 2 is 0x08.
INSTANTIATE_TEST_SUITE_P(Of, SfpSonet,
                         testing::Values(CReach{0x01, 0, "SR"}, CReach{0x11, 0, "SR-1"},
                                         CReach{0x20, 0, "SR"}, CReach{0x12, 0, "IR-1"},
                                         CReach{0x0A, 0, "IR-2"}, CReach{0x14, 0, "LR-1"},
                                         CReach{0x0C, 0, "LR-2"}, CReach{0x1C, 0, "LR-3"},
                                         CReach{0x00, 0x10, "SR"}, CReach{0x10, 0x01, "SR-1"},
                                         CReach{0x10, 0x20, "IR-1"}, CReach{0x08, 0x02, "IR-2"},
                                         CReach{0x10, 0x40, "LR-1"}, CReach{0x18, 0x04, "LR-3"},
                                         CReach{0x16, 0, "IR-1, LR-1"}, CReach{0x08, 0x10, "0x1"},
                                         CReach{0x18, 0, "0x3"}, CReach{0x04, 0, "absent"},
                                         CReach{0x00, 0, "absent"}));

class SfpOptionBit : public testing::TestWithParam<CBit> {};

TEST_P(SfpOptionBit, HasItsName) {
    const auto& [byte, bit, field, value] = GetParam();
    EXPECT_EQ(CSfpImage().Set(byte, static_cast<uint8_t>(1 << bit)).In(field), value);
    EXPECT_EQ(CSfpImage().In(field), "none");
}

INSTANTIATE_TEST_SUITE_P(
    Of, SfpOptionBit,
    testing::Values(CBit{64, 7, "Signals and functions", "byte 64 bit 7"},
                    CBit{64, 4, "Signals and functions", "paging"},
                    CBit{64, 3, "Signals and functions", "retimer or CDR"},
                    CBit{64, 2, "Signals and functions", "cooled laser"},
                    CBit{64, 0, "Signals and functions", "linear receiver output"},
                    CBit{65, 7, "Signals and functions", "receiver decision threshold"},
                    CBit{65, 6, "Signals and functions", "tunable transmitter"},
                    CBit{65, 5, "Signals and functions", "RATE_SELECT"},
                    CBit{65, 4, "Signals and functions", "TX_DISABLE"},
                    CBit{65, 3, "Signals and functions", "TX_FAULT"},
                    CBit{65, 2, "Signals and functions", "inverted RX_LOS"},
                    CBit{65, 1, "Signals and functions", "RX_LOS"},
                    CBit{65, 0, "Signals and functions", "byte 65 bit 0"},
                    CBit{93, 7, "Enhanced options", "alarm and warning flags"},
                    CBit{93, 6, "Enhanced options", "soft TX_DISABLE"},
                    CBit{93, 5, "Enhanced options", "soft TX_FAULT"},
                    CBit{93, 4, "Enhanced options", "soft RX_LOS"},
                    CBit{93, 3, "Enhanced options", "soft RATE_SELECT"},
                    CBit{93, 2, "Enhanced options", "application select (SFF-8079)"},
                    CBit{93, 1, "Enhanced options", "soft rate select (SFF-8431)"},
                    CBit{93, 0, "Enhanced options", "byte 93 bit 0"},
                    CBit{92, 7, "Diagnostics type", "byte 92 bit 7"},
                    CBit{92, 6, "Diagnostics type", "implemented"},
                    CBit{92, 5, "Diagnostics type", "internally calibrated"},
                    CBit{92, 4, "Diagnostics type", "externally calibrated"},
                    CBit{92, 3, "Diagnostics type", "average RX power"},
                    CBit{92, 2, "Diagnostics type", "address change"},
                    CBit{92, 1, "Diagnostics type", "byte 92 bit 1"},
                    CBit{92, 0, "Diagnostics type", "byte 92 bit 0"}),
    CaseName);

TEST(SfpPowerLevel, IsTheGreatestDeclared) {
    EXPECT_EQ(CSfpImage().In("Power level"), "1 (1 W)");
    EXPECT_EQ(CSfpImage().Set(64, 0x02).In("Power level"), "2 (1.5 W)");
    EXPECT_EQ(CSfpImage().Set(64, 0x20).In("Power level"), "3 (2 W)");
    EXPECT_EQ(CSfpImage().Set(64, 0x22).In("Power level"), "3 (2 W)");
    EXPECT_EQ(CSfpImage().Set(64, 0x40).In("Power level"), "4 (more than 2 W)");
    EXPECT_EQ(CSfpImage().Set(64, 0x62).In("Power level"), "4 (more than 2 W)");
    EXPECT_EQ(CSfpImage().Set(64, 0x62).In("Signals and functions"), "none");
}

}  // namespace
