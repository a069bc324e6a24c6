#include "host/shell/builtins/help.h"

#include <algorithm>
#include <sstream>

#include "framework/diag_obj.h"
#include "host/diag_tree.h"
#include "host/printable.h"
#include "host/shell/builtins/access.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/builtins/help_texts.h"
#include "host/shell/node_kind.h"
#include "host/shell/run/register_arguments.h"
#include "host/shell/run/signature.h"
#include "host/shell/shell.h"
#include "host/shell/table.h"

namespace {

// What every screen and every printed page holds.
constexpr size_t COLUMNS = 80;
constexpr const char* SYNTAX = "syntax";

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
    return text + CRegisterArguments(node, signature).Help();
}

// Lines of `columns` at the most, all but the first behind `indent`.
std::string Wrapped(const std::string& text, size_t indent, size_t columns) {
    std::string wrapped;
    size_t column = indent;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (column + 1 + word.size() > columns) {
            wrapped += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (!wrapped.empty()) {
            wrapped += ' ';
            ++column;
        }
        wrapped += word;
        column += word.size();
    }
    return wrapped + "\n";
}

std::string HelpOnShell() {
    size_t width = 0;
    for (const std::string& name : BuiltinNames()) {
        width = std::max(width, name.size());
    }
    std::string text =
        "NODE [ARGUMENT...] runs a command or a test: /i2c-0/probe, or probe at /i2c-0.\n"
        "help NODE explains a node, help BUILT-IN one of the shell's own commands below,\n"
        "help syntax how lines, words and numbers are written.\n";
    for (const char* group : HelpGroups()) {
        text += std::string("\n") + group + "\n";
        for (const CBuiltin& builtin : Builtins()) {
            const CHelpText* help = FindHelpText(builtin.name);
            if (help != nullptr && help->group == group) {
                const std::string name(builtin.name);
                text += "  " + name + std::string(width + 2 - name.size(), ' ') +
                        Wrapped(builtin.help, width + 4, COLUMNS);
            }
        }
    }
    return text;
}

std::string HelpOnBuiltin(const CBuiltin& builtin) {
    std::string text = UsageOf(builtin) + "\n" + Wrapped(builtin.help, 0, COLUMNS);
    if (const CHelpText* help = FindHelpText(builtin.name)) {
        text += help->text;
        CTable examples;
        for (const CHelpExample& example : help->examples) {
            examples.Add({std::string("  ") + example.command, example.does});
        }
        text += (help->examples.empty() ? "" : "examples:\n") + examples.Text(0);
    }
    return text;
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

}  // namespace

EExitStatus Help(CShell& shell, const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        shell.Print(HelpOnShell());
        return EXIT_PASSED;
    }
    const std::string& word = arguments.front();
    if (word == SYNTAX) {
        shell.Print(SyntaxHelp());
    } else if (const CBuiltin* builtin = FindBuiltin(word)) {
        shell.Print(HelpOnBuiltin(*builtin));
    } else {
        std::vector<std::string> words = BuiltinNames();
        words.emplace_back(SYNTAX);
        shell.Print(HelpOnNode(shell.NodeAt(word, words)));
    }
    return EXIT_PASSED;
}
