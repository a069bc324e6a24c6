// What a parameter EEPROM cannot hold of a table: refused, or said to be cut.
#include <cstring>

#include "i2c/diag_param_eeprom.h"
#include "i2c/param_eeprom_cmd.h"

namespace {

// What a 16-bit offset reaches.
constexpr uint32_t LARGEST_IMAGE = 0x10000;
constexpr uint32_t MAX_16_BITS = 0xFFFF;

}  // namespace

void CParamEepromCmd::requireStorable() const {
    if (m_dimmtable->dimmtable_size > m_pDev->GetMemSize()) {
        throw CDiagException("the image has %u bytes, the EEPROM %u\n", m_dimmtable->dimmtable_size,
                             m_pDev->GetMemSize());
    }
    if (m_dimmtable->dimmtable_size > LARGEST_IMAGE) {
        throw CDiagException("the image has %u bytes, of the EEPROM's %u only %u can be reached\n",
                             m_dimmtable->dimmtable_size, m_pDev->GetMemSize(), LARGEST_IMAGE);
    }
    for (uint32_t i = 0; i < m_dimmtable->num_Entries; ++i) {
        requirePairs(i);
    }
    for (uint32_t i = 0; i < m_dimmtable->num_Entries; ++i) {
        warnOfCuts(i);
    }
}

void CParamEepromCmd::requirePairs(uint32_t i) const {
    const Entries& entry = m_dimmtable->entry[i];
    const size_t offsets = entry.Register_Array.reg_offset.size();
    const size_t values = entry.Register_Array.reg_val.size();
    if (offsets > values) {
        throw CDiagException("Dimm[%u] \"%s\": %zu register offsets but %zu values\n", i,
                             entry.PartNumText(), offsets, values);
    }
}

void CParamEepromCmd::warnOfCuts(uint32_t i) const {
    const Entries& entry = m_dimmtable->entry[i];
    const CDimmLayout layout = Layout();
    const size_t offsets = entry.Register_Array.reg_offset.size();
    const size_t values = entry.Register_Array.reg_val.size();
    if (values > offsets) {
        SendLog(LW_WARN,
                "Dimm[%u] \"%s\": %zu register values but %zu offsets, the last %zu are not "
                "stored\n",
                i, entry.PartNumText(), values, offsets, values - offsets);
    }
    if (std::strlen(entry.PartNumText()) > layout.part_number_size) {
        SendLog(LW_WARN, "Dimm[%u] \"%s\": of the part number only %u characters are stored\n", i,
                entry.PartNumText(), layout.part_number_size);
    }
    if (!layout.extended && (entry.man_id_h != 0 || entry.man_id_l > MAX_16_BITS)) {
        SendLog(LW_WARN,
                "Dimm[%u] \"%s\": of the manufacturer id 0x%08X%08X only the low 16 bits are "
                "stored\n",
                i, entry.PartNumText(), entry.man_id_h, entry.man_id_l);
    }
    if (entry.rev_Start > MAX_16_BITS || entry.rev_End > MAX_16_BITS) {
        SendLog(LW_WARN,
                "Dimm[%u] \"%s\": the revisions 0x%X to 0x%X do not fit the 16 bits that each "
                "has\n",
                i, entry.PartNumText(), entry.rev_Start, entry.rev_End);
    }
}
