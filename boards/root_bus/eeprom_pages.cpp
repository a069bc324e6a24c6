#include "boards/root_bus/eeprom_pages.h"

#include <algorithm>

#include "framework/fmt_output.h"

namespace {

uint16_t Exchanged(uint16_t cmd) {
    return static_cast<uint16_t>((cmd << 8) | (cmd >> 8));
}

uint32_t MemoryAddr(const eeprom_geometry_t& part, const CI2cXfrReq& req) {
    const uint32_t blocks = (uint32_t{req.saddr} - part.addr) << part.AddrBits();
    if (part.addr_bytes == 2) {
        return blocks + Exchanged(req.cmd);
    }
    // The one address byte of a part without further slave addresses carries
    // no more than its low byte.
    return part.addresses == 1 ? req.cmd & 0xFFU : blocks + req.cmd;
}

void Append(CFmtString& text, uint32_t begin, uint32_t end, const char* fate) {
    if (begin < end) {
        text.printf("%s0x%04x to 0x%04x %s", text.empty() ? "" : ", ", begin, end - 1, fate);
    }
}

}  // namespace

CEepromPages::CEepromPages(const eeprom_geometry_t& part, const CI2cXfrReq& req)
    : m_part(part), m_req(req), m_begin(MemoryAddr(part, req)), m_at(m_begin), m_piece(req) {
    Place();
}

bool CEepromPages::Next() {
    if (PieceEnd() == End()) {
        return false;
    }
    m_at = PieceEnd();
    Place();
    return true;
}

// A read rolls over from page to page by itself. What a write has past the end
// of the part has no place of its own to go to.
bool CEepromPages::IsCut() const {
    return m_req.dir == 0 && End() <= m_part.Reach();
}

void CEepromPages::Place() {
    const uint32_t bits = m_part.AddrBits();
    const auto cmd = static_cast<uint16_t>(m_at & ((1U << bits) - 1));
    m_piece.saddr = static_cast<byte_t>(m_part.addr + (m_at >> bits));
    m_piece.cmd = m_part.addr_bytes == 2 ? Exchanged(cmd) : cmd;
    const uint32_t left = End() - m_at;
    const uint32_t size = IsCut() ? std::min(left, m_part.page - m_at % m_part.page) : left;
    m_piece.tsize = static_cast<byte_t>(size);
    m_piece.data = m_req.data + (m_at - m_begin);
}

std::string CEepromPages::Account() const {
    if (m_piece.tsize == m_req.tsize) {
        return {};
    }
    CFmtString text;
    Append(text, m_begin, m_at, "is written");
    Append(text, m_at, PieceEnd(), "failed");
    Append(text, PieceEnd(), End(), "was not tried");
    return std::string("; memory ") + text.c_str();
}
