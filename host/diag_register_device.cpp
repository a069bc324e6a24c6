#include "framework/diag_register_device.h"

#include <bit>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "host/integer_type.h"
#include "host/register_commands.h"
#include "host/register_names.h"

namespace {

// Reading these changes what the hardware does next, or gives nothing.
bool IsReadSafe(const diag_reg_st& reg) {
    return reg.access != DIAG_REGACC_NONE && reg.access != DIAG_REGACC_WO &&
           reg.access != DIAG_REGACC_RC && reg.access != DIAG_REGACC_DA;
}

// Writing back what was read changes nothing but the bits that are meant.
bool IsBitwise(const diag_reg_st& reg) {
    return IsReadSafe(reg) && reg.access != DIAG_REGACC_RO && reg.access != DIAG_REGACC_W1C &&
           reg.access != DIAG_REGACC_W1T;
}

const char* AccessText(diag_regacc_et access) {
    switch (access) {
        case DIAG_REGACC_RW:
            return "RW";
        case DIAG_REGACC_RO:
            return "RO";
        case DIAG_REGACC_WO:
            return "WO";
        case DIAG_REGACC_RC:
            return "RC";
        case DIAG_REGACC_W1C:
            return "W1C";
        case DIAG_REGACC_W1T:
            return "W1T";
        case DIAG_REGACC_W1S:
            return "W1S";
        case DIAG_REGACC_DA:
            return "DA";
        default:
            return "-";
    }
}

// `bits` as the register holds them, false if it does not have them all. Of a signed
// register the sign may be the highest of its bits, or go on above them.
bool BitsOf(diag_regdata_t& held, const diag_reg_st& reg, uint64_t bits) {
    if (IsIntegerType(reg.dtype) &&
        static_cast<unsigned int>(std::bit_width(bits)) <= BitsOfType(reg.dtype)) {
        held = bits;
        return true;
    }
    return reg_data_from_arg(&held, reg.dtype, bits);
}

}  // namespace

CDiagRegisterDevice::CDiagRegisterDevice(const std::string& name, const std::string& description,
                                         diag_regtable_st* table)
    : CDiagDevice(name, description, TDEVICE), m_table(table) {
    AddRegisterCommands(*this);
}

CDiagRegisterDevice::~CDiagRegisterDevice() = default;

void CDiagRegisterDevice::showRegTable(std::string pattern) {
    SendLog(LW_PRINT, "%-16s %-10s %-6s %-6s %s\n", "register", "offset", "access", "number",
            "description");
    for (const diag_reg_st& reg : Registers()) {
        if (MatchRegister(pattern, reg).match != EMatch::NONE) {
            SendLog(LW_PRINT, "%-16s %-10s %-6s %-6u %s\n", reg.name,
                    toString(reg.offset, VF_HEX).c_str(), AccessText(reg.access), ElementCount(reg),
                    reg.desc != nullptr ? reg.desc : "");
        }
    }
}

bool CDiagRegisterDevice::dumpRegs(uint32_t logword, std::string pattern) {
    bool matched = false;
    bool ok = true;
    for (diag_reg_st& reg : Registers()) {
        const CMatched found = MatchRegister(pattern, reg);
        if (found.match == EMatch::NONE) {
            continue;
        }
        matched = true;
        if (!IsReadSafe(reg) && found.match != EMatch::IN_FULL) {
            SendLog(logword, "%-16s not read (%s)\n", reg.name, AccessText(reg.access));
            continue;
        }
        for (uint32_t index = found.first; index <= found.last; ++index) {
            diag_regdata_t data = 0;
            std::string text;
            if (!readRegEntry(&data, &reg, index) ||
                !reg_data_to_string(text, &data, reg.dtype, reg.format)) {
                text = "???";
                ok = false;
            }
            SendLog(logword, "%-16s %s\n", ElementName(reg, index).c_str(), text.c_str());
        }
    }
    return matched && ok;
}

diag_reg_st* CDiagRegisterDevice::getRegEntry(std::string name) {
    for (diag_reg_st& reg : Registers()) {
        if (name == reg.name) {
            return &reg;
        }
    }
    return nullptr;
}

bool CDiagRegisterDevice::SetClrBits(const uint64_t& bits, diag_reg_st* reg, unsigned int index,
                                     bool set) {
    if (index >= ElementCount(*reg)) {
        SendLog(LW_ERR_SW, "%s[%u] invalid index, valid range 0 to %u\n", reg->name, index,
                ElementCount(*reg) - 1);
        return false;
    }
    if (!IsBitwise(*reg)) {
        SendLog(LW_ERR_SW, "register %s cannot be changed bit by bit (%s)\n", reg->name,
                AccessText(reg->access));
        return false;
    }
    diag_regdata_t held = 0;
    if (!BitsOf(held, *reg, bits)) {
        TellUnfit(*this, *reg, bits);
        return false;
    }
    diag_regdata_t data = 0;
    if (!readRegEntry(&data, reg, index)) {
        return false;
    }
    data = set ? data | held : data & ~held;
    return writeRegEntry(&data, reg, index);
}
