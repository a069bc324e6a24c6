#include "host/shell/builtins/raw_import.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "framework/diag_functions.h"
#include "host/exception_text.h"
#include "host/printable.h"
#include "host/shell/builtins/device_use.h"
#include "host/shell/builtins/raw_arguments.h"
#include "host/shell/builtins/raw_file.h"
#include "host/shell/builtins/raw_node.h"
#include "host/shell/builtins/raw_ranges.h"
#include "host/shell/input/question.h"
#include "host/shell/number.h"
#include "host/shell/run/run_note.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

namespace {

using CRanges = std::vector<CRawRange>;

// What became of the ranges that were to be written.
struct COutcome {
    CRanges verified;
    CRanges different;  // they read back as something else
    CRanges unread;     // written, but not read back
    CRanges doubtful;   // writing them failed
    CRanges unwritten;
};

std::string OutcomeText(const COutcome& outcome) {
    std::string text;
    const auto add = [&text](const char* what, const CRanges& ranges) {
        if (!ranges.empty()) {
            text += "\n  " + std::string(what) + ": " + JoinRanges(ranges);
        }
    };
    add("written and read back equal", outcome.verified);
    add("written but read back different", outcome.different);
    add("written but not read back", outcome.unread);
    add("in doubt", outcome.doubtful);
    add("not written", outcome.unwritten);
    return text;
}

// Changes a part of a device, as far as it differs.
class CImport {
  public:
    CImport(CShell& shell, const CRawNode& node, uint32_t offset, std::vector<byte_t> wanted)
        : m_shell(shell),
          m_node(node),
          m_offset(offset),
          m_page(std::max(node.Memory().GetRawPage(), 1U)),
          m_wanted(std::move(wanted)),
          m_present(m_wanted.size()),
          m_read_back(m_wanted) {}

    EExitStatus Run(bool ask) {
        std::unique_ptr<CDeviceUse> use;
        try {
            use = std::make_unique<CDeviceUse>(m_shell, m_node.Device(), DEV_LOCK_ACCESS);
            if (!use->IsHeld() || !ReadPresent()) {
                return AbortedEarly();
            }
        } catch (...) {
            return Fail("import failed, nothing was written: " + CurrentExceptionText(),
                        EXIT_FAILED);
        }
        const CRawPair change = {m_offset, {"old", m_present}, {"new", m_wanted}};
        m_ranges = FindDifferences(change, m_page);
        if (m_ranges.empty()) {
            m_shell.Print("nothing to change: " + m_node.Path() + " holds these " +
                          Count(m_wanted.size(), "byte") + " already\n");
            return EXIT_PASSED;
        }
        m_shell.Print(m_node.Path() + " differs in " + Count(m_ranges.size(), "range") + ":\n" +
                      ShowDifferences(change, m_ranges));
        switch (ask ? Ask(m_shell, "write " + Amount() + " to " + m_node.Path() + "? [y/N] ")
                    : EAnswer::YES) {
            case EAnswer::YES:
                break;
            case EAnswer::NO:
                m_shell.Print("nothing was written\n");
                return EXIT_ABORTED;
            case EAnswer::INTERRUPTED:
                return AbortedEarly();
        }
        Write();
        Verify();
        return Report();
    }

  private:
    bool ReadPresent() {
        CRunNote::Say("reading what it holds");
        return m_node.Read(m_offset, m_present, [this](size_t done) {
            CRunNote::Count(done, m_present.size());
            return !m_shell.IsInterrupted();
        });
    }

    void Write() {
        CRunNote::Say("writing");
        const uint64_t total = SizeOf(m_ranges);
        uint64_t done = 0;
        auto next = m_ranges.begin();
        try {
            for (; next != m_ranges.end() && !StopsAtCtrlC(); ++next) {
                CRunNote::Count(done, total);
                done += next->size;
                m_outcome.doubtful = {*next};
                m_node.Memory().WriteRaw(next->first,
                                         BytesOf(*next, m_offset, std::span(m_wanted)));
                m_outcome.doubtful.clear();
                m_outcome.unread.push_back(*next);
            }
        } catch (...) {
            m_error = CurrentExceptionText();
            ++next;
        }
        m_outcome.unwritten.assign(next, m_ranges.end());
    }

    // After Ctrl-C too: the operator wants to know what the device holds now.
    void Verify() {
        const bool late = m_aborted;
        const CRanges written = std::exchange(m_outcome.unread, {});
        CRunNote::Say("reading back");
        const uint64_t total = SizeOf(written);
        uint64_t done = 0;
        for (const CRawRange& range : written) {
            CRunNote::Count(done, total);
            done += range.size;
            if (IsLost() || (!late && StopsAtCtrlC()) || !ReadBack(range, false)) {
                m_outcome.unread.push_back(range);
            }
        }
        const CRanges doubtful = std::exchange(m_outcome.doubtful, {});
        for (const CRawRange& range : doubtful) {
            if (IsLost() || !ReadBack(range, true)) {
                m_outcome.doubtful.push_back(range);
            }
        }
    }

    // Puts the range where it belongs by what it holds; false when it cannot be
    // read. A read that failed is tried again: it says nothing of what was written.
    bool ReadBack(const CRawRange& range, bool doubtful) {
        constexpr unsigned int TRIES = 2;
        std::vector<byte_t> back(range.size);
        for (unsigned int tries = 1;; ++tries) {
            try {
                m_node.Read(range.first, back, [](size_t) { return true; });
                break;
            } catch (...) {
                if (tries == TRIES) {
                    ++m_unreadable;
                    m_error += (m_error.empty() ? "" : "; reading back: ") + CurrentExceptionText();
                    return false;
                }
            }
        }
        m_unreadable = 0;
        const auto holds = [&](std::span<const byte_t> bytes) {
            return std::equal(back.begin(), back.end(), BytesOf(range, m_offset, bytes).begin());
        };
        if (holds(m_wanted)) {
            m_outcome.verified.push_back(range);
        } else if (doubtful && holds(m_present)) {
            m_outcome.unwritten.insert(m_outcome.unwritten.begin(), range);
        } else {
            m_outcome.different.push_back(range);
            std::copy(back.begin(), back.end(),
                      BytesOf(range, m_offset, std::span(m_read_back)).begin());
        }
        return true;
    }

    // Ranges one after the other that cannot be read will not be read by trying
    // them all.
    bool IsLost() const { return m_unreadable > 1; }

    EExitStatus Report() const {
        if (m_outcome.verified.size() == m_ranges.size()) {
            m_shell.Print("wrote and verified " + Amount() + " of " + m_node.Path() + "\n");
            return EXIT_PASSED;
        }
        std::string text = m_aborted ? "import aborted" : "import failed";
        if (!m_error.empty()) {
            text += ": " + m_error;
        }
        text += OutcomeText(m_outcome);
        if (!m_outcome.different.empty()) {
            const CRawPair change = {m_offset, {"wrote", m_wanted}, {"read ", m_read_back}};
            text += "\nreads back as:\n" + ShowDifferences(change, FindDifferences(change, m_page));
            text.pop_back();  // the last newline
        }
        return Fail(text, m_aborted ? EXIT_ABORTED : EXIT_FAILED);
    }

    // Sets what Report says.
    bool StopsAtCtrlC() {
        m_aborted = m_aborted || m_shell.IsInterrupted();
        return m_aborted;
    }
    std::string Amount() const {
        return Count(SizeOf(m_ranges), "byte") + " in " + Count(m_ranges.size(), "range");
    }
    EExitStatus AbortedEarly() const {
        return Fail("import aborted, nothing was written", EXIT_ABORTED);
    }
    EExitStatus Fail(const std::string& text, EExitStatus status) const {
        return m_shell.ReportFailure(m_node.Device(), text, status);
    }

    CShell& m_shell;
    const CRawNode& m_node;
    const uint32_t m_offset;
    const uint32_t m_page;
    const std::vector<byte_t> m_wanted;
    std::vector<byte_t> m_present;
    std::vector<byte_t> m_read_back;  // where nothing was read back, what was wanted
    CRanges m_ranges;
    COutcome m_outcome;
    std::string m_error;
    bool m_aborted = false;
    unsigned int m_unreadable = 0;  // ranges in a row that could not be read back
};

uint32_t ParseOffset(const CRawNode& node, const std::string& word) {
    const uint64_t last = std::max(node.Size(), 1U) - 1;
    try {
        return static_cast<uint32_t>(ParseUnsigned(word, last, "0x0 to " + toString(last, VF_HEX)));
    } catch (const CUsageError& e) {
        throw CUsageError(node.Path() + ": offset: " + e.what());
    }
}

void RequireRoom(const CRawNode& node, uint32_t offset, const CRawInput& file,
                 const std::string& name) {
    const uint32_t room = node.Size() - offset;
    if (file.Size() > room) {
        throw CUsageError(Printable(name) + " holds " + Count(file.Size(), "byte") + ", but " +
                          node.Path() + " has only " + Count(room, "byte") + " from " +
                          toString(offset, VF_HEX) + " on");
    }
}

}  // namespace

EExitStatus Import(CShell& shell, const std::vector<std::string>& arguments) {
    const CRawArguments words("import", arguments, "--yes", 2, 3);
    const CRawNode node = CRawNode::At(shell, words[0]);
    if (node.Memory().IsRawReadOnly()) {
        throw CUsageError(node.Path() + " is read-only");
    }
    const uint32_t offset = words.Count() > 2 ? ParseOffset(node, words[2]) : 0;
    const CRawInput file(words[1]);
    RequireRoom(node, offset, file, words[1]);
    const bool ask = !words.HasOption();
    if (ask && !CanAsk()) {
        throw CUsageError(
            "import: nobody is there to be asked, standard input is no terminal; "
            "--yes writes without asking");
    }
    return CImport(shell, node, offset, file.Read()).Run(ask);
}
