#include "framework/diag_menu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <string>
#include <vector>

#include "framework/diag_device.h"
#include "framework/diag_func.h"
#include "framework/timed_test.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Line = CLogCapture::Line;

class CRecordSink : public ILogSink {
  public:
    CRecordSink() { CDiagLog::Instance().AddSink(*this); }
    ~CRecordSink() override { CDiagLog::Instance().RemoveSink(*this); }
    void Write(const CLogRecord& record) override { m_records.push_back(record); }
    const std::vector<CLogRecord>& Records() const { return m_records; }

  private:
    std::vector<CLogRecord> m_records;
};

// Keeps the texts that other nodes mail to it.
class CMailbox : public CDiagMenu {
  public:
    explicit CMailbox(const std::string& name) : CDiagMenu(TMENU, name, "") {}
    void ReceiveMail(CInMsg& mail) override {
        std::string text;
        mail >> text;
        m_texts.push_back(text);
    }
    const std::vector<std::string>& Texts() const { return m_texts; }

  private:
    std::vector<std::string> m_texts;
};

class CIdleCommand : public CDiagFunc {
  public:
    CIdleCommand() : CDiagFunc("command", "", SHARES_DEVICE) {}
    void Invoke(CInMsg&, COutMsg&) override {}
};

class CIdleTest : public CTimedTest {
  public:
    CIdleTest() : CTimedTest("test", "", "", false) {}
    bool TestExecute() override { return true; }
};

template <class Node>
Node& AddTo(CDiagObj& parent, Node* node) {
    parent.AddChild(node, CDiagObj::NO_SORT);
    return *node;
}

void SendThroughArgs(const CDiagMenu& node, unsigned int logword, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    node.SendLog(logword, fmt, args);
    va_end(args);
}

TEST(Menu, OutsideADeviceHasNoParentDevice) {
    CDiagMenu root(TMENU, "root", "");
    CDiagMenu& child = AddTo(root, new CDiagMenu(TMENU, "child", ""));
    EXPECT_EQ(root.GetParentDevice(), nullptr);
    EXPECT_EQ(child.GetParentDevice(), nullptr);
}

TEST(Menu, FindsTheNearestDeviceAboveItself) {
    CDiagDevice outer("outer", "", TDEVICE);
    CDiagMenu& menu = AddTo(outer, new CDiagMenu(TMENU, "menu", ""));
    CDiagDevice& inner = AddTo(menu, new CDiagDevice("inner", "", TDEVICE));
    CDiagMenu& channel = AddTo(inner, new CDiagMenu(TMENU, "ch0", ""));
    CDiagMenu& command = AddTo(channel, new CDiagMenu(TFUNC, "command", ""));
    EXPECT_EQ(command.GetParentDevice(), &inner);
    EXPECT_EQ(channel.GetParentDevice(), &inner);
    EXPECT_EQ(menu.GetParentDevice(), &outer);
}

TEST(Menu, IsNotItsOwnParentDevice) {
    CDiagDevice outer("outer", "", TDEVICE);
    CDiagDevice& inner = AddTo(outer, new CDiagDevice("inner", "", TDEVICE));
    EXPECT_EQ(inner.GetParentDevice(), &outer);
    EXPECT_EQ(outer.GetParentDevice(), nullptr);
}

TEST(Menu, TakesADeviceByItsClassNotByItsNodeType) {
    CDiagMenu impostor(TDEVICE, "impostor", "");
    CDiagMenu& child = AddTo(impostor, new CDiagMenu(TMENU, "child", ""));
    EXPECT_EQ(child.GetParentDevice(), nullptr);
}

TEST(Menu, SendsFormattedTextToTheLogAsItStands) {
    const CLogCapture log;
    const CDiagMenu menu(TMENU, "menu", "");
    menu.SendLog(LW_PRINT, "         device with addr = 0x%x found \n", 0x50U);
    menu.SendLog(LW_SW_TRACE, "(%s): select channel", menu.GetName());
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0xB0, "         device with addr = 0x50 found \n"},
                                         Line{0xA1, "(menu): select channel"}));
}

TEST(Menu, SendsTheSameThroughAnArgumentList) {
    const CLogCapture log;
    const CDiagMenu menu(TMENU, "menu", "");
    SendThroughArgs(menu, LW_ERR_SW, "%s=%d", "n", 5);
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x30, "n=5"}));
}

// A text as its sender may have it: to fill in, or a literal, which is let be one.
template <class Node>
std::vector<Line> LinesOfASingleText(const Node& node) {
    const CLogCapture log;
    char text[] = "filled in";
    node.SendLog(LW_PRINT, "%s", text);
    node.SendLog(LW_PRINT, "%s: exit\n", "literal");
    return log.Lines();
}

TEST(Menu, DerivedNodesDoNotTakeASingleTextForAnArgumentList) {
    const auto texts = ElementsAre(Line{0xB0, "filled in"}, Line{0xB0, "literal: exit\n"});
    EXPECT_THAT(LinesOfASingleText(CDiagDevice("device", "", TDEVICE)), texts);
    EXPECT_THAT(LinesOfASingleText(CIdleCommand()), texts);
    EXPECT_THAT(LinesOfASingleText(CDiagTestBase("test", "")), texts);
    EXPECT_THAT(LinesOfASingleText(CIdleTest()), texts);
}

TEST(Menu, NamesItselfAsTheSender) {
    const CRecordSink sink;
    const CDiagMenu menu(TMENU, "menu", "");
    menu.SendLog(LW_PRINT, "one");
    SendThroughArgs(menu, LW_PRINT, "two");
    ASSERT_EQ(sink.Records().size(), 2U);
    EXPECT_EQ(sink.Records()[0].node, &menu);
    EXPECT_EQ(sink.Records()[1].node, &menu);
}

TEST(Menu, AnswersAQueryWithSuccessAndItsDescription) {
    CDiagMenu menu(TMENU, "menu", "");
    COutMsg described;
    menu.Query(described);
    CByteVector want{MSG_SUCCESS};
    const CByteVector description = PayloadOf(described);
    want.insert(want.end(), description.begin(), description.end());
    EXPECT_EQ(Send(menu, MSG_QUERY).bytes, want);
}

TEST(Menu, RefusesMessagesItDoesNotKnow) {
    CDiagMenu menu(TMENU, "menu", "");
    for (const EMsgType type : {MSG_PEEKV, MSG_POKEV, MSG_CALL, MSG_START, MSG_STOP}) {
        EXPECT_THAT(Send(menu, type).bytes, ElementsAre(MSG_ERR_MSGTYPE)) << type;
    }
}

TEST(Menu, MailsAMessageToTheNodeItIsAddressedTo) {
    CDiagMenu root(TMENU, "root", "");
    CDiagMenu& left = AddTo(root, new CDiagMenu(TMENU, "left", ""));
    CDiagMenu& sender = AddTo(left, new CDiagMenu(TMENU, "sender", ""));
    CMailbox& right = AddTo(root, new CMailbox("right"));
    CMailbox& below = AddTo(right, new CMailbox("below"));

    COutMsg mail(MSG_MAIL, below.GetId(), sender.GetId());
    mail << "hello";
    sender.SendMsg(mail);
    EXPECT_THAT(below.Texts(), ElementsAre("hello"));
    EXPECT_THAT(right.Texts(), IsEmpty());
}

TEST(Menu, MailsTheMessageWholeEachTime) {
    CDiagMenu root(TMENU, "root", "");
    CMailbox& box = AddTo(root, new CMailbox("box"));
    COutMsg mail(MSG_MAIL, box.GetId());
    mail << "again";
    root.SendMsg(mail);
    root.SendMsg(mail);
    EXPECT_THAT(box.Texts(), ElementsAre("again", "again"));
}

}  // namespace
