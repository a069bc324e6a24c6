// How the commands of the parameter EEPROM reach its words.
#include <algorithm>
#include <array>

#include "framework/diag_functions.h"
#include "i2c/crc32_posix.h"
#include "i2c/diag_param_eeprom.h"
#include "i2c/param_eeprom_cmd.h"
#include "i2c/told_path.h"

namespace {

constexpr uint32_t UNREADABLE = 0xFFFFFFFF;
// The longest write cycle of the parts in use (24C64 data sheet: 5 ms).
constexpr unsigned int WRITE_CYCLE_MS = 5;
constexpr uint16_t WORD_BOUNDARY = 0xFFFC;
// The address that the line of a failed write names, whatever the device's own is.
constexpr unsigned int NAMED_ADDR = 0x51;

using CWord = std::array<uint8_t, DIMM_WORD>;

CWord BigEndian(uint32_t value) {
    return {static_cast<uint8_t>(value >> 24), static_cast<uint8_t>(value >> 16),
            static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
}

uint32_t FromBigEndian(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

CWord LittleEndian(uint32_t value) {
    const CWord big = BigEndian(value);
    return {big[3], big[2], big[1], big[0]};
}

uint32_t FromLittleEndian(const CWord& bytes) {
    const CWord big = {bytes[3], bytes[2], bytes[1], bytes[0]};
    return FromBigEndian(big.data());
}

}  // namespace

uint32_t CParamEepromCmd::eeprom_read32(const uint16_t& offset) const {
    return m_isSWAL ? swal_eeprom_read32(offset) : lc_eeprom_read32(offset);
}

void CParamEepromCmd::eeprom_write32(const uint16_t& offset, const uint32_t& value) const {
    if (m_isSWAL) {
        swal_eeprom_write32(offset, value);
    } else {
        lc_eeprom_write32(offset, value);
    }
}

uint32_t CParamEepromCmd::lc_eeprom_read32(uint16_t offset) const {
    if (!OpenPathOrTell(*this, *m_pDev)) {
        return UNREADABLE;
    }
    CWord bytes{};
    if (!m_pDev->ReadMemory(offset, bytes.data(), DIMM_WORD)) {
        SendLog(LW_ERR_TEST, "Error during EEPROM read! offset = 0x%x ", offset);
        return UNREADABLE;
    }
    if (!ClosePathOrTell(*this, *m_pDev)) {
        return UNREADABLE;
    }
    return FromBigEndian(bytes.data());
}

void CParamEepromCmd::lc_eeprom_write32(uint16_t offset, uint32_t value) const {
    if (!OpenPathOrTell(*this, *m_pDev)) {
        return;
    }
    const CWord bytes = BigEndian(value);
    if (!m_pDev->WriteMemory(offset, bytes.data(), DIMM_WORD)) {
        SendLog(LW_ERR_TEST, "Error during EEPROM write! offset = 0x%x ", offset);
    }
    ClosePathOrTell(*this, *m_pDev);
}

uint32_t CParamEepromCmd::swal_eeprom_read32(uint16_t offset) const {
    CWord bytes{};
    if (!m_pDev->ReadMemory(offset, bytes.data(), DIMM_WORD)) {
        SendLog(LW_ERR_TEST, "Error during EEPROM read! offset = 0x%x ", offset);
        return UNREADABLE;
    }
    return FromLittleEndian(bytes);
}

void CParamEepromCmd::swal_eeprom_write32(uint16_t offset, uint32_t value) const {
    const CWord bytes = LittleEndian(value);
    if (!m_pDev->WriteMemory(offset, bytes.data(), DIMM_WORD)) {
        SendLog(LW_ERR_TEST, "Error during EEPROM write! offset = 0x%x ", offset);
    }
}

void CParamEepromCmd::eeprom_write32_verify(const uint16_t& offset, const uint32_t& value) {
    countWords(m_words_moved, ImageWords());
    ++m_words_moved;
    try {
        eeprom_write32(offset, value);
        MsSleep(WRITE_CYCLE_MS);
        const uint32_t read = eeprom_read32(offset);
        if (read != value) {
            throw CDiagException("Verify failed: expected 0x%08X, read 0x%08X\n", value, read);
        }
        placeDimmTblInArray(offset, value);
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_TEST, "Write from slave dev 0x%x offset 0x%x failed: %s %s", NAMED_ADDR,
                offset, "eeprom_write32_verify", e.what());
        throw CDiagException("%s", e.what());
    } catch (...) {
        SendLog(LW_ERR_TEST, "CMB command failed: %s:%s unhandled exception", UNIT,
                "eeprom_write32_verify");
        throw;
    }
}

uint32_t CParamEepromCmd::readWord() {
    countWords(m_words_moved, ImageWords());
    const uint32_t word = eeprom_read32(m_offset);
    placeDimmTblInArray(m_offset, word);
    ++m_words_moved;
    return word;
}

void CParamEepromCmd::setDimmTableLength() {
    Step("setDimmTableLength", [this] {
        m_offset = DIMM_LENGTH_AT;
        eeprom_write32_verify(m_offset, m_dimmtable->dimmtable_size);
        SendLog(LW_SW_TRACE, "Dimm length : 0x%08X\n", m_dimmtable->dimmtable_size);
        SendLog(LW_SW_TRACE, "Setting Dimm length in header : DONE\n");
        m_offset += DIMM_WORD;
    });
}

void CParamEepromCmd::setNumEntriesHeader() {
    Step("setNumEntriesHeader", [this] {
        m_offset = DIMM_ENTRIES_AT;
        eeprom_write32_verify(m_offset, m_dimmtable->num_Entries);
        SendLog(LW_SW_TRACE, "Setting number of entries in header : DONE\n");
        m_offset += DIMM_WORD;
    });
}

uint32_t CParamEepromCmd::checkDimmTableLength() {
    return Step("checkDimmTableLength", [this] {
        m_offset = DIMM_LENGTH_AT;
        const uint32_t length = readWord();
        SendLog(LW_SW_TRACE, "Dimm length : 0x%08X\n", length);
        SendLog(LW_SW_TRACE, "Getting Dimm length in header : DONE\n");
        return length;
    });
}

void CParamEepromCmd::placeDimmTblInArray(uint16_t offset, uint32_t value) {
    const auto at = static_cast<uint16_t>(offset & WORD_BOUNDARY);
    if (m_dimmtbl_arr.size() < size_t{at} + DIMM_WORD) {
        throw CDiagException("offset 0x%x is outside the image of %zu bytes\n", offset,
                             m_dimmtbl_arr.size());
    }
    const CWord bytes = BigEndian(value);
    std::copy(bytes.begin(), bytes.end(), m_dimmtbl_arr.begin() + at);
}

uint32_t CParamEepromCmd::computeCRC() const {
    return crc32_posix(0, m_dimmtbl_arr.data() + DIMM_VERSION_AT,
                       m_dimmtable->dimmtable_size - DIMM_VERSION_AT);
}

void CParamEepromCmd::hex_dump(const void* data, uint32_t len) const {
    constexpr uint32_t ROW = 16;
    const auto* b = static_cast<const uint8_t*>(data);
    for (; len >= ROW; len -= ROW, b += ROW) {
        SendLog(LW_SW_DUMP,
                "%p: 0x%02x 0x%02x 0x%02x 0x%02x 0x%02x 0x%02x 0x%02x 0x%02x  0x%02x 0x%02x 0x%02x "
                "0x%02x 0x%02x 0x%02x 0x%02x 0x%02x \n",
                static_cast<const void*>(b), b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8],
                b[9], b[10], b[11], b[12], b[13], b[14], b[15]);
    }
    for (; len > 0; --len, ++b) {
        SendLog(LW_SW_TRACE, "%p: 0x%02x\n", static_cast<const void*>(b), *b);
    }
}

void CParamEepromCmd::dumpArray() const {
    for (size_t at = 0; at + DIMM_WORD <= m_dimmtbl_arr.size(); at += DIMM_WORD) {
        SendLog(LW_ERR_TEST, " %d , 0x%08X\n ", static_cast<int>(at / DIMM_WORD),
                FromBigEndian(&m_dimmtbl_arr[at]));
    }
}
