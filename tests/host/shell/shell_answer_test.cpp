// What a node answers besides its code: the outputs that it declares, and what is
// left over behind them.
#include <gmock/gmock.h>

#include "framework/diag_func.h"
#include "framework/diag_param.h"
#include "framework/diag_test.h"
#include "host/shell/report/json_report.h"
#include "tests/host/shell/shell_tree.h"
#include "tests/host/shell/text_file.h"
#include "tests/support/bytes.h"

namespace {

using testing::HasSubstr;

void AddOutputs(CDiagMenu& node) {
    node.AddChild(new CDiagParam(VT_UINT8 | VF_HEX, "value", "a number", PT_OUT),
                  CDiagObj::NO_SORT);
    node.AddChild(new CDiagParam(VT_STRING, "note", "a remark", PT_OUT), CDiagObj::NO_SORT);
}

void Append(COutMsg& out, const std::vector<uint8_t>& bytes) {
    for (const uint8_t byte : bytes) {
        out << byte;
    }
}

// Both answer what they are told.
class CReplyCmd : public CDiagFunc {
  public:
    explicit CReplyCmd(const std::vector<uint8_t>& answer)
        : CDiagFunc("reply", "answers", 0), m_answer(answer) {
        AddOutputs(*this);
    }
    void Invoke(CInMsg&, COutMsg& out) override { Append(out, m_answer); }

  private:
    const std::vector<uint8_t>& m_answer;
};

class CReplyTest : public CDiagTest {
  public:
    explicit CReplyTest(const std::vector<uint8_t>& answer)
        : CDiagTest("reply-test", "answers"), m_answer(answer) {
        AddOutputs(*this);
    }
    ETestStatus TestRun(COutMsg& out) override {
        Append(out, m_answer);
        return m_answer.front() == MSG_SUCCESS ? DS_PASSED : DS_FAILED;
    }

  private:
    const std::vector<uint8_t>& m_answer;
};

class ShellAnswer : public ShellTest {
  protected:
    ShellAnswer() {
        m_device->AddChild(new CReplyCmd(m_answer), CDiagObj::NO_SORT);
        m_device->AddChild(new CReplyTest(m_answer), CDiagObj::NO_SORT);
    }

    // The code, both outputs and `rest`.
    void Answer(EResCode code, const std::vector<uint8_t>& rest) {
        m_answer = CBytes().U8(static_cast<uint8_t>(code)).U8(7).Text("ok").Get();
        m_answer.insert(m_answer.end(), rest.begin(), rest.end());
    }

    std::vector<uint8_t> m_answer;
};

TEST_F(ShellAnswer, PassesWithItsOutputs) {
    Answer(MSG_SUCCESS, {});
    EXPECT_EQ(Run("dev/reply"), EXIT_PASSED);
    EXPECT_EQ(printed, "value = 0x7\nnote = ok\n");
}

TEST_F(ShellAnswer, PassesWhenWhatCameBehindTheOutputsPassedToo) {
    Answer(MSG_SUCCESS, {MSG_SUCCESS});
    EXPECT_EQ(Run("dev/reply"), EXIT_PASSED);
    EXPECT_EQ(printed + errors, "value = 0x7\nnote = ok\n");
}

TEST_F(ShellAnswer, FailsWhenWhatCameBehindTheOutputsFailed) {
    for (const uint8_t second : {MSG_ERR_FAIL, MSG_ERR_NORESP, MSG_SKIPPED}) {
        Answer(MSG_SUCCESS, {second});
        EXPECT_EQ(Run("dev/reply"), EXIT_FAILED);
        EXPECT_EQ(printed, "value = 0x7 (failed)\nnote = ok (failed)\n");
        EXPECT_EQ(errors, "/dev/reply: failed (ERR_FAIL)\n");
    }
}

TEST_F(ShellAnswer, FailsInATestAndInAJobToo) {
    Answer(MSG_SUCCESS, {MSG_ERR_FAIL});
    EXPECT_EQ(Run("dev/reply-test"), EXIT_FAILED);
    EXPECT_EQ(errors, "/dev/reply-test: failed (ERR_FAIL)\n");
    Catch();
    m_shell.Execute("dev/reply &");
    EXPECT_EQ(m_shell.Execute("wait"), EXIT_FAILED);
    Caught();
}

TEST_F(ShellAnswer, KeepsTheFirstOfTwoFailures) {
    Answer(MSG_ERR_PARAM, {MSG_ERR_FAIL});
    EXPECT_EQ(Run("dev/reply"), EXIT_FAILED);
    EXPECT_EQ(errors, "/dev/reply: failed (ERR_PARAM)\n");
}

TEST_F(ShellAnswer, FailsWhenItIsLongerThanDeclared) {
    Answer(MSG_SUCCESS, {0, 0});
    EXPECT_EQ(Run("dev/reply"), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/dev/reply: the answer has 2 bytes behind its outputs\n"
              "/dev/reply: failed (ERR_MSGLEN)\n");
}

TEST_F(ShellAnswer, FailsWhenAnOutputIsCutShort) {
    m_answer = {MSG_SUCCESS, 7, 0, 5, 'o'};
    EXPECT_EQ(Run("dev/reply"), EXIT_FAILED);
    EXPECT_EQ(printed, "value = 0x7 (failed)\n");
    EXPECT_THAT(errors, HasSubstr("/dev/reply: answer note: "));
    EXPECT_THAT(errors, HasSubstr("/dev/reply: failed (ERR_MSGLEN)\n"));
}

TEST_F(ShellAnswer, ShowsNoValueOfAFailedCommandAsIfItWereGood) {
    Answer(MSG_ERR_FAIL, {});
    EXPECT_EQ(Run("dev/reply"), EXIT_FAILED);
    EXPECT_EQ(printed, "value = 0x7 (failed)\nnote = ok (failed)\n");
}

TEST_F(ShellAnswer, ShowsTheCountsOfAFailedTestAsTheyAre) {
    Answer(MSG_ERR_FAIL, {});
    EXPECT_EQ(Run("dev/reply-test"), EXIT_FAILED);
    EXPECT_EQ(printed, "value = 0x7\nnote = ok\n");
}

TEST_F(ShellAnswer, GivesProgramsTheValueOfAFailedCommandAndPeopleTheMark) {
    CTextFile file;
    CJsonReport report(file.Get());
    m_shell.Recorder().AddObserver(report);
    Answer(MSG_SUCCESS, {MSG_ERR_FAIL});
    Run("dev/reply");
    const std::string object = file.Written();
    EXPECT_THAT(object, HasSubstr(R"("code":2,"name":"ERR_FAIL")"));
    EXPECT_THAT(
        object,
        HasSubstr(R"json({"name":"value","type":"uint8","value":7,"text":"0x7 (failed)"})json"));
}

}  // namespace
