#include "host/shell/builtins/help.h"

#include "framework/diag_functions.h"
#include "framework/diag_obj.h"
#include "host/diag_tree.h"
#include "host/shell/builtins/access.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/node_kind.h"
#include "host/shell/printable.h"
#include "host/shell/run/signature.h"

namespace {

std::string ParamLine(const CParamInfo& param) {
    return "  " + param.name + "  " + Printable(param.description) + " (" + param.type.Range() +
           (param.optional ? ", optional)\n" : ")\n");
}

std::string HelpOnRunnable(CDiagObj& node) {
    const CSignature signature = CSignature::Of(node);
    const std::string synopsis = signature.Synopsis();
    std::string text = "usage: " + PathOf(node) + (synopsis.empty() ? "" : " " + synopsis) + "\n";
    if (!signature.inputs.empty()) {
        text += "arguments:\n";
        for (const CParamInfo& input : signature.inputs) {
            text += ParamLine(input);
        }
    }
    if (!signature.outputs.empty()) {
        text += "answers:\n";
        for (const CParamInfo& output : signature.outputs) {
            text += ParamLine(output);
        }
    }
    return text;
}

}  // namespace

std::string HelpOnShell() {
    std::string text =
        "NODE [ARGUMENT...] runs a command or a test; NODE is a path, absolute (/i2c-0/probe) or\n"
        "relative to the node in the prompt. Numbers are decimal or 0x hexadecimal; 'text' and\n"
        "\"text\" may hold blanks. A # starts a comment; a & at the end of the line runs it in "
        "the\n"
        "background. The shell's own commands:\n\n";
    for (const CBuiltin& builtin : Builtins()) {
        text += "  " + std::string(builtin.name) + " " + builtin.synopsis + "\n      " +
                builtin.help + "\n";
    }
    return text + "\nhelp NODE explains a node and its arguments.\n";
}

std::string HelpOnBuiltin(const CBuiltin& builtin) {
    return "usage: " + std::string(builtin.name) + " " + builtin.synopsis + "\n" + builtin.help +
           "\n";
}

std::string HelpOnNode(CDiagObj& node) {
    std::string text = PathOf(node) + ", " + DescribeType(node);
    if (*node.GetDescription() != '\0') {
        text += std::string(": ") + Printable(node.GetDescription());
    }
    text += "\n";
    switch (node.GetNodeType()) {
        case TFUNC:
        case TPROC:
            return text + HelpOnRunnable(node);
        case TVALUE:
        case TARRAY_I:
        case TARRAY_A:
            return text + HelpOnAccess(node);
        default:
            return text + HintFor(node) + "\n";
    }
}
