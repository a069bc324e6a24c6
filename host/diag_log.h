// The log: every SendLog of every node arrives here and goes to the sinks.
#pragma once

#include <cstdarg>
#include <mutex>
#include <string>
#include <vector>

#include "framework/diag_log_word.h"

class CDiagMenu;

struct CLogRecord {
    unsigned int logword;
    const CDiagMenu* node;  // the sender, null for code that has no node
    std::string text;       // as sent: with its own newlines, if any
};

class ILogSink {
  public:
    virtual ~ILogSink() = default;
    // Whether records of that log word are wanted. A text that nobody wants is
    // not even made: transfers trace themselves, and most are not shown.
    virtual bool Takes(unsigned int) const { return true; }
    virtual void Write(const CLogRecord& record) = 0;
};

class CDiagLog {
  public:
    static CDiagLog& Instance();

    // Sinks are not owned; each gets every record that it takes, one at a time.
    void AddSink(ILogSink& sink);
    void RemoveSink(ILogSink& sink);

    void Send(const CDiagMenu* node, unsigned int logword, const char* fmt, va_list args)
        __attribute__((format(printf, 4, 0)));

  private:
    std::mutex m_lock;
    std::vector<ILogSink*> m_sinks;
};

// Has a sink in the log for a scope.
class CLogSinkScope {
  public:
    explicit CLogSinkScope(ILogSink& sink) : m_sink(sink) { CDiagLog::Instance().AddSink(sink); }
    ~CLogSinkScope() { CDiagLog::Instance().RemoveSink(m_sink); }
    CLogSinkScope(const CLogSinkScope&) = delete;
    CLogSinkScope& operator=(const CLogSinkScope&) = delete;

  private:
    ILogSink& m_sink;
};
