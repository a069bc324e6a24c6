// One chronicle of what was logged and what was called, for tests where the
// order between the two matters.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/diag_log.h"

class CJournal : public ILogSink {
  public:
    // A log word and the text sent with it, or CALL and the note of a call.
    using Entry = std::pair<unsigned int, std::string>;
    static constexpr unsigned int CALL = 0;

    CJournal() { CDiagLog::Instance().AddSink(*this); }
    ~CJournal() override { CDiagLog::Instance().RemoveSink(*this); }

    void Write(const CLogRecord& record) override {
        m_entries.emplace_back(record.logword, record.text);
    }
    void Note(const std::string& call) { m_entries.emplace_back(CALL, call); }

    const std::vector<Entry>& Entries() const { return m_entries; }
    // The calls alone.
    std::vector<std::string> Calls() const {
        std::vector<std::string> calls;
        for (const auto& [word, text] : m_entries) {
            if (word == CALL) {
                calls.push_back(text);
            }
        }
        return calls;
    }
    void Clear() { m_entries.clear(); }

  private:
    std::vector<Entry> m_entries;
};
