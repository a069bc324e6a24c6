#include "host/shell/builtins/node_details.h"

#include <array>

#include "framework/diag_test_base.h"
#include "host/shell/builtins/access_target.h"
#include "host/shell/node_kind.h"
#include "host/shell/run/request.h"
#include "host/shell/screen_text.h"

namespace {

// A long text is worth its room where it is peeked.
constexpr size_t LONGEST_VALUE = 32;
constexpr const char* UNREADABLE = "?";

// By ETestStatus.
constexpr std::array<const char*, DS_SKIPPED + 1> TEST_STATES = {
    "untested", "waiting", "setting up", "running", "passed", "failed", "failed, not cleaned up",
    "aborted",  "skipped"};

std::string StateOf(const CDiagObj& node) {
    const auto* test = dynamic_cast<const CDiagTestBase*>(&node);
    const size_t status = test == nullptr ? TEST_STATES.size() : size_t{test->GetStatus()};
    return status < TEST_STATES.size() ? TEST_STATES[status] : UNREADABLE;
}

std::string ValueOf(const CAccessTarget& target) {
    try {
        CReply reply(target.Node(), COutMsg(MSG_PEEKV, target.Node().GetId()));
        if (reply.Code() == MSG_SUCCESS) {
            return Shortened(target.Type().Unpack(reply.Fields()).text, LONGEST_VALUE);
        }
    } catch (...) {
        // A listing goes on whatever one of its nodes does.
    }
    return UNREADABLE;
}

}  // namespace

CNodeDetails DetailsOf(CDiagObj& node) {
    CNodeDetails details{TypeName(node), ""};
    if (CAccessTarget::Is(node)) {
        const CAccessTarget target(node);
        details.type = target.Type().Name() + (target.IsReadOnly() ? " ro" : "");
        if (target.IsArray()) {
            details.value =
                target.PositionText(target.First()) + ".." + target.PositionText(target.Last());
        } else if (!target.IsTraced()) {
            details.value = ValueOf(target);
        }
    } else if (node.GetNodeType() == TPROC) {
        details.value = StateOf(node);
    }
    return details;
}
