#include "decode/decode_sfp_codes.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "decode/field_text.h"

namespace {

struct CCodeName {
    uint8_t code;
    std::string_view name;
};

// Those beyond SFP tell what a file holds that is none.
constexpr CCodeName IDENTIFIERS[] = {
    {0x00, "unspecified"},
    {0x01, "GBIC"},
    {0x02, "soldered to the board"},
    {0x03, "SFP, SFP+ or SFP28"},
    {0x04, "300-pin XBI"},
    {0x05, "XENPAK"},
    {0x06, "XFP"},
    {0x07, "XFF"},
    {0x08, "XFP-E"},
    {0x09, "XPAK"},
    {0x0A, "X2"},
    {0x0B, "DWDM-SFP or DWDM-SFP+"},
    {0x0C, "QSFP"},
    {0x0D, "QSFP+"},
    {0x0E, "CXP"},
    {0x0F, "Shielded Mini Multilane HD 4X"},
    {0x10, "Shielded Mini Multilane HD 8X"},
    {0x11, "QSFP28"},
    {0x12, "CXP2"},
    {0x13, "CDFP, style 1 or 2"},
    {0x14, "Shielded Mini Multilane HD 4X, fanout cable"},
    {0x15, "Shielded Mini Multilane HD 8X, fanout cable"},
    {0x16, "CDFP, style 3"},
    {0x17, "microQSFP"},
    {0x18, "QSFP-DD"},
    {0x19, "OSFP"},
    {0x1A, "SFP-DD"},
    {0x1B, "DSFP"},
    {0x1C, "MiniLink/OCuLink x4"},
    {0x1D, "MiniLink x8"},
    {0x1E, "QSFP+ with CMIS"},
};

constexpr CCodeName EXTENDED_IDENTIFIERS[] = {
    {0x00, "unspecified"},
    {0x01, "GBIC, MOD_DEF 1"},
    {0x02, "GBIC, MOD_DEF 2"},
    {0x03, "GBIC, MOD_DEF 3"},
    {0x04, "defined by its two-wire interface alone"},
    {0x05, "GBIC, MOD_DEF 5"},
    {0x06, "GBIC, MOD_DEF 6"},
    {0x07, "GBIC, MOD_DEF 7"},
};

constexpr CCodeName CONNECTORS[] = {
    {0x00, "unspecified"},
    {0x01, "SC"},
    {0x02, "Fibre Channel style 1 copper"},
    {0x03, "Fibre Channel style 2 copper"},
    {0x04, "BNC/TNC"},
    {0x05, "Fibre Channel coaxial"},
    {0x06, "Fiber Jack"},
    {0x07, "LC"},
    {0x08, "MT-RJ"},
    {0x09, "MU"},
    {0x0A, "SG"},
    {0x0B, "optical pigtail"},
    {0x0C, "MPO 1x12"},
    {0x0D, "MPO 2x16"},
    {0x20, "HSSDC II"},
    {0x21, "copper pigtail"},
    {0x22, "RJ45"},
    {0x23, "no separable connector"},
    {0x24, "MXC 2x16"},
    {0x25, "CS"},
    {0x26, "SN"},
    {0x27, "MPO 2x12"},
    {0x28, "MPO 1x16"},
};

constexpr CCodeName ENCODINGS[] = {
    {0x00, "unspecified"}, {0x01, "8B/10B"},     {0x02, "4B/5B"},
    {0x03, "NRZ"},         {0x04, "Manchester"}, {0x05, "SONET scrambled"},
    {0x06, "64B/66B"},     {0x07, "256B/257B"},  {0x08, "PAM4"},
};

constexpr CCodeName RATE_SELECTS[] = {
    {0x00, "unspecified"},
    {0x01, "SFF-8079, 4/2/1G"},
    {0x02, "SFF-8431, 8/4/2G, RX only"},
    {0x04, "SFF-8431, 8/4/2G, TX only"},
    {0x06, "SFF-8431, 8/4/2G, RX and TX independent"},
    {0x08, "FC-PI-5, 16/8/4G, RX only"},
    {0x0A, "FC-PI-5, 16/8/4G, RX and TX independent"},
    {0x0C, "FC-PI-6, 32/16/8G, RX and TX independent"},
    {0x0E, "10/8G, RX and TX, sets the retimer or CDR"},
    {0x10, "FC-PI-7, 64/32/16G, RX and TX independent"},
    {0x20, "by the extended compliance code"},
};

constexpr CCodeName EXTENDED_COMPLIANCES[] = {
    {0x00, "unspecified"},
    {0x01, "100G AOC or 25GAUI C2M AOC, bit error ratio 5e-5"},
    {0x02, "100GBASE-SR4 or 25GBASE-SR"},
    {0x03, "100GBASE-LR4 or 25GBASE-LR"},
    {0x04, "100GBASE-ER4 or 25GBASE-ER"},
    {0x05, "100GBASE-SR10"},
    {0x06, "100G CWDM4"},
    {0x07, "100G PSM4, parallel single-mode fibre"},
    {0x08, "100G ACC or 25GAUI C2M ACC, bit error ratio 5e-5"},
    {0x0B, "100GBASE-CR4, 25GBASE-CR CA-25G-L or 50GBASE-CR2 with RS-FEC"},
    {0x0C, "25GBASE-CR CA-25G-S or 50GBASE-CR2 with BASE-R FEC"},
    {0x0D, "25GBASE-CR CA-25G-N or 50GBASE-CR2 without FEC"},
    {0x0E, "10 Mbit/s single-pair Ethernet"},
    {0x10, "40GBASE-ER4"},
    {0x11, "4 x 10GBASE-SR"},
    {0x12, "40G PSM4, parallel single-mode fibre"},
    {0x13, "G.959.1 P1I1-2D1"},
    {0x14, "G.959.1 P1S1-2D2"},
    {0x15, "G.959.1 P1L1-2D2"},
    {0x16, "10GBASE-T with SFI"},
    {0x17, "100G CLR4"},
    {0x18, "100G AOC or 25GAUI C2M AOC, bit error ratio 1e-12"},
    {0x19, "100G ACC or 25GAUI C2M ACC, bit error ratio 1e-12"},
    {0x1A, "100GE-DWDM2"},
    {0x1B, "100G WDM at 1550 nm, 4 wavelengths"},
    {0x1C, "10GBASE-T, short reach"},
    {0x1D, "5GBASE-T"},
    {0x1E, "2.5GBASE-T"},
    {0x1F, "40G SWDM4"},
    {0x20, "100G SWDM4"},
    {0x21, "100G PAM4 BiDi"},
    {0x22, "4WDM-10"},
    {0x23, "4WDM-20"},
    {0x24, "4WDM-40"},
    {0x25, "100GBASE-DR, CAUI-4 without FEC"},
    {0x26, "100G-FR or 100GBASE-FR1, CAUI-4 without FEC"},
    {0x27, "100G-LR or 100GBASE-LR1, CAUI-4 without FEC"},
    {0x28, "100GBASE-SR1, CAUI-4 without FEC"},
    {0x29, "100GBASE-SR1, 200GBASE-SR2 or 400GBASE-SR4"},
    {0x2A, "100GBASE-FR1 or 400GBASE-DR4-2"},
    {0x2B, "100GBASE-LR1"},
    {0x2C, "100G-LR1-20, CAUI-4 without FEC"},
    {0x2D, "100G-ER1-30, CAUI-4 without FEC"},
    {0x2E, "100G-ER1-40, CAUI-4 without FEC"},
    {0x2F, "100G-LR1-20"},
    {0x30, "ACC with 50GAUI, 100GAUI-2 or 200GAUI-4 C2M, bit error ratio 1e-6"},
    {0x31, "AOC with 50GAUI, 100GAUI-2 or 200GAUI-4 C2M, bit error ratio 1e-6"},
    {0x32, "ACC with 50GAUI, 100GAUI-2 or 200GAUI-4 C2M, bit error ratio 2.6e-4"},
    {0x33, "AOC with 50GAUI, 100GAUI-2 or 200GAUI-4 C2M, bit error ratio 2.6e-4"},
    {0x34, "100G-ER1-30"},
    {0x35, "100G-ER1-40"},
    {0x36, "100GBASE-VR1, 200GBASE-VR2 or 400GBASE-VR4"},
    {0x37, "10GBASE-BR"},
    {0x38, "25GBASE-BR"},
    {0x39, "50GBASE-BR"},
    {0x3A, "100GBASE-VR1, CAUI-4 without FEC"},
    {0x3F, "100GBASE-CR1, 200GBASE-CR2 or 400GBASE-CR4"},
    {0x40, "50GBASE-CR, 100GBASE-CR2 or 200GBASE-CR4"},
    {0x41, "50GBASE-SR, 100GBASE-SR2 or 200GBASE-SR4"},
    {0x42, "50GBASE-FR or 200GBASE-DR4"},
    {0x43, "200GBASE-FR4"},
    {0x44, "200G PSM4 at 1550 nm"},
    {0x45, "50GBASE-LR"},
    {0x46, "200GBASE-LR4"},
    {0x47, "400GBASE-DR4"},
    {0x48, "400GBASE-FR4"},
    {0x49, "400GBASE-LR4-6"},
    {0x4A, "50GBASE-ER"},
    {0x4B, "400G-LR4-10"},
    {0x4C, "400GBASE-ZR"},
    {0x7F, "256GFC-SW4"},
    {0x80, "64GFC"},
    {0x81, "128GFC"},
};

constexpr CCodeName REVISIONS[] = {
    {0x00, "unspecified"}, {0x01, "9.3"},  {0x02, "9.5"},  {0x03, "10.2"}, {0x04, "10.4"},
    {0x05, "11.0"},        {0x06, "11.3"}, {0x07, "11.4"}, {0x08, "12.3"}, {0x09, "12.4"},
};

std::string NameOf(std::span<const CCodeName> names, uint8_t code) {
    const auto found = std::find_if(names.begin(), names.end(),
                                    [code](const CCodeName& n) { return n.code == code; });
    return found == names.end() ? Hex(code) : std::string(found->name);
}

}  // namespace

std::string SfpIdentifier(uint8_t code) {
    return NameOf(IDENTIFIERS, code);
}

std::string SfpExtendedIdentifier(uint8_t code) {
    return NameOf(EXTENDED_IDENTIFIERS, code);
}

std::string SfpConnector(uint8_t code) {
    return NameOf(CONNECTORS, code);
}

std::string SfpEncoding(uint8_t code) {
    return NameOf(ENCODINGS, code);
}

std::string SfpRateSelect(uint8_t code) {
    return NameOf(RATE_SELECTS, code);
}

std::string SfpExtendedCompliance(uint8_t code) {
    return NameOf(EXTENDED_COMPLIANCES, code);
}

std::string SfpRevision(uint8_t code) {
    return NameOf(REVISIONS, code);
}
