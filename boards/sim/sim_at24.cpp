#include "boards/sim/sim_at24.h"

#include <algorithm>
#include <bit>

#include "framework/diag_exception.h"

namespace {

constexpr std::array<sim_at24_part_t, 12> PARTS{{
    // name, bytes, page, address bytes, slave addresses, write protected
    {"24c01", 128, 8, 1, 1, false},
    {"24c02", 256, 8, 1, 1, false},
    {"24c04", 512, 16, 1, 2, false},
    {"24c08", 1024, 16, 1, 4, false},
    {"24c16", 2048, 16, 1, 8, false},
    {"24c32", 4096, 32, 2, 1, false},
    {"24c64", 8192, 32, 2, 1, false},
    {"24c128", 16384, 64, 2, 1, false},
    {"24c256", 32768, 64, 2, 1, false},
    {"24c512", 65536, 128, 2, 1, false},
    {"24c1024", 131072, 256, 2, 2, false},
    {"spd", 256, 8, 1, 1, true},
}};

}  // namespace

std::span<const sim_at24_part_t> SimAt24Parts() {
    return PARTS;
}

const sim_at24_part_t* FindSimAt24Part(std::string_view name) {
    const auto* part = std::find_if(PARTS.begin(), PARTS.end(),
                                    [name](const auto& entry) { return name == entry.name; });
    return part != PARTS.end() ? &*part : nullptr;
}

CSimAt24::CSimAt24(const sim_at24_part_t& part, uint8_t addr, std::unique_ptr<CSimMemory> memory,
                   const CSimClock& clock)
    : m_part(part),
      m_addr(addr),
      m_memory(std::move(memory)),
      m_clock(clock),
      m_write_protected(part.write_protected),
      m_image(part.size) {
    if (m_memory->Size() != part.size) {
        throw CDiagException("%s holds %u bytes, but a %s has %u", m_memory->Path().c_str(),
                             m_memory->Size(), part.name, part.size);
    }
    if (part.page == 0 || part.page > MAX_PAGE || part.size % part.page != 0) {
        throw CDiagException("a %s cannot have pages of %u bytes", part.name, part.page);
    }
    if (!std::has_single_bit(part.addresses)) {
        throw CDiagException("a %s cannot answer %u addresses", part.name, part.addresses);
    }
}

bool CSimAt24::Start(uint8_t addr, bool read) {
    // Without a stop condition there is no write cycle: a page that was being
    // sent is forgotten.
    m_page_loaded.reset();
    m_state = IDLE;
    if (!Selects(addr) || m_clock.NowNs() < m_busy_until_ns) {
        return false;
    }
    if (read) {
        m_memory->Read(0, m_image);
        m_state = READ;
        return true;
    }
    // The low bits of the slave address are the high bits of the memory address.
    m_incoming = addr & (m_part.addresses - 1U);
    m_incoming_bytes = 0;
    m_state = ADDRESS;
    return true;
}

bool CSimAt24::WriteByte(uint8_t value) {
    if (m_state == ADDRESS) {
        m_incoming = (m_incoming << 8) | value;
        if (++m_incoming_bytes == m_part.addr_bytes) {
            m_pointer = m_incoming % m_part.size;
            m_state = DATA;
        }
        return true;
    }
    // A protected part takes the address but no data.
    if (m_state != DATA || m_write_protected) {
        return false;
    }
    const uint32_t position = m_pointer % m_part.page;
    m_page_base = m_pointer - position;
    m_page[position] = value;
    m_page_loaded.set(position);
    m_pointer = m_page_base + (position + 1) % m_part.page;
    return true;
}

uint8_t CSimAt24::ReadByte() {
    const uint8_t value = m_image[m_pointer];
    m_pointer = (m_pointer + 1) % m_part.size;
    return value;
}

void CSimAt24::Stop() {
    const bool commit = m_state == DATA && m_page_loaded.any();
    m_state = IDLE;
    if (commit) {
        CommitPage();
    }
}

bool CSimAt24::Selects(uint8_t addr) const {
    return ((addr ^ m_addr) & ~(m_part.addresses - 1U)) == 0;
}

// Stores the page and starts the write cycle.
void CSimAt24::CommitPage() {
    const std::bitset<MAX_PAGE> loaded = m_page_loaded;
    m_page_loaded.reset();
    std::array<uint8_t, MAX_PAGE> bytes;
    const auto page = std::span(bytes).first(m_part.page);
    m_memory->Read(m_page_base, page);
    for (size_t i = 0; i < page.size(); ++i) {
        if (loaded[i]) {
            page[i] = m_page[i];
        }
    }
    m_memory->Write(m_page_base, page);
    m_busy_until_ns = m_clock.NowNs() + WRITE_CYCLE_NS;
}
