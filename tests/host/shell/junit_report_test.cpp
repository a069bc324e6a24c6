#include "host/shell/report/junit_report.h"

#include <gmock/gmock.h>

#include <system_error>

#include "tests/host/shell/shell_tree.h"
#include "tests/support/temp_folder.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class JunitReport : public ShellTest {
  protected:
    JunitReport() { m_shell.Recorder().AddObserver(m_report); }

    std::string Report() {
        m_report.Finish();
        std::ifstream file(m_path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    CTempFolder m_folder;
    const std::string m_path = (m_folder.Path() / "report.xml").string();
    CJunitReport m_report{m_path};
};

TEST_F(JunitReport, HasATestcaseForEachCommandAndTest) {
    Run("/dev/add 1 2");
    Run("/dev/check pass");
    const std::string report = Report();
    EXPECT_THAT(report, testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
    EXPECT_THAT(report, ContainsRegex("<testsuite name=\"diagsh\" tests=\"2\" failures=\"0\" "
                                      "errors=\"0\" skipped=\"0\" time=\"[0-9.]+\" "
                                      "timestamp=\"[0-9TZ:.-]+\">"));
    EXPECT_THAT(report,
                ContainsRegex("<testcase name=\"add 1 2\" classname=\"dev\" time=\"[0-9.]+\">\n"
                              " *<system-out>adding 1 and 2\n</system-out>\n *</testcase>"));
    EXPECT_THAT(report, ContainsRegex("<testcase name=\"check pass\" classname=\"dev\" "
                                      "time=\"[0-9.]+\">\n *<system-out>check: passed\n<"));
}

TEST_F(JunitReport, TellsFailuresErrorsAndSkipsApart) {
    Run("/dev/check fail");
    Run("/dev/check skip");
    Run("/dev/check wait");
    m_interrupt.Clear();
    Run("/dev/add 'a<b'");
    const std::string report = Report();
    EXPECT_THAT(report, ContainsRegex("tests=\"4\" failures=\"1\" errors=\"2\" skipped=\"1\""));
    EXPECT_THAT(report, HasSubstr("<failure type=\"failed\" message=\"/dev/check: failed "
                                  "(ERR_FAIL)\">/dev/check: failed (ERR_FAIL)</failure>"));
    EXPECT_THAT(report, HasSubstr("<skipped/>"));
    EXPECT_THAT(report, HasSubstr("<error type=\"aborted\" message=\"/dev/check: aborted"));
    EXPECT_THAT(report, HasSubstr("<error type=\"usage\" message=\"/dev/add: argument a: "
                                  "&quot;a&lt;b&quot; is not a number"));
}

TEST_F(JunitReport, CountsWhatOthersRanOnce) {
    Run("repeat 2 /dev/fail");
    Run("cd dev");
    Run("peek nothing");
    const std::string report = Report();
    EXPECT_THAT(report, ContainsRegex("tests=\"3\" failures=\"2\" errors=\"1\""));
    EXPECT_THAT(report, HasSubstr("<testcase name=\"peek nothing\" classname=\"diagsh\""));
    EXPECT_THAT(report, Not(HasSubstr("repeat")));
}

TEST_F(JunitReport, CutsALongLog) {
    CRunRecord record;
    record.path = "/dev/long";
    record.command = "/dev/long";
    record.log.assign(CJunitReport::MAX_LINES + 5, {LOG_LT_PRINT, 0, "/dev/long", "x"});
    record.log_left_out = 2;
    m_report.OnEnd(record);
    const std::string report = Report();
    EXPECT_THAT(report, HasSubstr("\nx\n... and 7 more lines\n</system-out>"));
}

TEST_F(JunitReport, StaysXmlWhateverAChipAnswers) {
    Run(std::string("/dev/check '\xff\x1f]]>'"));
    CRunRecord record;
    record.path = "/dev/odd";
    record.command = "/dev/odd";
    record.log.push_back({LOG_LT_PRINT, 0, "/dev/odd", std::string("a\0\x1b\xff]]>&", 8)});
    m_report.OnEnd(record);
    EXPECT_THAT(Report(), HasSubstr("a\\x00\\x1b\\xff]]&gt;&amp;\n"));
}

TEST(JunitReportFile, NamesAFileThatCannotBeMade) {
    try {
        CJunitReport report("/does/not/exist/report.xml");
        FAIL() << "made";
    } catch (const std::system_error& e) {
        EXPECT_STREQ(e.what(), "/does/not/exist/report.xml: No such file or directory");
    }
}

}  // namespace
