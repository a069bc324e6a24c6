// What a "morva,param-eeprom" of the description becomes, and which table it
// takes when the operator names none.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "i2c/param_eeprom_cmd.h"
#include "tests/boards/devicetree/eeprom_mount_test.h"
#include "tests/i2c/param_eeprom_table.h"
#include "tests/support/bytes.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* PARAM = "morva,param-eeprom";
constexpr const char* PROG = "prog-param-eeprom";
constexpr const char* CHECK = "check-param-eeprom";
constexpr const char* ERASE = "erase-param-eeprom";
constexpr size_t SIZE = 8192;

const CByteVector PASSED = {MSG_SUCCESS};
const CByteVector FAILED = {MSG_ERR_FAIL};

class ParamEepromMount : public CEepromMountTest {
  protected:
    std::string WriteTable(const std::string& file, const std::string& xml) const {
        return m_folder.Write(file, std::vector<uint8_t>(xml.begin(), xml.end())).string();
    }
    std::string WriteTable(const std::string& file, const CTable& table) const {
        return WriteTable(file, XmlOf(table));
    }

    Names Children() {
        Names names;
        for (const CDiagObj* child : NodeAt(*m_root, m_path).GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }

    // What the EEPROM holds once the table is stored: what it held, behind it.
    Bytes Stored(const CTable& table) const {
        Bytes bytes = m_held;
        std::ranges::copy(ImageOf(table), bytes.begin());
        return bytes;
    }
    // What `check` answers when the EEPROM holds the table.
    static CByteVector Matches(const CTable& table) {
        return CBytes().U8(MSG_SUCCESS).U32(table.version).U32(WordAt(ImageOf(table), 0)).Get();
    }
    std::string Errors() const { return m_log.Joined(LW_ERR_TEST); }
};

}  // namespace

TEST_F(ParamEepromMount, HasTheCommandsOfTheTableBehindThoseOfAnEeprom) {
    const Names commands = {"read",      "write-byte", "memory", "rw-test",
                            "read-cont", PROG,         CHECK,    ERASE};
    MountOnRoot(PARAM, SIZE);
    EXPECT_EQ(Children(), commands);
    EXPECT_EQ(DescriptionAt(m_path), "morva,param-eeprom at 0x50: 8192 bytes");

    Names behind = {"enable-path", "clr-path"};
    behind.insert(behind.end(), commands.begin(), commands.end());
    MountBehindThree(PARAM, SIZE);
    EXPECT_EQ(Children(), behind);
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(ParamEepromMount, DescribesItsCommandsAsTheLibraryDoes) {
    MountOnRoot(PARAM, SIZE);
    EXPECT_EQ(DescriptionAt(m_path + "/" + PROG),
              "Writes a Dimm table on parameter eeprom specified by path of XML file passed");
    EXPECT_EQ(DescriptionAt(m_path + "/" + CHECK),
              "Checks the Dimm table on parameter eeprom specified by path of XML file passed");
    EXPECT_EQ(DescriptionAt(m_path + "/" + ERASE), "Erases the Dimm table on parameter eeprom");
}

TEST_F(ParamEepromMount, IsNotForAnEepromOfAnotherKind) {
    MountOnRoot("morva,mfg-eeprom", SIZE);
    for (const char* command : {PROG, CHECK, ERASE}) {
        EXPECT_EQ(NodeAt(*m_root, m_path).FindChild(command), nullptr) << command;
    }
}

TEST_F(ParamEepromMount, StoresTheTableThatIsNamed) {
    WriteTable("xml/prog_param_quillbank.xml", ExtendedTable());
    const std::string named = WriteTable("named.xml", CompactTable());
    MountOnRoot(PARAM, SIZE);
    EXPECT_EQ(Call(PROG, named).bytes, PASSED) << Errors();
    EXPECT_EQ(Contents(), Stored(CompactTable()));
    EXPECT_EQ(Call(CHECK, named).bytes, Matches(CompactTable()));
}

TEST_F(ParamEepromMount, WhenReadOnlyCanOnlyBeChecked) {
    const std::string table = WriteTable("named.xml", CompactTable());
    MountOnRoot(PARAM, SIZE, [](CBlobBuilder& dev) { dev.Bytes("read-only", ""); });
    EXPECT_EQ(Children(), (Names{"read", "memory", "rw-test", "read-cont", CHECK}));
    EXPECT_EQ(DescriptionAt(m_path), "morva,param-eeprom at 0x50: 8192 bytes, read-only");
    EXPECT_EQ(Call(CHECK, table).Code(), MSG_ERR_FAIL);

    const Bytes stored = Stored(CompactTable());
    WriteFile(m_folder / "state" / m_file, stored);
    EXPECT_EQ(Call(CHECK, table).bytes, Matches(CompactTable()));
    EXPECT_EQ(Contents(), stored);
}

TEST_F(ParamEepromMount, OfMoreThanOneAddressCanReachIsLeftOut) {
    MountOnBus(
        [](CBlobBuilder& bus) { bus.Device("dev", PARAM, 0x50).Cells("size", {0x20000}).End(); });
    EXPECT_EQ(NamesAt("/i2c-0"), Names{});
    EXPECT_EQ(m_log.Joined(LW_WARN),
              "left out: /i2c@100/dev: \"morva,param-eeprom\" of 131072 bytes does not fit one "
              "slave address\n");
}

TEST_F(ParamEepromMount, OfAllThatOneAddressCanReachTakesATable) {
    const std::string table = WriteTable("named.xml", CompactTable());
    MountOnRoot(PARAM, 0x10000, [](CBlobBuilder& dev) { dev.Cells("size", {0x10000}); });
    EXPECT_EQ(DescriptionAt(m_path), "morva,param-eeprom at 0x50: 65536 bytes");
    EXPECT_EQ(Call(PROG, table).bytes, PASSED) << Errors();
    EXPECT_EQ(Contents(), Stored(CompactTable()));
}

TEST_F(ParamEepromMount, TakesNoTableLargerThanItIs) {
    const std::string table = WriteTable("named.xml", CompactTable());
    MountOnRoot(PARAM, 128, [](CBlobBuilder& dev) { dev.Cells("size", {128}); });
    EXPECT_EQ(Call(PROG, table).bytes, FAILED);
    EXPECT_NE(Errors().find("the image has 132 bytes, the EEPROM 128"), std::string::npos)
        << Errors();
    EXPECT_EQ(Contents(), m_held);
}

namespace {

// Nothing here can be seen where the package's table is installed.
class ParamEepromDefault : public ParamEepromMount {
  protected:
    void SetUp() override {
        if (std::filesystem::exists(CParamEepromCmd::DEFAULT_FILE)) {
            GTEST_SKIP() << CParamEepromCmd::DEFAULT_FILE << " is installed and goes before";
        }
    }
};

constexpr const char* BESIDE = "xml/prog_param_quillbank.xml";

}  // namespace

TEST_F(ParamEepromDefault, IsTheTableBesideTheDescription) {
    WriteTable(BESIDE, ExtendedTable());
    MountOnRoot(PARAM, SIZE);
    EXPECT_EQ(Call(PROG).bytes, PASSED) << Errors();
    EXPECT_EQ(Contents(), Stored(ExtendedTable()));
    EXPECT_EQ(Call(CHECK).bytes, Matches(ExtendedTable()));
}

TEST_F(ParamEepromDefault, IsTakenForAnEmptyName) {
    WriteTable(BESIDE, CompactTable());
    MountOnRoot(PARAM, SIZE);
    EXPECT_EQ(Call(PROG, std::string()).bytes, PASSED) << Errors();
    EXPECT_EQ(Contents(), Stored(CompactTable()));
}

TEST_F(ParamEepromDefault, IsLookedUpAnewForEachCommand) {
    MountOnRoot(PARAM, SIZE);
    EXPECT_EQ(Call(PROG).bytes, FAILED);
    WriteTable(BESIDE, CompactTable());
    EXPECT_EQ(Call(PROG).bytes, PASSED);
    WriteTable(BESIDE, ExtendedTable());
    EXPECT_EQ(Call(CHECK).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Call(PROG).bytes, PASSED);
    EXPECT_EQ(Call(CHECK).bytes, Matches(ExtendedTable()));
}

TEST_F(ParamEepromDefault, ThatIsMissingIsNamedAndNothingIsWritten) {
    MountOnRoot(PARAM, SIZE);
    for (const char* command : {PROG, CHECK}) {
        SCOPED_TRACE(command);
        m_log.Clear();
        EXPECT_EQ(Call(command).bytes, FAILED);
        const Names errors = m_log.Texts(LW_ERR_TEST);
        EXPECT_NE(std::ranges::find(errors,
                                    "Error: Xml Parsing failed. Xml file "
                                    "\"/usr/lib/morva/diags/bin/xml/prog_param_quillbank.xml\" "
                                    "can not be found.\nException caught in : getDimmTableFrom"),
                  errors.end())
            << Errors();
        EXPECT_EQ(errors.back(), "CMB command failed: Invoke NO_XML_FILE_FOUND");
    }
    EXPECT_EQ(Contents(), m_held);
}

TEST_F(ParamEepromDefault, ThatIsDamagedIsNamedWithItsPlace) {
    const std::string path = WriteTable(BESIDE, "<dimm_table>\n<dimm>\n</dimm_table>\n");
    MountOnRoot(PARAM, SIZE);
    EXPECT_EQ(Call(PROG).bytes, FAILED);
    EXPECT_NE(Errors().find(path + ":3: "), std::string::npos) << Errors();
    EXPECT_EQ(Contents(), m_held);
}

namespace {

class ParamEepromPath : public ParamEepromMount, public testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        m_table = WriteTable("named.xml", CompactTable());
        MountBehindThree(PARAM, SIZE);
        SetMode(static_cast<uint8_t>(GetParam()));
        if (GetParam() == 0 || GetParam() == 3) {
            OpenByHand();
        }
        m_log.Clear();
    }
    // What a command leaves: only mode 1 closes the way.
    bool StaysOpen() const { return GetParam() != 1; }

    std::string m_table;
};

}  // namespace

TEST_P(ParamEepromPath, LetsATableBeStoredCheckedAndErased) {
    EXPECT_EQ(Call(PROG, m_table).bytes, PASSED) << Errors();
    EXPECT_EQ(Answers(), StaysOpen());
    EXPECT_EQ(Contents(), Stored(CompactTable()));

    EXPECT_EQ(Call(CHECK, m_table).bytes, Matches(CompactTable())) << Errors();
    EXPECT_EQ(Answers(), StaysOpen());

    EXPECT_EQ(Call(ERASE).bytes, PASSED);
    EXPECT_EQ(Answers(), StaysOpen());
    Bytes erased = m_held;
    std::fill_n(erased.begin(), ImageOf(CompactTable()).size(), 0xFF);
    EXPECT_EQ(Contents(), erased);
    EXPECT_EQ(Errors(), "");
}

INSTANTIATE_TEST_SUITE_P(InMode, ParamEepromPath, testing::Values(0, 1, 2, 3),
                         testing::PrintToStringParamName());

namespace {

class ParamEepromWords : public ParamEepromMount {
  protected:
    void SetUp() override {
        m_table = WriteTable("named.xml", CompactTable());
        MountBehindThree(PARAM, SIZE);
        m_log.Clear();
    }
    ptrdiff_t Opened() const { return Traced("(dev): enable upstream switch low-0 channel = 3\n"); }
    ptrdiff_t Closed() const { return Traced("(dev): clear upstream switch low-0 channel = 3\n"); }

    static constexpr ptrdiff_t WORDS = 132 / 4;
    std::string m_table;

  private:
    ptrdiff_t Traced(const std::string& text) const {
        return std::ranges::count(m_log.Texts(LW_SW_TRACE), text);
    }
};

}  // namespace

TEST_F(ParamEepromWords, AreEachWrittenAndReadOnAPathOfTheirOwn) {
    ASSERT_EQ(Call(PROG, m_table).bytes, PASSED) << Errors();
    EXPECT_EQ(Opened(), 2 * WORDS);
    EXPECT_EQ(Closed(), 2 * WORDS);
}

TEST_F(ParamEepromWords, AreEachCheckedOnAPathOfTheirOwn) {
    ASSERT_EQ(Call(PROG, m_table).bytes, PASSED) << Errors();
    m_log.Clear();
    ASSERT_EQ(Call(CHECK, m_table).bytes, Matches(CompactTable()));
    EXPECT_EQ(Opened(), WORDS);
    EXPECT_EQ(Closed(), WORDS);
}

TEST_F(ParamEepromWords, AreEachErasedOnAPathOfTheirOwn) {
    ASSERT_EQ(Call(PROG, m_table).bytes, PASSED) << Errors();
    m_log.Clear();
    ASSERT_EQ(Call(ERASE).bytes, PASSED);
    EXPECT_EQ(Opened(), 1 + WORDS);  // the length first
    EXPECT_EQ(Closed(), 1 + WORDS);
}

TEST_F(ParamEepromWords, AreNotWrittenWhenThePathCannotBeOpened) {
    SimBus().Faults().Nack(0x71);
    EXPECT_EQ(Call(PROG, m_table).bytes, FAILED);
    EXPECT_EQ(Opened(), 2);
    EXPECT_EQ(Contents(), m_held);
}
