// Records everything that is logged while it lives.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host/diag_log.h"

class CLogCapture : public ILogSink {
  public:
    using Line = std::pair<unsigned int, std::string>;  // log word, text as sent

    CLogCapture() { CDiagLog::Instance().AddSink(*this); }
    ~CLogCapture() override { CDiagLog::Instance().RemoveSink(*this); }

    void Write(const CLogRecord& record) override {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_lines.emplace_back(record.logword, record.text);
    }

    // All records in order, as (log word, text).
    std::vector<Line> Lines() const {
        const std::lock_guard<std::mutex> guard(m_lock);
        return m_lines;
    }
    // The texts of one log word in order.
    std::vector<std::string> Texts(unsigned int logword) const {
        std::vector<std::string> texts;
        for (const auto& [word, text] : Lines()) {
            if (word == logword) {
                texts.push_back(text);
            }
        }
        return texts;
    }
    // All texts of one log word, joined.
    std::string Joined(unsigned int logword) const {
        std::string joined;
        for (const std::string& text : Texts(logword)) {
            joined += text;
        }
        return joined;
    }
    void Clear() {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_lines.clear();
    }

  private:
    mutable std::mutex m_lock;
    std::vector<Line> m_lines;
};
