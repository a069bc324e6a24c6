#include "i2c/dimm_table_assigner.h"

#include <cstring>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"

namespace {

std::unique_ptr<char[]> CopyOf(const char* text) {
    const size_t size = std::strlen(text) + 1;
    auto copy = std::make_unique<char[]>(size);
    std::memcpy(copy.get(), text, size);
    return copy;
}

uint32_t Low32(uint64_t value) {
    return static_cast<uint32_t>(value);
}

}  // namespace

void DataAssigner::assignData() {
    makeSZ();
    const auto entries = static_cast<uint32_t>(m_pdimmTable->entry.size());
    for (uint32_t i = 0; i < entries; ++i) {
        m_pdimmTable->entry.emplace_back();
        assign_entry(i);
    }
    m_pdimmTable->num_Entries = entries;
}

void DataAssigner::makeSZ() {
    const size_t entries = m_mTag->find(JEDEC_MANUFACTURER_ID)->getInstance();
    m_pdimmTable->entry.clear();
    m_pdimmTable->entry.reserve(2 * entries);
    m_pdimmTable->entry.resize(entries);
}

void DataAssigner::assign_entry(uint32_t i) {
    Entries* entry = &m_pdimmTable->entry[i];
    assign_a(DIMM_VERSION, nullptr, 0);
    assign_a(JEDEC_MANUFACTURER_ID, entry, i);
    assign_a(SIGNATURE, nullptr, 0);
    assign_a(DIMM_PART_NUM, entry, i);
    assign_a(REVISION_START, entry, i);
    assign_a(REVISION_END, entry, i);
    assign_a(OFFSET, entry, i);
    assign_a(VALUE, entry, i);
}

void DataAssigner::assign_a(tag_types id, Entries* entry, uint32_t i) {
    const Tag& tag = *m_mTag->find(id);
    const auto count = static_cast<uint32_t>(tag.getTextNodeCount());
    uint32_t& next = m_next.at(id);
    while (next < count && tag.getaTextNode(next)->entry <= i) {
        ++next;
    }
    uint32_t end = next;
    while (end < count && tag.getaTextNode(end)->entry == i + 1) {
        ++end;
    }
    if (id == OFFSET) {
        entry->Register_Array.reg_offset.reserve(end - next);
    } else if (id == VALUE) {
        entry->Register_Array.reg_val.reserve(end - next);
    }
    for (uint32_t at = next; at < end; ++at) {
        const TextNode& node = *tag.getaTextNode(at);
        convert_n_store(id, entry, node.number, node.textString);
    }
}

void DataAssigner::convert_n_store(tag_types id, Entries* entry, uint64_t value, const char* text) {
    switch (id) {
        case DIMM_VERSION:
            m_pdimmTable->dimm_version = Low32(value);
            break;
        case JEDEC_MANUFACTURER_ID:
            entry->man_id_h = Low32(value >> 32);
            entry->man_id_l = Low32(value);
            break;
        case SIGNATURE:
            m_pdimmTable->signature = Low32(value);
            break;
        case DIMM_PART_NUM:
            entry->partNum = CopyOf(text);
            diag_pf_send_log(LW_SW_TRACE, "convert_n_store[partNum=%d]:...%s\n",
                             static_cast<int>(std::strlen(text)), entry->partNum.get());
            break;
        case REVISION_START:
            entry->rev_Start = Low32(value);
            break;
        case REVISION_END:
            entry->rev_End = Low32(value);
            break;
        case OFFSET:
            entry->Register_Array.reg_offset.push_back(Low32(value));
            break;
        case VALUE:
            entry->Register_Array.reg_val.push_back(Low32(value));
            break;
        case REGISTER_SET:
        case GENERIC:
        case ERROR:
            break;
    }
}
