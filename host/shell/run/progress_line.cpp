#include "host/shell/run/progress_line.h"

#include <algorithm>
#include <utility>

#include "framework/diag_test_base.h"
#include "host/terminal.h"

namespace {

constexpr uint64_t SECOND_MS = 1000;
constexpr size_t BAR_WIDTH = 20;

uint64_t PerCent(uint64_t done, uint64_t total, uint64_t whole) {
    // A test may do more than it announced.
    return static_cast<uint64_t>(static_cast<long double>(std::min(done, total)) *
                                 static_cast<long double>(whole) / static_cast<long double>(total));
}

}  // namespace

std::string PercentOf(const CDiagTestBase& test) {
    const uint64_t total = test.GetProgressTotal();
    return total == 0 ? "" : std::to_string(PerCent(test.GetProgressDone(), total, 100)) + "%";
}

CProgressLine::CProgressLine(CTerminal& terminal, const CDiagTestBase& test, CColumns columns)
    : m_terminal(terminal), m_test(test), m_columns(std::move(columns)) {}

CProgressLine::~CProgressLine() {
    m_terminal.SetFooter("");
}

void CProgressLine::Update(uint64_t now) {
    if (m_test.GetStatus() != DS_PROGRESS) {
        return;
    }
    const CSample sample{now, m_test.GetProgressDone()};
    if (!m_begun.has_value()) {
        m_begun = now;
        m_shown = now;
        m_from = sample;
        return;
    }
    Measure(sample);
    const unsigned int columns = m_columns();
    if (columns == 0) {
        if (now - m_shown >= LINE_EVERY_MS) {
            m_shown = now;
            m_terminal.WriteUnlessOpen(Text(sample) + "\n");
        }
    } else if (now - *m_begun >= BAR_AFTER_MS && now - m_shown >= BAR_EVERY_MS) {
        m_shown = now;
        m_terminal.SetFooter(Bar(sample, columns));
    }
}

// The rate is that of the last second or so; over the first, what there is.
void CProgressLine::Measure(const CSample& sample) {
    const uint64_t elapsed = sample.time - m_from.time;
    if (sample.done < m_from.done) {
        // Some tests go back, to do a part once more.
        m_from = sample;
    } else if (elapsed >= SECOND_MS || (elapsed > 0 && m_from.time == *m_begun)) {
        m_rate = (sample.done - m_from.done) * SECOND_MS / elapsed;
        if (elapsed >= SECOND_MS) {
            m_from = sample;
        }
    }
}

// "rw-test: 45%, 460 of 1024, 120/s".
std::string CProgressLine::Text(const CSample& sample) const {
    std::string text = std::string(m_test.GetName()) + ": ";
    if (const std::string percent = PercentOf(m_test); !percent.empty()) {
        text += percent + ", ";
    }
    if (m_test.GetProgressTotal() == 0 && sample.done == 0) {
        return text + "running, " + std::to_string((sample.time - *m_begun) / SECOND_MS) + " s";
    }
    text += std::to_string(sample.done);
    if (m_test.GetProgressTotal() != 0) {
        text += " of " + std::to_string(m_test.GetProgressTotal());
    }
    return text + ", " + std::to_string(m_rate) + "/s";
}

// The same behind "[#########-----------] ".
std::string CProgressLine::Bar(const CSample& sample, unsigned int columns) const {
    std::string bar;
    if (const uint64_t total = m_test.GetProgressTotal(); total != 0) {
        const size_t filled = PerCent(sample.done, total, BAR_WIDTH);
        bar = "[" + std::string(filled, '#') + std::string(BAR_WIDTH - filled, '-') + "] ";
    }
    // The last column is left free: some terminals go to the next row behind it.
    return (bar + Text(sample)).substr(0, columns - 1);
}
