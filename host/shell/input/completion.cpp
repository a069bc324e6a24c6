#include "host/shell/input/completion.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <span>

#include "host/diag_tree.h"
#include "host/printable.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/input/candidates.h"
#include "host/shell/input/file_candidates.h"
#include "host/shell/input/register_candidates.h"
#include "host/shell/input/word_at_cursor.h"
#include "host/shell/node_kind.h"
#include "host/shell/run/register_arguments.h"
#include "host/shell/run/signature.h"
#include "host/shell/shell.h"

namespace {

using CWords = std::span<const std::string>;

// Nodes that a word may name, beside the containers on the way to them.
bool IsAny(const CDiagObj& node) {
    return node.GetNodeType() != TPARAM;
}

bool IsRunnable(const CDiagObj& node) {
    return node.GetNodeType() == TFUNC || node.GetNodeType() == TPROC;
}

bool IsArray(const CDiagObj& node) {
    return node.GetNodeType() == TARRAY_I || node.GetNodeType() == TARRAY_A;
}

bool IsAccessible(const CDiagObj& node) {
    return node.GetNodeType() == TVALUE || IsArray(node);
}

bool IsNone(const CDiagObj&) {
    return false;
}

class CCompleter {
  public:
    CCompleter(const CShell& shell, const std::string& word)
        : m_shell(shell),
          m_folder(word.substr(0, word.rfind('/') + 1)),
          m_found(word.substr(m_folder.size())) {}

    // The word stands behind these of its command.
    void CompleteCommand(CWords before) {
        if (before.empty()) {
            for (const CBuiltin& builtin : Builtins()) {
                OfferWord(builtin.name);
            }
            OfferNodes(IsRunnable);
        } else if (const CBuiltin* builtin = FindBuiltin(before.front())) {
            CompleteArgument(*builtin, before.subspan(1));
        } else {
            CompleteArgument(m_shell.NodeAt(before.front()), before.subspan(1));
        }
    }

    CCompletion Result(std::string_view line, size_t cursor, const CWordAtCursor& at) {
        CCompletion result;
        result.begin = at.begin;
        result.text = line.substr(at.begin, cursor - at.begin);
        const std::string completed = m_folder + m_found.Common();
        if (m_found.EndsWord()) {
            const bool blank_follows = line.substr(cursor).starts_with(' ');
            result.text = Quoted(completed, at.quote, true) + (blank_follows ? "" : " ");
        } else if (m_found.Count() != 0 && completed != at.word) {
            result.text = Quoted(completed, at.quote, false);
        }
        result.count = m_found.Count();
        result.candidates = m_found.TakeListed();
        result.hint = m_hint;
        return result;
    }

  private:
    void CompleteArgument(const CBuiltin& builtin, CWords before) {
        const std::vector<CArgument>& arguments = builtin.arguments;
        if (arguments.empty() || before.size() >= builtin.max_arguments) {
            return;
        }
        const size_t index = std::min(before.size(), arguments.size() - 1);
        for (const char* word : arguments[index].words) {
            // Nobody gets an option that was not asked for.
            if (*word != '-' || m_found.Typed().starts_with('-')) {
                OfferWord(word);
            }
        }
        switch (arguments[index].kind) {
            case EArgument::WORD:
                if (m_found.Count() == 0) {
                    m_hint = UsageOf(builtin) + "\n" + builtin.help + "\n";
                }
                break;
            case EArgument::NODE:
                OfferNodes(IsAny);
                break;
            case EArgument::CONTAINER:
                OfferNodes(IsNone);
                break;
            case EArgument::ACCESS:
                OfferNodes(IsAccessible);
                break;
            case EArgument::MEMORY:
                OfferNodes(IsArray);
                break;
            case EArgument::PATHNAME:
                OfferFiles(m_found, m_folder);
                break;
            case EArgument::JOB:
                OfferJobs();
                break;
            case EArgument::LINE:
                CompleteCommand(before.subspan(index));
                break;
        }
    }

    void CompleteArgument(CDiagObj& node, CWords before) {
        if (!IsRunnable(node)) {
            return;
        }
        const CSignature signature = CSignature::Of(node);
        const std::string synopsis = signature.Synopsis();
        m_hint = "usage: " + PathOf(node) + (synopsis.empty() ? "" : " ") + synopsis + "\n";
        if (before.size() >= signature.inputs.size()) {
            m_hint += signature.inputs.empty() ? "it takes no arguments\n"
                                               : "all its arguments are given\n";
            return;
        }
        const CParamInfo& due = signature.inputs[before.size()];
        for (const std::string& word : EnumeratedWords(due.description)) {
            OfferWord(word);
        }
        if (m_folder.empty()) {
            OfferRegisters(m_found, CRegisterArguments(node, signature), due.name);
        }
        // All files at once tell less than what is due.
        const bool begun = !m_folder.empty() || !m_found.Typed().empty();
        if (begun && due.type.IsText() && due.name.find("file") != std::string::npos) {
            OfferFiles(m_found, m_folder);
        }
        if (m_found.Count() != 0) {
            m_hint.clear();
        } else {
            m_hint += due.name + ": " + Printable(due.description) + " (" + due.type.Range() +
                      (due.optional ? ", optional)\n" : ")\n");
        }
    }

    void OfferWord(std::string_view word) {
        if (m_folder.empty()) {
            m_found.Offer(word);
        }
    }

    void OfferNodes(bool (*wanted)(const CDiagObj&)) {
        const CDiagObj& folder = m_folder.empty() ? m_shell.Current() : m_shell.NodeAt(m_folder);
        if (m_found.Typed() == "..") {
            m_found.Offer("..", "/", "/");
        }
        for (const CDiagObj* child : folder.GetChildren()) {
            const bool container = IsContainer(*child);
            if (container || wanted(*child)) {
                m_found.Offer(child->GetName(), TypeMark(*child), container ? "/" : "");
            }
        }
    }

    void OfferJobs() {
        for (const auto& job : m_shell.Jobs().All()) {
            if (!job->Result().has_value()) {
                OfferWord(std::to_string(job->Number()));
            }
        }
    }

    const CShell& m_shell;
    const std::string m_folder;  // of the word, what stands before its last name
    CCandidates m_found;         // for that name
    std::string m_hint;
};

bool IsWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_';
}

bool IsListMark(char c) {
    return c == '/' || c == '|';
}

// The words of a text that is a list of at least two; else none.
std::vector<std::string> WordsOfList(std::string_view text) {
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (IsListMark(c) && !words.back().empty()) {
            words.emplace_back();
        } else if (IsWordCharacter(c)) {
            words.back() += c;
        } else {
            return {};
        }
    }
    return words.size() < 2 || words.back().empty() ? std::vector<std::string>() : words;
}

}  // namespace

CCompletion Complete(const CShell& shell, std::string_view line, size_t cursor) {
    const CWordAtCursor at = WordAtCursor(line, cursor);
    CCompleter completer(shell, at.word);
    if (!at.in_comment) {
        try {
            completer.CompleteCommand(at.before);
        } catch (const std::exception&) {
            // What stands before names nothing, so nothing fits behind it.
        }
    }
    return completer.Result(line, cursor, at);
}

std::vector<std::string> EnumeratedWords(std::string_view description) {
    std::vector<std::string> words = WordsOfList(description);
    for (size_t open = description.find('('); words.empty() && open != std::string_view::npos;
         open = description.find('(', open + 1)) {
        const size_t close = std::min(description.find(')', open), description.size());
        words = WordsOfList(description.substr(open + 1, close - open - 1));
    }
    return words;
}
