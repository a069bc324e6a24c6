#include "host/shell/input/completion.h"

#include <gmock/gmock.h>

#include <fstream>

#include "framework/diag_param.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/input/candidates.h"
#include "tests/host/shell/shell_tree.h"
#include "tests/support/temp_folder.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class Completion : public ShellTest {
  protected:
    CCompletion CompleteAt(const std::string& line, size_t cursor) const {
        return Complete(m_shell, line, cursor);
    }
    // The line as Tab at its end leaves it.
    std::string Completed(const std::string& line) const {
        const CCompletion found = CompleteAt(line, line.size());
        return line.substr(0, found.begin) + found.text;
    }
    std::vector<std::string> Candidates(const std::string& line) const {
        return CompleteAt(line, line.size()).candidates;
    }
    std::string Hint(const std::string& line) const { return CompleteAt(line, line.size()).hint; }
    // A command of the device with one text argument of that description.
    void AddCommand(const std::string& name, const std::string& description,
                    const char* argument = "what") {
        auto* command = new CDiagMenu(TFUNC, name, "a command");
        command->AddChild(new CDiagParam(VT_STRING, argument, description, PT_IN),
                          CDiagObj::NO_SORT);
        m_device->AddChild(command, CDiagObj::NO_SORT);
    }
};

TEST_F(Completion, OffersBuiltInsAndNodesForTheFirstWord) {
    EXPECT_THAT(Candidates(""), AllOf(Contains("cd"), Contains("quit"), Contains("dev/")));
    EXPECT_EQ(Completed("qu"), "quit ");
    EXPECT_EQ(Completed("de"), "dev/");
    for (const std::string before : {"ls;", "ls && ", "dev/add 1 & "}) {
        EXPECT_EQ(Completed(before + "qu"), before + "quit ");
    }
}

TEST_F(Completion, GoesOnPartByPart) {
    EXPECT_EQ(Completed("dev/ad"), "dev/add ");
    EXPECT_EQ(Completed("/dev/ad"), "/dev/add ");
    Run("cd dev");
    EXPECT_EQ(Completed("ad"), "add ");
    EXPECT_EQ(Completed(".."), "../");
    EXPECT_EQ(Completed("../go"), "../gone/");
    EXPECT_EQ(Completed("/dev/ad"), "/dev/add ");
}

TEST_F(Completion, OffersOnlyWhatRunsToBeRun) {
    EXPECT_THAT(Candidates("dev/"), AllOf(Contains("add"), Contains("check!"),
                                          Not(Contains("name=")), Not(Contains("memory[]"))));
}

TEST_F(Completion, OffersNoParameters) {
    EXPECT_THAT(Candidates("ls dev/add/"), IsEmpty());
    EXPECT_EQ(Completed("dev/add/a"), "dev/add/a");
}

TEST_F(Completion, OffersWhatABuiltInTakes) {
    EXPECT_THAT(Candidates("cd "), ElementsAre("dev/", "gone/"));
    EXPECT_THAT(Candidates("cd dev/"), IsEmpty());
    EXPECT_THAT(Candidates("ls dev/"), AllOf(Contains("add"), Contains("name=")));
    EXPECT_THAT(Candidates("peek dev/"), ElementsAre("name=", "fixed=", "memory[]", "list[]"));
    EXPECT_THAT(Candidates("export dev/"), ElementsAre("memory[]", "list[]"));
    EXPECT_EQ(Completed("peek dev/na"), "peek dev/name ");
}

TEST_F(Completion, TakesAnotherCommandAsArgument) {
    EXPECT_EQ(Completed("help qu"), "help quit ");
    EXPECT_EQ(Completed("help dev/ad"), "help dev/add ");
    EXPECT_EQ(Completed("repeat 5 dev/ad"), "repeat 5 dev/add ");
    EXPECT_EQ(Completed("repeat 5 peek dev/na"), "repeat 5 peek dev/name ");
    EXPECT_EQ(Completed("repeat un"), "repeat until-fail ");
}

TEST_F(Completion, StopsWhereABuiltInTakesNoMore) {
    EXPECT_THAT(Candidates("cd dev "), IsEmpty());
    EXPECT_THAT(Candidates("quit "), IsEmpty());
    EXPECT_EQ(Hint("quit "), "");
}

TEST_F(Completion, GivesNobodyAnOptionThatWasNotAskedFor) {
    EXPECT_EQ(Completed("export dev file "), "export dev file ");
    EXPECT_EQ(Completed("export dev file -"), "export dev file --force ");
    EXPECT_THAT(Candidates("ls "), Not(Contains("-l")));
    EXPECT_EQ(Completed("ls -"), "ls -l ");
}

TEST_F(Completion, TakesAbbreviatedFoldersAsTheyStand) {
    EXPECT_EQ(Completed("/d/ad"), "/d/add ");
}

TEST_F(Completion, AddsOnlyWhatAllHaveInCommon) {
    m_device->AddChild(new CDiagMenu(TMENU, "channel-10", ""), CDiagObj::NO_SORT);
    m_device->AddChild(new CDiagMenu(TMENU, "channel-11", ""), CDiagObj::NO_SORT);
    EXPECT_EQ(Completed("cd dev/c"), "cd dev/channel-1");
    EXPECT_THAT(Candidates("cd dev/channel-1"), ElementsAre("channel-10/", "channel-11/"));
    EXPECT_EQ(Completed("cd dev/channel-1"), "cd dev/channel-1");
}

TEST_F(Completion, LeavesALineAloneThatNothingFits) {
    for (const std::string line : {"zzz", "dev/zzz", "no/such/x", "ls # de", "cd 'no", "zzz/x "}) {
        const CCompletion found = CompleteAt(line, line.size());
        EXPECT_EQ(line.substr(0, found.begin) + found.text, line);
        EXPECT_EQ(found.count, 0U) << line;
        EXPECT_EQ(found.hint, "") << line;
    }
}

TEST_F(Completion, CompletesInTheMiddleOfALine) {
    const CCompletion found = CompleteAt("peek dev/na 5", 11);
    EXPECT_EQ(found.begin, 5U);
    EXPECT_EQ(found.text, "dev/name");  // the blank is there
}

TEST_F(Completion, KeepsTheOpenQuote) {
    EXPECT_EQ(Completed("peek \"dev/na"), "peek \"dev/name\" ");
    EXPECT_EQ(Completed("cd 'de"), "cd 'dev/");
}

TEST_F(Completion, OffersTheWordsOfAnEnumeratedArgument) {
    AddCommand("move", "rd/wr");
    EXPECT_THAT(Candidates("dev/move "), ElementsAre("rd", "wr"));
    EXPECT_EQ(Completed("dev/move r"), "dev/move rd ");
    EXPECT_EQ(Hint("dev/move "), "");
}

TEST_F(Completion, TellsTheArgumentThatIsDue) {
    EXPECT_EQ(Hint("dev/add "), "usage: /dev/add a [b]\na: first number (0 to 65535)\n");
    EXPECT_EQ(Hint("dev/add 12"), Hint("dev/add "));
    EXPECT_EQ(Hint("dev/add 1 "), "usage: /dev/add a [b]\nb: second number (0 to 255, optional)\n");
    EXPECT_EQ(Hint("dev/add 1 2 "), "usage: /dev/add a [b]\nall its arguments are given\n");
    EXPECT_EQ(Hint("dev/fail "), "usage: /dev/fail\nit takes no arguments\n");
    EXPECT_THAT(Hint("peek dev/list "), HasSubstr("usage: peek NODE [POSITION|FIRST..LAST]\n"));
}

TEST_F(Completion, TellsNothingOfNodesThatDoNotRun) {
    EXPECT_EQ(Hint("dev/name "), "");
    EXPECT_EQ(Hint("dev "), "");
}

TEST_F(Completion, OffersFiles) {
    const CTempFolder folder;
    const std::string path = folder.Path().string() + "/";
    for (const char* name : {"saved.bin", "old saved.bin", "other.bin", ".hidden"}) {
        std::ofstream(path + name) << "x";
    }
    std::filesystem::create_directory(path + "parts");
    const std::string line = "import dev " + path;
    EXPECT_THAT(Candidates(line), ElementsAre("old saved.bin", "other.bin", "parts/", "saved.bin"));
    EXPECT_THAT(Candidates(line + "."), ElementsAre(".hidden"));
    EXPECT_EQ(Completed(line + "s"), line + "saved.bin ");
    EXPECT_EQ(Completed(line + "p"), line + "parts/");
    EXPECT_EQ(Completed(line + "ol"), line + "old\\ saved.bin ");
    EXPECT_EQ(Completed("import dev \"" + path + "ol"),
              "import dev \"" + path + "old saved.bin\" ");
    EXPECT_THAT(Candidates("import dev " + path + "no/such/"), IsEmpty());
}

TEST_F(Completion, OffersFilesForAnArgumentThatNamesOne) {
    AddCommand("load", "where it is", "xml_filename");
    AddCommand("say", "a text", "text");
    const CTempFolder folder;
    const std::string path = folder.Path().string() + "/";
    std::ofstream(path + "table.xml") << "x";
    EXPECT_EQ(Completed("dev/load " + path + "t"), "dev/load " + path + "table.xml ");
    EXPECT_EQ(Hint("dev/load " + path + "t"), "");
    EXPECT_THAT(Hint("dev/load " + path + "x"), HasSubstr("xml_filename: where it is"));
    EXPECT_THAT(Hint("dev/load "), HasSubstr("xml_filename: where it is"));
    EXPECT_EQ(Completed("dev/say " + path + "t"), "dev/say " + path + "t");
}

TEST_F(Completion, OffersTheJobsThatRun) {
    Catch();
    m_shell.Execute("dev/check pass &");
    m_shell.Execute("wait");
    EXPECT_THAT(Candidates("stop "), IsEmpty());
    m_shell.Execute("dev/check wait &");
    EXPECT_THAT(Candidates("stop "), ElementsAre("2"));
    m_interrupt.Clear();
    m_shell.Execute("stop; wait");
    Caught();
}

TEST_F(Completion, ListsTheFirstOfManyAndCountsThemAll) {
    for (int i = 0; i < 10'000; ++i) {
        m_device->AddChild(new CDiagMenu(TMENU, "node" + std::to_string(i), ""), CDiagObj::NO_SORT);
    }
    const CCompletion found = CompleteAt("cd dev/no", 9);
    EXPECT_EQ(found.text, "dev/node");
    EXPECT_EQ(found.count, 10'000U);
    EXPECT_THAT(found.candidates, SizeIs(CCandidates::LISTED));
    EXPECT_EQ(Completed("cd dev/node777"), "cd dev/node777");
    EXPECT_EQ(Completed("cd dev/node7777"), "cd dev/node7777/");
}

TEST(EnumeratedWordsOf, AreAListInTheDescription) {
    EXPECT_THAT(EnumeratedWords("rd/wr"), ElementsAre("rd", "wr"));
    EXPECT_THAT(EnumeratedWords("a|b-c|d_e"), ElementsAre("a", "b-c", "d_e"));
    EXPECT_THAT(EnumeratedWords("fault (arbitration/nack)"), ElementsAre("arbitration", "nack"));
    EXPECT_THAT(EnumeratedWords("of a chip (if any), how (x|y)"), ElementsAre("x", "y"));
}

TEST(EnumeratedWordsOf, AreNoneWhereThereIsNoList) {
    for (const char* description :
         {"", "address", "0-3", "read or write", "rd/wr or so", "Start address (dflt=0)", "(one)",
          "a//b", "a/", "/a", "()", "and/or so (see there)"}) {
        EXPECT_THAT(EnumeratedWords(description), IsEmpty()) << description;
    }
}

}  // namespace
