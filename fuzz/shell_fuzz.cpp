// Whole lines, carried out on a small tree. Whatever comes, a line ends with an
// exit status, one that is no line runs nothing, errors are plain text, and each
// object that --json prints is one line of JSON.
#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "framework/diag_array.h"
#include "framework/diag_device.h"
#include "framework/diag_exception.h"
#include "framework/diag_func.h"
#include "framework/diag_param.h"
#include "framework/diag_test.h"
#include "framework/diag_value.h"
#include "fuzz/fuzz_target.h"
#include "host/diag_log.h"
#include "host/log_filter.h"
#include "host/shell/input/command_line.h"
#include "host/shell/report/json_report.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/shell.h"
#include "host/terminal.h"
#include "host/usage_error.h"

namespace {

// A stream into a string.
class CCaught {
  public:
    CCaught() : m_stream(::open_memstream(&m_text, &m_size)) {}
    ~CCaught() {
        std::fclose(m_stream);
        std::free(m_text);
    }
    CCaught(const CCaught&) = delete;
    CCaught& operator=(const CCaught&) = delete;

    std::FILE* Stream() const { return m_stream; }
    std::string_view Text() const {
        std::fflush(m_stream);
        return {m_text, m_size};
    }

  private:
    char* m_text = nullptr;
    size_t m_size = 0;
    std::FILE* m_stream;
};

// Runs of the tree's commands and tests, which jobs make on threads of their own.
std::atomic<unsigned int> g_calls{0};

class CAddCmd : public CDiagFunc {
  public:
    CAddCmd() : CDiagFunc("add", "adds", 0) {
        AddChild(new CDiagParam(VT_UINT16, "a", "first number", PT_IN), NO_SORT);
        AddChild(new CDiagParam(VT_STRING, "text", "any text", PT_IN | PT_OPTIONAL), NO_SORT);
        AddChild(new CDiagParam(VT_UINT8, "b", "second number", PT_IN | PT_OPTIONAL), NO_SORT);
        AddChild(new CDiagParam(VT_UINT32, "sum", "their sum", PT_OUT), NO_SORT);
        AddChild(new CDiagParam(VT_STRING, "said", "the text", PT_OUT), NO_SORT);
    }
    void Invoke(CInMsg& in, COutMsg& out) override {
        ++g_calls;
        uint16_t a = 0;
        uint8_t b = 0;
        std::string text;
        in >> a;
        if (in.GetLen() != 0) {
            in >> text;
        }
        if (in.GetLen() != 0) {
            in >> b;
        }
        SendLog(LW_PRINT, "adding %u to \"%s\"\n", a, text.c_str());
        out << uint8_t{MSG_SUCCESS} << static_cast<uint32_t>(a + b) << text;
    }
};

class CFailCmd : public CDiagFunc {
  public:
    CFailCmd() : CDiagFunc("fail", "fails", 0) {}
    void Invoke(CInMsg&, COutMsg&) override {
        ++g_calls;
        SendLog(LW_PRINT, "half a line");
        throw CDiagException("out of order");
    }
};

class CCheckTest : public CDiagTest {
  public:
    CCheckTest() : CDiagTest("check", "a test") {
        AddChild(new CDiagParam(VT_STRING, "how", "pass, fail or skip", PT_IN), NO_SORT);
    }
    bool TestSetup(CInMsg& in) override {
        in >> m_how;
        return true;
    }
    ETestStatus TestRun(COutMsg&) override {
        ++g_calls;
        if (m_how == "skip") {
            return DS_SKIPPED;
        }
        return m_how == "pass" ? DS_PASSED : DS_FAILED;
    }

  private:
    std::string m_how;
};

class CCells : public CDiagArray<uint8_t> {
  public:
    CCells()
        : CDiagArray<uint8_t>(TARRAY_A, "memory", "some bytes", 0, 255, false, VT_UINT8 | VF_HEX) {}
    void Set(uint64_t pos, const uint8_t& value) override { m_cells.at(pos) = value; }
    uint8_t Get(uint64_t pos) override { return m_cells.at(pos); }

  private:
    std::array<uint8_t, 256> m_cells{};
};

std::unique_ptr<CDiagMenu> MakeTree() {
    auto root = std::make_unique<CDiagMenu>(TMENU, "board", "a small board");
    auto* device = new CDiagDevice("dev", "a device", TDEVICE);
    root->AddChild(device, CDiagObj::NO_SORT);
    root->AddChild(new CDiagMenu(TMENU, "other", "a menu"), CDiagObj::NO_SORT);
    device->AddChild(new CAddCmd, CDiagObj::NO_SORT);
    device->AddChild(new CFailCmd, CDiagObj::NO_SORT);
    device->AddChild(new CCheckTest, CDiagObj::NO_SORT);
    device->AddChild(new CDiagMemValue<std::string>("name", "a text", false, VT_STRING, "first"),
                     CDiagObj::NO_SORT);
    device->AddChild(new CDiagMemValue<uint32_t>("fixed", "a number", true, VT_UINT32, 7),
                     CDiagObj::NO_SORT);
    device->AddChild(new CCells, CDiagObj::NO_SORT);
    return root;
}

std::optional<std::vector<CCommand>> Parsed(std::string_view line) {
    try {
        return ParseLine(line);
    } catch (const CUsageError&) {
        return std::nullopt;
    }
}

// What takes its time, or leaves the shell for files, is left out; what runs other
// commands runs few of them.
bool MayRun(std::string_view line, unsigned int depth);

bool MayRun(const std::vector<std::string>& words, unsigned int depth) {
    static constexpr std::array LEFT_OUT = {"export", "import", "sleep", "source"};
    const std::string& name = words.front();
    if (name == "repeat" && words.size() > 2) {
        return depth > 0 && words[1].size() == 1 &&
               (words.size() == 3 ? MayRun(words[2], depth - 1)
                                  : MayRun({words.begin() + 2, words.end()}, depth - 1));
    }
    return std::find(LEFT_OUT.begin(), LEFT_OUT.end(), name) == LEFT_OUT.end();
}

bool MayRun(std::string_view line, unsigned int depth) {
    const auto commands = Parsed(line);
    return !commands.has_value() ||
           std::all_of(commands->begin(), commands->end(),
                       [depth](const CCommand& command) { return MayRun(command.words, depth); });
}

void RequireJsonLines(std::string_view text) {
    while (!text.empty()) {
        const size_t end = text.find('\n');
        Require(end != std::string_view::npos, "an object ends its line");
        Require(nlohmann::json::accept(text.substr(0, end)), "an object is JSON");
        text.remove_prefix(end + 1);
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view line = TextOf(data, size);
    if (!MayRun(line, 2)) {
        return 0;
    }
    static CInterrupt interrupt;
    const CCaught printed;
    const CCaught errors;
    const CCaught objects;
    const auto commands = Parsed(line);
    const std::unique_ptr<CDiagMenu> tree = MakeTree();
    CTerminal terminal(printed.Stream(), errors.Stream());
    CLogFilter filter;
    CTerminalLog log(terminal, filter);
    const CLogSinkScope sink(log);
    CJsonReport json(objects.Stream());
    g_calls = 0;
    {
        CShell shell(*tree, terminal, interrupt, filter);
        shell.Recorder().AddObserver(json);
        const EExitStatus status = shell.Execute(line);
        // A line may stop its own jobs; its output arrives.
        Require(status >= EXIT_PASSED && status < EXIT_HOST,
                "a line passes, fails, is refused or aborted");
        Require(status == EXIT_PASSED || !errors.Text().empty(), "what went wrong is said");
        if (!commands.has_value()) {
            Require(status == EXIT_USAGE && g_calls == 0, "what is no line is refused as a whole");
        }
    }
    for (const char c : errors.Text()) {
        Require(c == '\n' || static_cast<unsigned char>(c) >= 0x20, "errors are plain text");
    }
    RequireJsonLines(objects.Text());
    const bool is_empty = commands.has_value() && commands->empty();
    Require(objects.Text().empty() == is_empty, "what ran has an object");
    return 0;
}
