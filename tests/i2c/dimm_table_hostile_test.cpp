// Documents made to do harm: each is refused with a word on why, or is
// harmless, and costs no memory out of proportion to its size.
#include <malloc.h>

#include <filesystem>
#include <fstream>

#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::HasSubstr;

constexpr long MIB = 1024;  // in the kernel's unit
constexpr size_t MAX_ENTITY_ITEMS = 10000;

// The most memory that the process has had since the last reset, in KiB.
long PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stol(line.substr(line.find_first_of("0123456789")));
        }
    }
    ADD_FAILURE() << "no peak memory in /proc/self/status";
    return 0;
}

// How far a piece of code raises the process's memory, in KiB.
template <class Code>
long MemoryOf(const Code& code) {
    ::malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    const long before = PeakMemory();
    code();
    return PeakMemory() - before;
}

std::string Repeated(const std::string& text, size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

class DimmTableHostile : public CDimmTableTest {
  protected:
    // An entity that multiplies itself by `width` in each of `levels` steps.
    static std::string Laughs(const std::string& content, size_t levels, size_t width) {
        std::string declarations = "<!ENTITY l0 \"" + content + "\">\n";
        for (size_t level = 1; level <= levels; ++level) {
            declarations += "<!ENTITY l" + std::to_string(level) + " \"" +
                            Repeated("&l" + std::to_string(level - 1) + ";", width) + "\">\n";
        }
        return declarations;
    }
    // A table inside so many elements, the root being the first.
    static std::string Nested(size_t depth) {
        return Repeated("<d>", depth - 1) + "\n" + Required() + Repeated("</d>", depth - 1) + "\n";
    }

    // Refused with a line that says why.
    void ExpectRefused(const std::string& xml, const std::string& why) {
        m_log.Clear();
        EXPECT_EQ(FailureOf(xml), XML_FORMAT_ERROR);
        EXPECT_THAT(m_log.Joined(LW_ERR_TEST), HasSubstr(why));
    }
};

TEST_F(DimmTableHostile, DoesNotLaughABillionTimes) {
    for (const std::string content : {"lol", "<value>1</value>", ""}) {
        const std::string xml =
            Document(Laughs(content, 9, 10), Required() + Element("offset", "&l9;"));
        EXPECT_LT(MemoryOf([&] { ExpectRefused(xml, "entit"); }), 64 * MIB);
    }
}

TEST_F(DimmTableHostile, DoesNotLaughInDepth) {
    const std::string xml = Document(Laughs("lol", 40, 2), Required() + "&l40;\n");
    EXPECT_LT(MemoryOf([&] { ExpectRefused(xml, "entit"); }), 64 * MIB);
}

TEST_F(DimmTableHostile, DoesNotLaughInAnAttribute) {
    const std::string xml = Document(Laughs("lol", 9, 10), Required() + "<note text=\"&l9;\"/>\n");
    EXPECT_LT(MemoryOf([&] { ExpectRefused(xml, "entit"); }), 64 * MIB);
}

TEST_F(DimmTableHostile, FollowsNoEntityInACircle) {
    const std::string bodies[] = {Element("offset", "&a;"), "&a;\n", "<note text=\"&a;\"/>\n"};
    const std::string declarations[] = {
        "<!ENTITY a '&a;'>",
        "<!ENTITY a 'x&b;'><!ENTITY b '&a;y'>",
        "<!ENTITY a '&b;'><!ENTITY b '&c;'><!ENTITY c '&d;'><!ENTITY d '&b;'>",
    };
    for (const std::string& body : bodies) {
        for (const std::string& declaration : declarations) {
            const std::string xml = Document(declaration, Required() + body);
            EXPECT_LT(MemoryOf([&] { ExpectRefused(xml, "entit"); }), 64 * MIB) << xml;
        }
    }
    const std::string elements = Document(
        "<!ENTITY a '<offset>&b;</offset>'><!ENTITY b '<value>&a;</value>'>", Required() + "&a;\n");
    EXPECT_LT(MemoryOf([&] { ExpectRefused(elements, "entit"); }), 64 * MIB);
}

TEST_F(DimmTableHostile, TakesACircleThatNobodyEnters) {
    EXPECT_EQ(FailureOf(Document("<!ENTITY a '&b;'><!ENTITY b '&a;'>", Required())), std::nullopt);
}

TEST_F(DimmTableHostile, LimitsWhatEntitiesBring) {
    const std::string declaration = "<!ENTITY pair '<offset>1</offset><value>2</value>'>";
    // Four items each.
    EXPECT_EQ(FailureOf(Document(declaration,
                                 Required() + Repeated("&pair;", MAX_ENTITY_ITEMS / 8) + "\n")),
              std::nullopt);
    EXPECT_EQ(Offsets(0).size(), MAX_ENTITY_ITEMS / 8);
    ExpectRefused(Document(declaration, Required() + Repeated("&pair;", MAX_ENTITY_ITEMS) + "\n"),
                  "10000");
}

// Longer ones are too much markup in one piece.
const std::string LONG_ENTITY = "<!ENTITY long '" + std::string(60000, '1') + "'>";

TEST_F(DimmTableHostile, DoesNotMultiplyALongText) {
    for (const char* element : {"offset", "signature", "x"}) {
        const std::string xml =
            Document(LONG_ENTITY, Required() + Repeated(Element(element, "&long;"), 2000));
        EXPECT_LT(MemoryOf([&] { ExpectRefused(xml, "1048576"); }), 64 * MIB) << element;
    }
}

TEST_F(DimmTableHostile, DoesNotMultiplyALongPartNumber) {
    const auto table = [](size_t modules) {
        return Document(LONG_ENTITY, Header() + Repeated(Module("1", "&long;"), modules));
    };
    EXPECT_EQ(FailureOf(table(17)), std::nullopt);
    EXPECT_LT(MemoryOf([&] { ExpectRefused(table(1000), "1048576"); }), 64 * MIB);
}

TEST_F(DimmTableHostile, LimitsTheNamespaces) {
    const auto table = [](int count) {
        std::string tag = "<a";
        for (int i = 0; i < count; ++i) {
            tag += " xmlns:p" + std::to_string(i) + "='u'";
        }
        return Document(Required() + tag + "/>\n");
    };
    EXPECT_EQ(FailureOf(table(100)), std::nullopt);
    ExpectRefused(table(101), "100 declarations of namespaces");
}

TEST_F(DimmTableHostile, LimitsAllDeclarationsTogether) {
    std::string declarations;
    for (int i = 0; declarations.size() < 100000; ++i) {
        declarations +=
            "<!ATTLIST r x" + std::to_string(i) + " CDATA ''><!-- and so on --><?go on?>\n";
    }
    ExpectRefused(Document(declarations, Required()), "65536");
}

TEST_F(DimmTableHostile, LimitsTheDifferentNames) {
    std::string elements;
    for (int i = 0; i < 65536; ++i) {
        elements += "<n" + std::to_string(i) + "/>";
    }
    ExpectRefused(Document(Required() + elements + "\n"), "65536 different names");
}

TEST_F(DimmTableHostile, LimitsTheModules) {
    EXPECT_EQ(FailureOf(Document(Repeated("<jedec_manufacturer_id/>", 99999) + "\n" + Required())),
              std::nullopt);
    ExpectRefused(Document(Repeated("<jedec_manufacturer_id/>", 100000) + "\n" + Required()),
                  "100000 modules");
}

TEST_F(DimmTableHostile, NamesADepthThatIsTooLarge) {
    EXPECT_EQ(FailureOf(Nested(CDimmTableDocument::MAX_DEPTH)), std::nullopt);
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
    ExpectRefused(Nested(CDimmTableDocument::MAX_DEPTH + 1), "64");
    ExpectRefused(Nested(1000), "64");
    // It is not the closing that tells.
    ExpectRefused(Repeated("<d>", 1000000), "64");
}

TEST_F(DimmTableHostile, CountsTheDepthInsideEntitiesToo) {
    ExpectRefused(Document("<!ENTITY deep '" + Repeated("<d>", 100) + Repeated("</d>", 100) + "'>",
                           Required() + "&deep;\n"),
                  "64");
}

TEST_F(DimmTableHostile, LimitsTheNumberOfElements) {
    ExpectRefused(Document(Required() + Repeated("<a/>", 5000000) + "\n"), "4194304");
}

TEST_F(DimmTableHostile, LimitsTheNumberOfKnownElements) {
    ExpectRefused(Document(Required() + Repeated("<value/>", 4500000) + "\n"), "4194304");
}

TEST_F(DimmTableHostile, TakesAMillionElements) {
    EXPECT_EQ(FailureOf(Document(Required() + Repeated("<a/>", 1000000) + "\n")), std::nullopt);
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
}

TEST_F(DimmTableHostile, LimitsTheSizeOfAFile) {
    const std::string comment = "<!-- white space -->\n";
    std::string xml = Example();
    const size_t missing = CDimmTableDocument::MAX_BYTES - xml.size();
    xml += Repeated(comment, missing / comment.size());
    xml += std::string(missing % comment.size(), '\n');
    ASSERT_EQ(xml.size(), CDimmTableDocument::MAX_BYTES);
    EXPECT_EQ(FailureOf(xml), std::nullopt);
    ExpectRefused(xml + '\n', "67108864");
}

TEST_F(DimmTableHostile, TakesNoMemoryForAFileThatIsTooLarge) {
    const std::filesystem::path file = Write("table.xml", Example());
    std::filesystem::resize_file(file, 1ULL << 40);
    EXPECT_LT(MemoryOf([&] { EXPECT_EQ(FailureOfFile(file.string()), XML_FORMAT_ERROR); }),
              16 * MIB);
    EXPECT_THAT(m_log.Joined(LW_ERR_TEST), HasSubstr("67108864"));
}

}  // namespace
