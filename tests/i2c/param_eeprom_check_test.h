// What the tests of "check-param-eeprom" share: the lines of its verdict.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tests/i2c/param_eeprom_test.h"

inline std::string Formatted(const char* format, uint32_t value) {
    CFmtString text;
    // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral)
    text.printf(format, value);
    return text.c_str();
}

class CParamCheckTest : public CParamEepromTest {
  protected:
    static constexpr uint32_t VERSION = 3;
    const CTable m_table = CompactTable();
    const Bytes m_image = ImageOf(m_table);
    const uint32_t m_crc = WordAt(m_image, 0);

    // The verdict on a table of `modules` modules in which these fields differ:
    // "DimmVersionNum", "Dimm[1]: DimmRevision".
    static Texts Verdict(size_t modules, const std::set<std::string>& different) {
        Texts fields = {"DimmVersionNum", "DimmTableLen", "Signature", "NumEntries"};
        for (size_t i = 0; i < modules; ++i) {
            for (const char* field : {"ManufacturerID", "DimmPartNum", "DimmRevision",
                                      "NumRegisters", "DimmRegisterValues"}) {
                fields.push_back("Dimm[" + std::to_string(i) + "]: " + field);
            }
        }
        Texts verdict;
        for (const std::string& field : fields) {
            verdict.push_back(field + " Match: " + (different.contains(field) ? "FALSE" : "TRUE") +
                              "\n");
        }
        verdict.emplace_back("EEPROM Parameters Verification FAILED!\n");
        return verdict;
    }
    // The lines of the verdict that were logged.
    Texts LoggedVerdict() const {
        Texts verdict;
        for (const auto& [word, text] : m_log.Lines()) {
            if (text.find(" Match: ") != std::string::npos ||
                text.starts_with("EEPROM Parameters Verification")) {
                verdict.push_back(text);
            }
        }
        return verdict;
    }
    // The lines of fields that differ.
    Texts Mismatches() const {
        Texts mismatches;
        for (const auto& [word, text] : m_log.Lines()) {
            if (text.find("does not match!") != std::string::npos) {
                mismatches.push_back(text);
            }
        }
        return mismatches;
    }
    // The checksum of `length` bytes of the chip as a check computes it.
    uint32_t StoredCrc(size_t length) { return BitwiseCrc(Memory(4, length - 4)); }
};
