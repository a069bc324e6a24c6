#include "host/shell/builtins/access.h"

#include <memory>

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "host/diag_tree.h"
#include "host/shell/builtins/device_use.h"
#include "host/shell/node_kind.h"
#include "host/shell/run/request.h"
#include "host/shell/shell.h"
#include "host/shell/usage_error.h"
#include "host/shell/value_type.h"

namespace {

// Elements asked for in one request: whole rows that fit the answer, whatever
// the element's width (position and element take 16 bytes at the most).
constexpr uint64_t ROW = 16;
constexpr uint64_t ELEMENTS_PER_REQUEST = 3 * ROW;

// A value or an array, as it describes itself.
class CTarget {
  public:
    explicit CTarget(CDiagObj& node) : m_node(Checked(node)) {
        COutMsg answer;
        node.Query(answer);
        CInMsg fields(answer);
        fields >> m_vt;
        if (IsArray()) {
            fields >> m_first >> m_last;
        }
        uint8_t read_only = 0;
        fields >> read_only;
        m_read_only = read_only != 0;
    }

    CDiagMenu& Node() const { return m_node; }
    bool IsArray() const { return m_node.GetNodeType() != TVALUE; }
    CValueType Type() const { return CValueType(m_vt); }
    bool IsReadOnly() const { return m_read_only; }
    uint64_t First() const { return m_first; }
    uint64_t Last() const { return m_last; }
    std::string Position(uint64_t pos) const {
        return m_node.GetNodeType() == TARRAY_I ? toString(pos, 0) : toString(pos, VF_HEX);
    }
    std::string Positions() const { return Position(m_first) + " to " + Position(m_last); }

  private:
    static CDiagMenu& Checked(CDiagObj& node) {
        const ENodeType type = node.GetNodeType();
        auto* menu = dynamic_cast<CDiagMenu*>(&node);
        if (menu == nullptr || (type != TVALUE && type != TARRAY_I && type != TARRAY_A)) {
            throw CUsageError(PathOf(node) + " is " + DescribeType(node) +
                              "; peek and poke take values and arrays");
        }
        return *menu;
    }

    CDiagMenu& m_node;
    uint8_t m_vt = 0;
    uint64_t m_first = 0;
    uint64_t m_last = 0;
    bool m_read_only = false;
};

struct CRange {
    uint64_t first;
    uint64_t last;
};

// "POSITION" or "FIRST..LAST", inside the array.
CRange ParseRange(const CTarget& target, const std::string& word) {
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
    CRowPrinter(CShell& shell, const CTarget& target) : m_shell(shell), m_target(target) {}
    ~CRowPrinter() { m_shell.Terminal().EndLine(); }
    CRowPrinter(const CRowPrinter&) = delete;
    CRowPrinter& operator=(const CRowPrinter&) = delete;

    void Print(uint64_t pos, const std::string& element) {
        if (!m_begun || pos % ROW == 0) {
            m_shell.Terminal().EndLine();
            const std::string position = m_target.Position(pos);
            const size_t width = m_target.Position(m_target.Last()).size();
            m_shell.Print(std::string(width - position.size(), ' ') + position + ": ");
            m_begun = true;
        }
        // The row's head tells already that its numbers are hexadecimal.
        m_shell.Print(" " + (element.rfind("0x", 0) == 0 ? element.substr(2) : element));
    }

  private:
    CShell& m_shell;
    const CTarget& m_target;
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
EExitStatus ReportAborted(const CShell& shell, const CTarget& target) {
    return shell.ReportFailure(target.Node(), "aborted", EXIT_ABORTED);
}

EExitStatus PeekValue(CShell& shell, const CTarget& target) {
    CReply reply(target.Node(), COutMsg(MSG_PEEKV, target.Node().GetId()));
    if (reply.Code() != MSG_SUCCESS) {
        return shell.ReportFailure(target.Node(), "peek " + FailureText(reply.Code()),
                                   reply.Status());
    }
    shell.Print(std::string(target.Node().GetName()) + " = " +
                target.Type().Unpack(reply.Fields()) + "\n");
    return EXIT_PASSED;
}

EExitStatus PeekArray(CShell& shell, const CTarget& target, const CRange& range) {
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
            rows.Print(pos, target.Type().Unpack(reply.Fields()));
        }
        if (last == range.last) {
            return EXIT_PASSED;
        }
        first = last + 1;
    }
    return EXIT_ABORTED;
}

}  // namespace

EExitStatus Peek(CShell& shell, const std::vector<std::string>& arguments) {
    const CTarget target(shell.NodeAt(arguments[0]));
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
    const CTarget target(shell.NodeAt(arguments[0]));
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
    const CTarget target(node);
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
