// From the texts of a DIMM table document to the table.
#pragma once

#include <array>
#include <cstdint>

#include "i2c/diag_param_eeprom_xml_parser_tag.h"
#include "i2c/dimm_table.h"

// Puts the texts that the tags hold into the table. Owns neither.
class DataAssigner {
  public:
    DataAssigner(DimmTable* table, MTag* tags) : m_pdimmTable(table), m_mTag(tags) {}

    // The table's modules are made here, twice as many as there are.
    void assignData();

  private:
    void makeSZ();
    void assign_entry(uint32_t i);
    void assign_a(tag_types id, Entries* entry, uint32_t i);
    void convert_n_store(tag_types id, Entries* entry, uint64_t value, const char* text);

    DimmTable* const m_pdimmTable;
    MTag* const m_mTag;
    // Texts stand in the order of their modules, so each tag is walked once.
    std::array<uint32_t, GENERIC> m_next{};
};
