#include "host/shell/shell.h"

#include <algorithm>
#include <cstdio>

#include "framework/diag_exception.h"
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
    : m_root(root), m_current_id(root.GetId()), m_terminal(terminal), m_interrupt(interrupt) {}

CDiagObj& CShell::Current() const {
    CDiagObj* node = FindById(m_root, m_current_id);
    return node != nullptr ? *node : m_root;
}

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
    CDiagObj& current = Current();
    if (CDiagObj* node = FindByPath(current, path)) {
        return *node;
    }
    // Go along as far as the path exists, to say where it ends.
    CDiagObj* last = path.front() == '/' ? &m_root : &current;
    std::string missing;
    for (size_t begin = 0; missing.empty(); begin = path.find('/', begin) + 1) {
        const std::string name = path.substr(begin, path.find('/', begin) - begin);
        CDiagObj* next = name.empty() ? last : FindByPath(*last, name);
        if (next == nullptr) {
            missing = name;
        } else {
            last = next;
        }
    }
    throw CUsageError(Printable(path) + ": there is no \"" + Printable(missing) + "\" in " +
                      PathOf(*last) + "; try ls" + (last == &current ? " or help" : ""));
}

void CShell::PrintOutputs(const CDiagObj& node, const CSignature& signature, CReply& reply) const {
    // A node may leave outputs out, and after a failure most do.
    for (const CParamInfo& output : signature.outputs) {
        if (reply.Fields().GetLen() == 0) {
            return;
        }
        try {
            Print(output.name + " = " + output.type.Unpack(reply.Fields()) + "\n");
        } catch (const CDiagException& e) {
            Refuse(PathOf(node) + ": answer " + output.name + ": " + e.what(), m_origin);
            return;
        }
    }
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
    PrintOutputs(node, signature, reply);
    switch (reply.Code()) {
        case MSG_SUCCESS:
            if (is_test) {
                Print(std::string(node.GetName()) + ": passed\n");
            }
            break;
        case MSG_SKIPPED:
            Print(std::string(node.GetName()) + ": skipped\n");
            break;
        default:
            return ReportFailure(node, FailureText(reply.Code()), reply.Status());
    }
    return EXIT_PASSED;
}
