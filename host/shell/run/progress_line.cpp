#include "host/shell/run/progress_line.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <utility>

#include "framework/diag_test_base.h"
#include "host/shell/duration_text.h"
#include "host/shell/run/progress_row.h"
#include "host/shell/screen_text.h"

namespace {

constexpr size_t BAR_WIDTH = 20;

uint64_t ShareOf(const CRunNote::CAmount& amount, uint64_t whole) {
    // A test may do more than it announced.
    return static_cast<uint64_t>(static_cast<long double>(std::min(amount.done, amount.total)) *
                                 static_cast<long double>(whole) /
                                 static_cast<long double>(amount.total));
}

// "[#########-----------]".
std::string BarOf(const CRunNote::CAmount& amount) {
    const size_t filled = ShareOf(amount, BAR_WIDTH);
    return "[" + std::string(filled, '#') + std::string(BAR_WIDTH - filled, '-') + "]";
}

// "14746 of 32768".
std::string CountOf(const CRunNote::CAmount& amount) {
    std::string text = std::to_string(amount.done);
    if (amount.total != 0) {
        text += " of " + std::to_string(amount.total);
    }
    return text;
}

// "0:09 left", "1:00:09 left".
std::string LeftText(uint64_t seconds) {
    std::array<char, 48> text{};
    if (seconds < 3600) {
        std::snprintf(text.data(), text.size(), "%" PRIu64 ":%02" PRIu64 " left", seconds / 60,
                      seconds % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%" PRIu64 ":%02" PRIu64 ":%02" PRIu64 " left",
                      seconds / 3600, seconds / 60 % 60, seconds % 60);
    }
    return text.data();
}

}  // namespace

std::string PercentOf(const CRunNote::CAmount& amount) {
    return amount.total == 0 ? "" : std::to_string(ShareOf(amount, 100)) + "%";
}

CProgressLine::CProgressLine(std::string name, const CDiagTestBase* test, const CRunNote& note)
    : m_name(std::move(name)), m_test(test), m_note(note) {}

bool CProgressLine::Works() const {
    return m_test == nullptr || m_test->GetStatus() == DS_PROGRESS;
}

void CProgressLine::Look(uint64_t now) {
    m_now = now;
    if (!m_since.has_value()) {
        m_since = now;
    }
    if (!Works()) {
        return;
    }
    if (!m_begun.has_value()) {
        m_begun = now;
        m_line_told = now;
    }
    m_amount = m_test != nullptr ? CRunNote::AmountOf(*m_test) : m_note.Amount();
    m_rate.Look(now, m_amount.done);
}

bool CProgressLine::IsDue() const {
    if (m_stopping) {
        return true;
    }
    if (m_test != nullptr && m_begun.has_value()) {
        return m_now - *m_begun >= BAR_AFTER_MS;
    }
    return m_since.has_value() && m_now - *m_since >= STATUS_AFTER_MS;
}

std::string CProgressLine::Figures() const {
    if (m_amount.total == 0 && m_amount.done == 0) {
        return "";
    }
    const std::string percent = PercentOf(m_amount);
    return (percent.empty() ? "" : percent + ", ") + CountOf(m_amount);
}

CProgressRow CProgressLine::MakeRow() const {
    CProgressRow row(m_name, OnOneRow(m_note.Text()));
    if (m_stopping) {
        row[CProgressRow::STATE] = "stopping";
    }
    if (m_amount.total == 0 && m_amount.done == 0) {
        row[CProgressRow::TIME] =
            ClockText(std::chrono::milliseconds(m_now - m_since.value_or(m_now)));
        return row;
    }
    row[CProgressRow::COUNT] = CountOf(m_amount);
    row[CProgressRow::RATE] = std::to_string(m_rate.PerSecond()) + "/s";
    if (m_amount.total != 0) {
        row[CProgressRow::BAR] = BarOf(m_amount);
        row[CProgressRow::PERCENT] = PercentOf(m_amount);
    }
    // What stops goes another way than it would have gone.
    if (m_amount.done < m_amount.total && !m_stopping) {
        if (const auto seconds = m_rate.SecondsFor(m_amount.total - m_amount.done)) {
            row[CProgressRow::LEFT] = LeftText(*seconds);
        }
    }
    return row;
}

std::string CProgressLine::Row(unsigned int columns) const {
    return MakeRow().Within(columns);
}

std::optional<std::string> CProgressLine::TakeDueLine() {
    const bool tells = m_test != nullptr || m_note.IsOfLongWork();
    if (!tells || !m_begun.has_value() || m_now - m_line_told < LINE_EVERY_MS) {
        return std::nullopt;
    }
    m_line_told = m_now;
    CProgressRow row = MakeRow();
    row[CProgressRow::BAR].clear();
    return row.Whole();
}
