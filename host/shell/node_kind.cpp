#include "host/shell/node_kind.h"

#include <array>

#include "framework/diag_obj.h"
#include "host/diag_tree.h"

namespace {

enum class EUse { GO_THERE, PEEK, RUN, NONE };

struct CKind {
    const char* text;
    const char* mark;
    EUse use;
};

// By ENodeType.
constexpr std::array<CKind, TSCRIPT + 1> KINDS = {{
    {"an empty node", "", EUse::NONE},
    {"a dump", "", EUse::NONE},
    {"a slot", "/", EUse::GO_THERE},
    {"a menu", "/", EUse::GO_THERE},
    {"a device", "/", EUse::GO_THERE},
    {"a value", "=", EUse::PEEK},
    {"an array by index", "[]", EUse::PEEK},
    {"an array by address", "[]", EUse::PEEK},
    {"a command", "", EUse::RUN},
    {"a test", "!", EUse::RUN},
    {"a parameter", "", EUse::NONE},
    {"a script", "", EUse::RUN},
}};

const CKind& KindOf(const CDiagObj& node) {
    const auto type = static_cast<size_t>(node.GetNodeType());
    return KINDS[type < KINDS.size() ? type : 0];
}

}  // namespace

std::string DescribeType(const CDiagObj& node) {
    return KindOf(node).text;
}

std::string TypeName(const CDiagObj& node) {
    const std::string text = DescribeType(node);
    return text.substr(text.find(' ') + 1);
}

std::string TypeMark(const CDiagObj& node) {
    return KindOf(node).mark;
}

bool IsContainer(const CDiagObj& node) {
    return KindOf(node).use == EUse::GO_THERE;
}

std::string HintFor(const CDiagObj& node) {
    switch (KindOf(node).use) {
        case EUse::GO_THERE:
            return "cd " + PathOf(node) + " goes there, ls " + PathOf(node) + " lists it";
        case EUse::PEEK:
            return "peek " + PathOf(node) + " reads it";
        default:
            return "help " + PathOf(node) + " explains it";
    }
}
