#include "host/shell/builtins/access.h"

#include <memory>

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "host/diag_tree.h"
#include "host/shell/builtins/access_target.h"
#include "host/shell/builtins/device_use.h"
#include "host/shell/number.h"
#include "host/shell/run/request.h"
#include "host/shell/run/run_note.h"
#include "host/shell/shell.h"
#include "host/shell/value_type.h"
#include "host/usage_error.h"

namespace {

// Elements asked for in one request: whole rows that fit the answer, whatever
// the element's width (position and element take 16 bytes at the most).
constexpr uint64_t ROW = 16;
constexpr uint64_t ELEMENTS_PER_REQUEST = 3 * ROW;

struct CRange {
    uint64_t first;
    uint64_t last;
};

// "POSITION" or "FIRST..LAST", inside the array.
CRange ParseRange(const CAccessTarget& target, const std::string& word) {
    const auto position = [&target](const std::string& text) {
        const uint64_t pos = ParseUnsigned(text, target.Last(), target.Positions());
        if (pos < target.First()) {
            throw CUsageError(text + " is out of range, " + target.Positions() + " fits");
        }
        return pos;
    };
    try {
        const size_t dots = word.find("..");
        CRange range{};
        range.first = position(word.substr(0, dots));
        range.last = dots == std::string::npos ? range.first : position(word.substr(dots + 2));
        if (range.last < range.first) {
            throw CUsageError("the range " + word + " runs backwards; write it " +
                              word.substr(dots + 2) + ".." + word.substr(0, dots));
        }
        return range;
    } catch (const CUsageError& e) {
        throw CUsageError(PathOf(target.Node()) + ": position: " + e.what());
    }
}

// Prints elements in rows, each headed by the position of its first element.
class CRowPrinter {
  public:
    CRowPrinter(CShell& shell, const CAccessTarget& target) : m_shell(shell), m_target(target) {}
    ~CRowPrinter() { m_shell.Terminal().EndLine(); }
    CRowPrinter(const CRowPrinter&) = delete;
    CRowPrinter& operator=(const CRowPrinter&) = delete;

    void Print(uint64_t pos, const std::string& element) {
        if (!m_begun || pos % ROW == 0) {
            m_shell.Terminal().EndLine();
            const std::string position = m_target.PositionText(pos);
            const size_t width = m_target.PositionText(m_target.Last()).size();
            m_shell.Terminal().Write(std::string(width - position.size(), ' ') + position + ": ");
            m_begun = true;
        }
        // The row's head tells already that its numbers are hexadecimal.
        m_shell.Terminal().Write(" " + (element.rfind("0x", 0) == 0 ? element.substr(2) : element));
    }

  private:
    CShell& m_shell;
    const CAccessTarget& m_target;
    bool m_begun = false;
};

// Elements of an array are moved to and from its device, if it has one; values
// keep what they show.
std::unique_ptr<CDeviceUse> UseDeviceOf(const CShell& shell, const CDiagMenu& array) {
    const CDiagDevice* device = array.GetParentDevice();
    return device == nullptr ? nullptr
                             : std::make_unique<CDeviceUse>(shell, *device, DEV_LOCK_PROTECT);
}

// Ctrl-C came while the device was waited for.
EExitStatus ReportAborted(const CShell& shell, const CAccessTarget& target) {
    return shell.ReportFailure(target.Node(), "aborted", EXIT_ABORTED);
}

EExitStatus PeekValue(CShell& shell, const CAccessTarget& target) {
    CReply reply(target.Node(), COutMsg(MSG_PEEKV, target.Node().GetId()));
    if (reply.Code() != MSG_SUCCESS) {
        return shell.ReportFailure(target.Node(), "peek " + FailureText(reply.Code()),
                                   reply.Status());
    }
    const CValue value = target.Type().Unpack(reply.Fields());
    shell.Recorder().NoteOutput(target.Node().GetName(), target.Type(), value);
    shell.Terminal().Write(std::string(target.Node().GetName()) + " = " + value.text + "\n");
    return EXIT_PASSED;
}

EExitStatus PeekArray(CShell& shell, const CAccessTarget& target, const CRange& range) {
    const auto use = UseDeviceOf(shell, target.Node());
    if (use != nullptr && !use->IsHeld()) {
        return ReportAborted(shell, target);
    }
    CRowPrinter rows(shell, target);
    uint64_t first = range.first;
    while (!shell.IsInterrupted()) {
        // Up to the end of a row, so that requests and rows end together.
        const uint64_t to_row_end = ELEMENTS_PER_REQUEST - 1 - first % ROW;
        const uint64_t last = range.last - first <= to_row_end ? range.last : first + to_row_end;
        COutMsg request(MSG_PEEKV, target.Node().GetId());
        request << first << last;
        CReply reply(target.Node(), request);
        if (reply.Code() != MSG_SUCCESS) {
            return shell.ReportFailure(target.Node(), "peek " + FailureText(reply.Code()),
                                       reply.Status());
        }
        while (reply.Fields().GetLen() != 0) {
            uint64_t pos = 0;
            reply.Fields() >> pos;
            const CValue value = target.Type().Unpack(reply.Fields());
            shell.Recorder().NoteOutput(
                std::string(target.Node().GetName()) + "[" + target.PositionText(pos) + "]",
                target.Type(), value);
            rows.Print(pos, value.text);
        }
        if (last == range.last) {
            return EXIT_PASSED;
        }
        // So that progress can show below it.
        shell.Terminal().EndLine();
        first = last + 1;
        CRunNote::Count(first - range.first, range.last - range.first + 1);
    }
    return EXIT_ABORTED;
}

}  // namespace

EExitStatus Peek(CShell& shell, const std::vector<std::string>& arguments) {
    const CAccessTarget target(shell.NodeAt(arguments[0]));
    if (!target.IsArray()) {
        if (arguments.size() > 1) {
            throw CUsageError(PathOf(target.Node()) + " is a value and has no positions");
        }
        return PeekValue(shell, target);
    }
    const CRange whole{target.First(), target.Last()};
    return PeekArray(shell, target,
                     arguments.size() > 1 ? ParseRange(target, arguments[1]) : whole);
}

EExitStatus Poke(CShell& shell, const std::vector<std::string>& arguments) {
    const CAccessTarget target(shell.NodeAt(arguments[0]));
    const size_t needed = target.IsArray() ? 3 : 2;
    if (arguments.size() != needed) {
        throw CUsageError("usage: poke " + PathOf(target.Node()) +
                          (target.IsArray() ? " POSITION|FIRST..LAST VALUE" : " VALUE"));
    }
    COutMsg request(MSG_POKEV, target.Node().GetId());
    try {
        target.Type().Pack(request, arguments.back());
    } catch (const CUsageError& e) {
        throw CUsageError(PathOf(target.Node()) + ": value: " + e.what());
    } catch (const CDiagException&) {
        throw CUsageError(PathOf(target.Node()) + ": value: too long, " +
                          std::to_string(CDiagMsg::PAYLOAD_SIZE) + " bytes at the most");
    }
    std::unique_ptr<CDeviceUse> use;
    if (target.IsArray()) {
        const CRange range = ParseRange(target, arguments[1]);
        request << range.first << range.last;
        use = UseDeviceOf(shell, target.Node());
        if (use != nullptr && !use->IsHeld()) {
            return ReportAborted(shell, target);
        }
    }
    CReply reply(target.Node(), request);
    if (reply.Code() != MSG_SUCCESS) {
        return shell.ReportFailure(target.Node(), "poke " + FailureText(reply.Code()),
                                   reply.Status());
    }
    return EXIT_PASSED;
}

std::string HelpOnAccess(CDiagObj& node) {
    const CAccessTarget target(node);
    const std::string path = PathOf(node);
    const std::string where = target.IsArray() ? " [POSITION|FIRST..LAST]" : "";
    std::string text = target.Type().Name() + (target.IsReadOnly() ? ", read-only" : "");
    if (target.IsArray()) {
        text += ", positions " + target.Positions();
    }
    text += "\nusage: peek " + path + where + "\n";
    if (!target.IsReadOnly()) {
        text +=
            "       poke " + path + (target.IsArray() ? " POSITION|FIRST..LAST" : "") + " VALUE\n";
    }
    return text;
}
