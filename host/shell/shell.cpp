#include "host/shell/shell.h"

#include <algorithm>
#include <cstdio>

#include "framework/diag_menu.h"
#include "host/diag_tree.h"
#include "host/exception_text.h"
#include "host/shell/builtins.h"
#include "host/shell/node_kind.h"
#include "host/shell/printable.h"
#include "host/shell/request.h"
#include "host/shell/signature.h"
#include "host/shell/usage_error.h"
#include "host/shell/word_splitter.h"

CShell::CShell(CDiagMenu& root, CTerminal& terminal, CInterrupt& interrupt)
    : m_current(&root), m_terminal(terminal), m_interrupt(interrupt) {}

EExitStatus CShell::Execute(std::string_view line, const std::string& origin) {
    m_origin = origin;
    EExitStatus status = EXIT_PASSED;
    try {
        const std::vector<std::string> words = SplitLine(line);
        if (!words.empty()) {
            status = ExecuteWords(words);
        }
    } catch (const CUsageError& e) {
        return Refuse(e.what(), origin);
    } catch (...) {
        Refuse(CurrentExceptionText(), origin);
        return EXIT_FAILED;
    }
    m_terminal.EndLine();
    return status;
}

EExitStatus CShell::ExecuteWords(const std::vector<std::string>& words) {
    const std::vector<std::string> arguments(words.begin() + 1, words.end());
    if (const CBuiltin* builtin = FindBuiltin(words.front())) {
        return RunBuiltin(*builtin, *this, arguments);
    }
    return RunNode(NodeAt(words.front()), arguments);
}

EExitStatus CShell::Refuse(const std::string& error, const std::string& origin) const {
    m_terminal.EndLine();
    std::fprintf(stderr, "%s%s%s\n", origin.c_str(), origin.empty() ? "" : ": ", error.c_str());
    return EXIT_USAGE;
}

EExitStatus CShell::ReportFailure(const CDiagObj& node, const std::string& text,
                                  EExitStatus status) const {
    Refuse(PathOf(node) + ": " + text, m_origin);
    return status;
}

CDiagObj& CShell::NodeAt(const std::string& path) const {
    if (path.empty()) {
        throw CUsageError("an empty word names no node");
    }
    if (CDiagObj* node = FindByPath(*m_current, path)) {
        return *node;
    }
    // Go along as far as the path exists, to say where it ends.
    size_t end = path.size();
    CDiagObj* last = nullptr;
    std::string missing = path;
    while (last == nullptr) {
        const size_t slash = path.rfind('/', end == 0 ? 0 : end - 1);
        if (slash == std::string::npos || end == 0) {
            last = m_current;
            break;
        }
        end = slash;
        missing = path.substr(slash + 1);
        last = FindByPath(*m_current, slash == 0 ? "/" : path.substr(0, slash));
    }
    missing = missing.substr(0, missing.find('/'));
    throw CUsageError(Printable(path) + ": there is no \"" + Printable(missing) + "\" in " +
                      PathOf(*last) + "; try ls" + (last == m_current ? " or help" : ""));
}

EExitStatus CShell::RunNode(CDiagObj& node, const std::vector<std::string>& arguments) {
    const bool is_test = node.GetNodeType() == TPROC;
    auto* menu = dynamic_cast<CDiagMenu*>(&node);
    if (menu == nullptr || (node.GetNodeType() != TFUNC && !is_test)) {
        throw CUsageError(PathOf(node) + " is " + DescribeType(node) + "; " + HintFor(node));
    }
    const CSignature signature = CSignature::Of(node);
    COutMsg request(is_test ? MSG_START : MSG_CALL, node.GetId());
    try {
        signature.Pack(request, arguments);
    } catch (const CUsageError& e) {
        throw CUsageError(PathOf(node) + ": " + e.what() + "\nusage: " + node.GetName() + " " +
                          signature.Synopsis());
    }

    const CForeground foreground(m_interrupt, *menu);
    CReply reply(*menu, request);
    m_terminal.EndLine();
    if (reply.Code() != MSG_SUCCESS) {
        return ReportFailure(node, FailureText(reply.Code()), reply.Status());
    }
    for (const CParamInfo& output : signature.outputs) {
        Print(output.name + " = " + output.type.Unpack(reply.Fields()) + "\n");
    }
    if (is_test) {
        Print(std::string(node.GetName()) + ": passed\n");
    }
    return EXIT_PASSED;
}
