// Files that a DIMM table may be read from, and files that it may not.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <future>

#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

class DimmTableFiles : public CDimmTableTest {
  protected:
    // A text of ASCII characters in two bytes each.
    static std::string Wide(const std::string& text, bool big_endian) {
        std::string wide = big_endian ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : text) {
            wide += big_endian ? std::string{'\0', c} : std::string{c, '\0'};
        }
        return wide;
    }
    // The text in the gzip format, in one block that is stored as it is.
    static std::string Gzipped(const std::string& text) {
        const auto number = [](size_t value, int bytes) {
            std::string low_first;
            for (int i = 0; i < bytes; ++i, value >>= 8) {
                low_first += static_cast<char>(value & 0xFF);
            }
            return low_first;
        };
        uint32_t crc = ~0U;
        for (const char c : text) {
            crc ^= static_cast<uint8_t>(c);
            for (int bit = 0; bit < 8; ++bit) {
                crc = crc >> 1 ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
            }
        }
        return std::string("\x1F\x8B\x08\0\0\0\0\0\0\xFF\x01", 11) + number(text.size(), 2) +
               number(~text.size(), 2) + text + number(~crc, 4) + number(text.size(), 4);
    }
    // The reader's own words on a file.
    std::string FaultOf(const std::string& file) {
        DimmTable table;
        Parser parser(file.c_str(), &table);
        EXPECT_EQ(parser.getReadFault(), "");
        EXPECT_THROW(parser.parse(), Xml_Exceptions);
        return parser.getReadFault();
    }
    // Fails instead of hanging: after five seconds `release` makes an end.
    template <class Release>
    std::optional<Xml_Exceptions> FailureInTime(const fs::path& file, const Release& release) {
        std::future<std::optional<Xml_Exceptions>> failure =
            std::async(std::launch::async, [this, &file] { return FailureOfFile(file.string()); });
        if (failure.wait_for(std::chrono::seconds(5)) != std::future_status::ready) {
            ADD_FAILURE() << file << " is waited for";
            release();
        }
        return failure.get();
    }
};

TEST_F(DimmTableFiles, MustExist) {
    EXPECT_EQ(FailureOfFile((m_folder / "missing.xml").string()), NO_XML_FILE_FOUND);
    EXPECT_EQ(FailureOfFile((m_folder / "no-folder/table.xml").string()), NO_XML_FILE_FOUND);
    EXPECT_EQ(FailureOfFile(""), NO_XML_FILE_FOUND);
    EXPECT_EQ(FailureOfFile((Write("a-file", "x") / "table.xml").string()), NO_XML_FILE_FOUND);
    EXPECT_EQ(FailureOfFile(std::string(5000, 'x')), NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, MustBeXml) {
    const std::string example = Example();
    const std::string cases[] = {
        "",
        "\n",
        "no XML\n",
        "<?xml version=\"1.0\"?>\n",
        "<!-- a comment alone -->\n",
        "<dimm_table>",
        "<dimm_table></dimm>",
        "<a/><b/>",
        "<a>&</a>",
        "<a b=c/>",
        "<a b='1' b='2'/>",
        example + "more",
        example.substr(0, example.size() / 2),
        " " + example,
        std::string("<a>\0</a>", 8),
        "<a>\x01</a>",
        "<a>&#1;</a>",
        "{\"dimm_table_version\": 3}",
    };
    for (const std::string& xml : cases) {
        EXPECT_EQ(FailureOf(xml), NO_XML_FILE_FOUND) << xml;
        EXPECT_THAT(Errors(), IsEmpty()) << xml;
    }
}

TEST_F(DimmTableFiles, MayBeCutNowhere) {
    const std::string example = Example();
    const size_t whole = example.rfind('>') + 1;
    for (size_t length = 0; length < whole; ++length) {
        ASSERT_EQ(FailureOf(example.substr(0, length)), NO_XML_FILE_FOUND) << length;
    }
    EXPECT_EQ(FailureOf(example.substr(0, whole)), std::nullopt);
}

TEST_F(DimmTableFiles, AreNamedWithLineInTheFault) {
    const std::string broken =
        Write("broken.xml", "<dimm_table>\n<signature>1\n</dimm_table>\n").string();
    EXPECT_THAT(FaultOf(broken), HasSubstr(broken));
    EXPECT_THAT(FaultOf(broken), HasSubstr("3"));
    const std::string missing = (m_folder / "missing.xml").string();
    EXPECT_THAT(FaultOf(missing), HasSubstr(missing));
    EXPECT_THAT(FaultOf(missing), HasSubstr("No such file"));
}

TEST_F(DimmTableFiles, LeaveNoFaultWhenTheyAreRead) {
    const std::string file = Write("table.xml", Example()).string();
    DimmTable table;
    Parser parser(file.c_str(), &table);
    parser.parse();
    EXPECT_EQ(parser.getReadFault(), "");
}

TEST_F(DimmTableFiles, MayHaveAnyName) {
    for (const char* name :
         {"with blanks.xml", "%s%n%d.xml", "100%.xml", "a%20b.xml", "\xC3\xBC.xml", "\xFF\xFE.xml",
          "quote\"'.xml", "line\nbreak.xml", "a#b?c=d&e.xml", "no-extension", "http:", "file:", "-",
          "<>.xml", "c:\\table.xml"}) {
        const fs::path file = Write(name, Example());
        EXPECT_EQ(FailureOfFile(file.string()), std::nullopt) << name;
        EXPECT_EQ(m_table.num_Entries, 1U) << name;
        fs::remove(file);
        EXPECT_EQ(FailureOfFile(file.string()), NO_XML_FILE_FOUND) << name;
    }
}

TEST_F(DimmTableFiles, AreNotFoundUnderAnUnescapedName) {
    Write("a b.xml", Example());
    EXPECT_EQ(FailureOfFile((m_folder / "a%20b.xml").string()), NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, TakeAPercentSignForNoFormat) {
    EXPECT_THAT(FaultOf((m_folder / "%s%n%d.xml").string()), HasSubstr("%s%n%d.xml"));
    EXPECT_THAT(FaultOf(Write("%n%s.xml", "<%s%n>").string()), HasSubstr("%n%s.xml"));
}

TEST_F(DimmTableFiles, MayBeNamedByALink) {
    Write("table.xml", Example());
    fs::create_symlink("table.xml", m_folder / "link.xml");
    EXPECT_EQ(FailureOfFile((m_folder / "link.xml").string()), std::nullopt);
    fs::create_symlink("nowhere.xml", m_folder / "dangling.xml");
    EXPECT_EQ(FailureOfFile((m_folder / "dangling.xml").string()), NO_XML_FILE_FOUND);
    fs::create_symlink("loop.xml", m_folder / "loop.xml");
    EXPECT_EQ(FailureOfFile((m_folder / "loop.xml").string()), NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, AreNoFolders) {
    EXPECT_EQ(FailureOfFile(m_folder.Path().string()), NO_XML_FILE_FOUND);
    EXPECT_EQ(FailureOfFile("/"), NO_XML_FILE_FOUND);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(DimmTableFiles, AreNoPipesThatNobodyWritesTo) {
    const fs::path pipe = m_folder / "pipe.xml";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(FailureInTime(pipe, [&] { ::close(::open(pipe.c_str(), O_WRONLY | O_NONBLOCK)); }),
              NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, AreNoPipesThatSomebodyHoldsOpen) {
    const fs::path pipe = m_folder / "pipe.xml";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    int writer = ::open(pipe.c_str(), O_RDWR);
    ASSERT_GE(writer, 0);
    EXPECT_EQ(FailureInTime(pipe, [&] { ::close(std::exchange(writer, -1)); }), NO_XML_FILE_FOUND);
    ::close(writer);
}

TEST_F(DimmTableFiles, AreNoDevices) {
    EXPECT_EQ(FailureOfFile("/dev/zero"), NO_XML_FILE_FOUND);
    EXPECT_EQ(FailureOfFile("/dev/null"), NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, MustBeReadable) {
    // Nobody may read at address 0 of a process, whoever asks.
    EXPECT_EQ(FailureOfFile("/proc/self/mem"), NO_XML_FILE_FOUND);
    if (::geteuid() != 0) {
        const fs::path file = Write("table.xml", Example());
        fs::permissions(file, fs::perms::none);
        EXPECT_EQ(FailureOfFile(file.string()), NO_XML_FILE_FOUND);
    }
}

TEST_F(DimmTableFiles, AreNotStandardInputs) {
    const fs::path before = fs::current_path();
    fs::current_path(m_folder.Path());
    const std::optional<Xml_Exceptions> missing = FailureOfFile("-");
    Write("-", Example());
    const std::optional<Xml_Exceptions> written = FailureOfFile("-");
    fs::current_path(before);
    EXPECT_EQ(missing, NO_XML_FILE_FOUND);
    EXPECT_EQ(written, std::nullopt);
}

TEST_F(DimmTableFiles, AreNotCompressed) {
    EXPECT_EQ(FailureOf(Gzipped(Example())), NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, MustBeProperUtf8) {
    const std::string cases[] = {"\xFF",     "\x80",         "\xC3",
                                 "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80"};
    for (const std::string& text : cases) {
        EXPECT_EQ(FailureOf(Document(Header() + Module("1", "PN" + text))), NO_XML_FILE_FOUND);
        EXPECT_EQ(FailureOf(Document("<!-- " + text + " -->\n" + Required())), NO_XML_FILE_FOUND);
    }
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(DimmTableFiles, MayBeginWithAByteOrderMark) {
    EXPECT_EQ(FailureOf("\xEF\xBB\xBF" + Example()), std::nullopt);
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
}

TEST_F(DimmTableFiles, MayBeUtf16) {
    for (const bool big_endian : {false, true}) {
        EXPECT_EQ(FailureOf(Wide(Example(), big_endian)), std::nullopt) << big_endian;
        EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
        EXPECT_THAT(Offsets(0), testing::ElementsAre(0x10, 0x14));
    }
    EXPECT_EQ(FailureOf(Wide("<?xml version='1.0' encoding='UTF-16'?>" + Required().substr(0, 0) +
                                 "<t>" + Required() + "</t>",
                             false)),
              std::nullopt);
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
    // Half a character at the end.
    EXPECT_EQ(FailureOf(Wide("<t>" + Required() + "</t", true) + '\0'), NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, MayDeclareTheirEncoding) {
    EXPECT_EQ(FailureOf("<?xml version='1.0' encoding='ISO-8859-1'?>\n<t>\n" + Header() +
                        Module("1", "M\xFC-1") + "</t>\n"),
              std::nullopt);
    EXPECT_STREQ(PartNum(0), "M\xC3\xBC-1");
    EXPECT_EQ(FailureOf("<?xml version='1.0' encoding='no-such'?>\n<t>\n" + Required() + "</t>\n"),
              NO_XML_FILE_FOUND);
}

TEST_F(DimmTableFiles, MayUseNamesOfAnUnknownNamespace) {
    // A prefix that nobody declared is part of the name.
    EXPECT_EQ(FailureOf(Document(Required() + "<x:offset>10</x:offset>\n")), std::nullopt);
    EXPECT_THAT(Offsets(0), IsEmpty());
    EXPECT_EQ(FailureOf(Document("<x xmlns:a='no-uri' xmlns='%%%'/>\n" + Required())),
              std::nullopt);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(DimmTableFiles, MustBeOfTheirEncoding) {
    const std::string xml =
        "<?xml version='1.0' encoding='ANSI_X3.4-1968'?>\n<t>\n" + Required() + "\xFF\xFF</t>\n";
    EXPECT_THAT(FaultOf(Write("table.xml", xml).string()), HasSubstr("input conversion failed"));
}

}  // namespace
