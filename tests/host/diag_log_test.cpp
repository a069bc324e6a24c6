#include "host/diag_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdarg>
#include <string>
#include <thread>
#include <vector>

#include "framework/diag_functions.h"
#include "framework/diag_menu.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CListSink : public ILogSink {
  public:
    void Write(const CLogRecord& record) override { m_records.push_back(record); }
    const std::vector<CLogRecord>& Records() const { return m_records; }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const CLogRecord& record : m_records) {
            texts.push_back(record.text);
        }
        return texts;
    }

  private:
    std::vector<CLogRecord> m_records;
};

// A sink that listens for a scope.
class CListening {
  public:
    explicit CListening(ILogSink& sink) : m_sink(sink) { CDiagLog::Instance().AddSink(m_sink); }
    ~CListening() { CDiagLog::Instance().RemoveSink(m_sink); }

  private:
    ILogSink& m_sink;
};

void SendDirectly(const CDiagMenu* node, unsigned int logword, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    CDiagLog::Instance().Send(node, logword, fmt, args);
    va_end(args);
}

TEST(DiagLog, IsOneForAll) {
    EXPECT_EQ(&CDiagLog::Instance(), &CDiagLog::Instance());
}

TEST(DiagLog, GivesWordSenderAndFormattedText) {
    CListSink sink;
    const CListening listening(sink);
    const CDiagMenu node(TMENU, "node", "");
    SendDirectly(&node, 0xA5, "%02X %s\n", 0x1FU, "end");
    ASSERT_EQ(sink.Records().size(), 1U);
    EXPECT_EQ(sink.Records()[0].logword, 0xA5U);
    EXPECT_EQ(sink.Records()[0].node, &node);
    EXPECT_EQ(sink.Records()[0].text, "1F end\n");
}

TEST(DiagLog, GivesWhatNodesAndCodeWithoutANodeSend) {
    CListSink sink;
    const CListening listening(sink);
    const CDiagMenu node(TMENU, "node", "");
    node.SendLog(LW_PRINT, "from %s", node.GetName());
    diag_pf_send_log(LW_WARN, "from %s", "nowhere");
    ASSERT_EQ(sink.Records().size(), 2U);
    EXPECT_EQ(sink.Records()[0].node, &node);
    EXPECT_EQ(sink.Records()[0].text, "from node");
    EXPECT_EQ(sink.Records()[1].node, nullptr);
    EXPECT_EQ(sink.Records()[1].logword, 0x40U);
}

TEST(DiagLog, GivesEverySinkEveryRecordInOrder) {
    CListSink first;
    CListSink second;
    const CListening listening_first(first);
    const CListening listening_second(second);
    for (const char* text : {"one", "two", "three"}) {
        SendDirectly(nullptr, LW_PRINT, "%s", text);
    }
    EXPECT_THAT(first.Texts(), ElementsAre("one", "two", "three"));
    EXPECT_THAT(second.Texts(), ElementsAre("one", "two", "three"));
}

TEST(DiagLog, GivesNothingToASinkThatIsRemoved) {
    CListSink stays;
    CListSink goes;
    const CListening listening(stays);
    {
        const CListening listening_shortly(goes);
        SendDirectly(nullptr, LW_PRINT, "both");
    }
    SendDirectly(nullptr, LW_PRINT, "one");
    EXPECT_THAT(stays.Texts(), ElementsAre("both", "one"));
    EXPECT_THAT(goes.Texts(), ElementsAre("both"));
}

TEST(DiagLog, NeedsNoSink) {
    CListSink sink;
    SendDirectly(nullptr, LW_PRINT, "nobody listens");
    EXPECT_THAT(sink.Texts(), IsEmpty());
}

TEST(DiagLog, KeepsTextsUnchanged) {
    CListSink sink;
    const CListening listening(sink);
    SendDirectly(nullptr, LW_PRINT, "no newline");
    SendDirectly(nullptr, LW_PRINT, "\n\n");
    SendDirectly(nullptr, LW_PRINT, "%s", "");
    SendDirectly(nullptr, LW_PRINT, "%s", "100% %d\t");
    EXPECT_THAT(sink.Texts(), ElementsAre("no newline", "\n\n", "", "100% %d\t"));
}

TEST(DiagLog, KeepsLongTextsWhole) {
    CListSink sink;
    const CListening listening(sink);
    for (const size_t length : {255U, 256U, 1023U, 1024U, 4095U, 4096U, 4097U, 100000U}) {
        const std::string text(length, 'm');
        SendDirectly(nullptr, LW_PRINT, "%s", text.c_str());
        EXPECT_EQ(sink.Texts().back(), text);
    }
}

// Notices when a record comes while another is being written.
class CSingleFileSink : public ILogSink {
  public:
    void Write(const CLogRecord&) override {
        m_overlapped = m_overlapped || m_busy.exchange(true);
        ++m_count;
        m_busy = false;
    }
    std::atomic<bool> m_busy{false};
    std::atomic<bool> m_overlapped{false};
    int m_count = 0;
};

TEST(DiagLog, GivesRecordsOfSeveralThreadsOneAtATime) {
    constexpr int RECORDS = 2000;
    CSingleFileSink sink;
    const CListening listening(sink);
    const auto work = [] {
        for (int i = 0; i < RECORDS; ++i) {
            SendDirectly(nullptr, LW_PRINT, "%d", i);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_FALSE(sink.m_overlapped);
    EXPECT_EQ(sink.m_count, 2 * RECORDS);
}

}  // namespace
