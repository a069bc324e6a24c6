#include "decode/jep106.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <string_view>

#include "decode/field_text.h"

namespace {

struct CMaker {
    int bank;
    uint8_t code;  // with its parity
    std::string_view name;
};

// Of the thousand and more those who make memory modules, their DRAMs and the registers
// and buffers on them.
constexpr CMaker MAKERS[] = {
    {1, 0x01, "AMD"},
    {1, 0x04, "Fujitsu"},
    {1, 0x07, "Hitachi"},
    {1, 0x10, "NEC"},
    {1, 0x1C, "Mitsubishi"},
    {1, 0x1F, "Atmel"},
    {1, 0x20, "STMicroelectronics"},
    {1, 0x29, "Microchip Technology"},
    {1, 0x2C, "Micron Technology"},
    {1, 0x40, "ProMOS"},
    {1, 0x52, "Alliance Memory"},
    {1, 0x54, "Hewlett-Packard"},
    {1, 0x89, "Intel"},
    {1, 0x97, "Texas Instruments"},
    {1, 0x98, "Kioxia"},
    {1, 0xA4, "IBM"},
    {1, 0xAD, "SK Hynix"},
    {1, 0xB3, "IDT"},
    {1, 0xC1, "Infineon"},
    {1, 0xCE, "Samsung"},
    {1, 0xD5, "Integrated Silicon Solutions"},
    {1, 0xDA, "Winbond"},
    {2, 0x32, "Mushkin Enhanced Memory"},
    {2, 0x40, "Viking Components"},
    {2, 0x4F, "Transcend Information"},
    {2, 0x61, "Wintec Industries"},
    {2, 0x7A, "Apacer Technology"},
    {2, 0x91, "Dataram"},
    {2, 0x94, "Smart Modular"},
    {2, 0x98, "Kingston"},
    {2, 0x9D, "ISSI"},
    {2, 0xA8, "STEC"},
    {2, 0xBA, "PNY Technologies"},
    {2, 0xCE, "Unigen"},
    {2, 0xDA, "Dane-Elec"},
    {2, 0xDF, "Tanisys Technology"},
    {3, 0x9E, "Corsair"},
    {3, 0xB5, "SpecTek"},
    {3, 0xFE, "Elpida"},
    {4, 0x0B, "Nanya Technology"},
    {4, 0x13, "Golden Empire"},
    {4, 0x16, "Netlist"},
    {4, 0x19, "Centon Electronics"},
    {4, 0x25, "Kingmax Semiconductor"},
    {4, 0x83, "Buffalo"},
    {4, 0x94, "Mushkin"},
    {4, 0xDA, "Swissbit"},
    {4, 0xF8, "SimpleTech"},
    {5, 0x43, "Ramaxel Technology"},
    {5, 0x46, "Legacy Electronics"},
    {5, 0x9E, "Intelligent Memory"},
    {5, 0xB0, "OCZ"},
    {5, 0xB3, "Inphi"},
    {5, 0xC8, "Powerchip Semiconductor"},
    {5, 0xCB, "A-DATA Technology"},
    {5, 0xCD, "G Skill"},
    {5, 0xEF, "Team Group"},
    {5, 0xF1, "Toshiba"},
    {6, 0x02, "Patriot Memory"},
    {6, 0x51, "Qimonda"},
    {6, 0x57, "Aeneon"},
    {6, 0x9B, "Crucial Technology"},
    {6, 0xBA, "Virtium Technology"},
    {6, 0xF7, "Avant Technology"},
    {7, 0x16, "Avexir Technologies"},
    {7, 0x32, "Montage Technology"},
    {7, 0x34, "Super Talent"},
    {7, 0x5E, "Lexar Media"},
    {7, 0x6D, "V-Color Technology"},
    {7, 0x9D, "Rambus"},
    {7, 0xC1, "ASint Technology"},
    {7, 0xD3, "Silicon Power"},
    {7, 0xE3, "ATP Electronics"},
    {7, 0xF1, "InnoDisk"},
    {8, 0x26, "Goldenmars Technology"},
    {8, 0x52, "Memphis Electronic"},
    {8, 0x70, "Panram International"},
    {8, 0x9E, "Teikon"},
    {8, 0xEF, "Zentel Electronics"},
    {9, 0x01, "3D PLUS"},
    {9, 0x1A, "UniIC Semiconductors"},
    {9, 0x98, "Essencore"},
    {9, 0xD3, "AP Memory"},
    {9, 0xD5, "Etron Technology"},
    {10, 0x68, "Kimtigo Semiconductor"},
    {10, 0xCD, "Longsys Electronics"},
    {11, 0x31, "Biwin Semiconductor"},
    {11, 0x91, "CXMT"},
};

bool HasOddParity(uint8_t byte) {
    return std::popcount(byte) % 2 == 1;
}

}  // namespace

std::string MakerText(uint8_t continuations, uint8_t code) {
    if (continuations == code && (code == 0x00 || code == 0xFF)) {
        return "(none)";
    }
    const int bank = (continuations & 0x7F) + 1;
    std::string where = "bank " + std::to_string(bank) + ", code " + Hex(code);
    if (!HasOddParity(continuations) || !HasOddParity(code)) {
        return where + ", wrong parity in " +
               (HasOddParity(code) ? "the bank's byte " + Hex(continuations) : "the code");
    }
    const auto* maker = std::find_if(std::begin(MAKERS), std::end(MAKERS), [&](const CMaker& m) {
        return m.bank == bank && m.code == code;
    });
    return maker == std::end(MAKERS) ? where : std::string(maker->name) + " (" + where + ")";
}
