// What the tests of the DIMM table parser share: documents, a fresh table, and
// what the parser says. Nothing of it may go to standard error.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "framework/diag_log_word.h"
#include "i2c/diag_param_eeprom_xml_parser.h"
#include "i2c/dimm_table.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_folder.h"

class CDimmTableTest : public testing::Test {
  protected:
    using Texts = std::vector<std::string>;
    using Numbers = std::vector<unsigned int>;
    using Lines = std::vector<CLogCapture::Line>;

    void SetUp() override { testing::internal::CaptureStderr(); }
    void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }

    // An element on a line of its own.
    static std::string Element(const std::string& name, const std::string& text) {
        return "    <" + name + ">" + text + "</" + name + ">\n";
    }
    static std::string Pair(const std::string& offset, const std::string& value) {
        return Element("offset", offset) + Element("value", value);
    }
    static std::string RegisterSet(const std::string& inside) {
        return "    <register_set>\n" + inside + "    </register_set>\n";
    }
    static std::string Header() {
        return Element("dimm_table_version", "0x00000003") + Element("signature", "0xA5A50001");
    }
    // The elements of one module, without registers.
    static std::string Module(const std::string& jedec, const std::string& part_num,
                              const std::string& start = "0x00", const std::string& end = "0xFF") {
        return Element("jedec_manufacturer_id", jedec) + Element("dimm_part_num", part_num) +
               Element("revision_start", start) + Element("revision_end", end);
    }
    // The six elements that a table cannot do without.
    static std::string Required() { return Header() + Module("0x1234", "PN-EXAMPLE-01"); }
    static std::string Document(const std::string& body) {
        return "<?xml version=\"1.0\"?>\n<dimm_table>\n" + body + "</dimm_table>\n";
    }
    // A document with an internal subset.
    static std::string Document(const std::string& declarations, const std::string& body) {
        return "<?xml version=\"1.0\"?>\n<!DOCTYPE dimm_table [\n" + declarations +
               "\n]>\n<dimm_table>\n" + body + "</dimm_table>\n";
    }
    // One module with two register pairs.
    static std::string Example() {
        return Document(Required() + RegisterSet(Pair("0x00000010", "0x0000001F") +
                                                 Pair("0x00000014", "0x00000200")));
    }

    std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes) const {
        return m_folder.Write(name, std::vector<uint8_t>(bytes.begin(), bytes.end()));
    }
    // Parses a file into a fresh table; the parser does not outlive the call.
    Texts ParseFile(const std::string& file) {
        m_table = DimmTable();
        Parser parser(file.c_str(), &m_table);
        return parser.parse();
    }
    Texts Parse(const std::string& xml) { return ParseFile(Write("table.xml", xml)); }
    // Why there is no table; nothing when there is one.
    std::optional<Xml_Exceptions> FailureOfFile(const std::string& file) {
        try {
            ParseFile(file);
        } catch (Xml_Exceptions failure) {
            return failure;
        }
        return std::nullopt;
    }
    std::optional<Xml_Exceptions> FailureOf(const std::string& xml) {
        return FailureOfFile(Write("table.xml", xml));
    }

    const Entries& Entry(size_t k) const { return m_table.entry.at(k); }
    // Null for a module without one.
    const char* PartNum(size_t k) const { return Entry(k).partNum.get(); }
    const Numbers& Offsets(size_t k) const { return Entry(k).Register_Array.reg_offset; }
    const Numbers& Values(size_t k) const { return Entry(k).Register_Array.reg_val; }

    Texts Errors() const { return m_log.Texts(LW_ERR_TEST); }
    Texts Progress() const { return m_log.Texts(LW_SW_TRACE); }

    const CTempFolder m_folder;
    DimmTable m_table;
    CLogCapture m_log;
};
