#include "tests/host/shell/shell_tree.h"

#include <csignal>

#include "framework/diag_exception.h"
#include "framework/diag_func.h"
#include "framework/diag_log_word.h"
#include "framework/diag_param.h"
#include "framework/diag_test.h"
#include "framework/diag_value.h"
#include "host/diag_log.h"

namespace {

using CBody = std::function<void(CDiagFunc&, CInMsg&, COutMsg&)>;

class CBodyCmd : public CDiagFunc {
  public:
    CBodyCmd(const std::string& name, unsigned int& calls, CBody body)
        : CDiagFunc(name, "does " + name, 0), m_calls(calls), m_body(std::move(body)) {}
    void Invoke(CInMsg& in, COutMsg& out) override {
        ++m_calls;
        m_body(*this, in, out);
    }

  private:
    unsigned int& m_calls;
    const CBody m_body;
};

void Add(CDiagFunc& self, CInMsg& in, COutMsg& out) {
    uint16_t a = 0;
    uint8_t b = 0;
    in >> a;
    if (in.GetLen() != 0) {
        in >> b;
    }
    self.SendLog(LW_PRINT, "adding %u and %u\n", a, b);
    out << uint8_t{MSG_SUCCESS} << static_cast<uint32_t>(a + b) << "done";
}

class CCheckTest : public CDiagTest {
  public:
    explicit CCheckTest(unsigned int& calls) : CDiagTest("check", "a test"), m_calls(calls) {
        AddChild(new CDiagParam(VT_STRING, "how", "pass, fail or wait", PT_IN), NO_SORT);
    }
    bool TestSetup(CInMsg& in) override {
        in >> m_how;
        return m_how != "refuse";
    }
    ETestStatus TestRun(COutMsg&) override {
        ++m_calls;
        if (m_how == "wait") {
            // As the operator does: Ctrl-C arrives while the test runs.
            std::raise(SIGINT);
            while (ProgressCb()) {
                std::this_thread::yield();
            }
            return DS_ABORTED;
        }
        if (m_how == "skip") {
            return DS_SKIPPED;
        }
        return m_how == "pass" ? DS_PASSED : DS_FAILED;
    }

  private:
    unsigned int& m_calls;
    std::string m_how;
};

}  // namespace

void CMemoryArray::Set(uint64_t pos, const unsigned char& value) {
    if (pos == broken) {
        throw CDiagException("cell broken");
    }
    cells[pos] = value;
}

unsigned char CMemoryArray::Get(uint64_t pos) {
    if (pos == interrupted_at) {
        std::raise(SIGINT);
    }
    if (pos == broken) {
        throw CDiagException("cell broken");
    }
    const auto cell = cells.find(pos);
    return cell != cells.end() ? cell->second : static_cast<unsigned char>(pos);
}

ShellTest::ShellTest()
    : m_device(new CDiagDevice("dev", "a device", TDEVICE)),
      m_memory(new CMemoryArray(TARRAY_A, "memory", 0, 255)),
      m_list(new CMemoryArray(TARRAY_I, "list", 5, 104)) {
    m_root.AddChild(m_device, CDiagObj::NO_SORT);
    auto* add = new CBodyCmd("add", m_calls, Add);
    add->AddChild(new CDiagParam(VT_UINT16, "a", "first number", PT_IN), CDiagObj::NO_SORT);
    add->AddChild(new CDiagParam(VT_UINT8, "b", "second number", PT_IN | PT_OPTIONAL),
                  CDiagObj::NO_SORT);
    add->AddChild(new CDiagParam(VT_UINT32, "sum", "their sum", PT_OUT), CDiagObj::NO_SORT);
    add->AddChild(new CDiagParam(VT_STRING, "note", "a remark", PT_OUT), CDiagObj::NO_SORT);
    m_device->AddChild(add, CDiagObj::NO_SORT);
    m_device->AddChild(new CBodyCmd("fail", m_calls,
                                    [](CDiagFunc& self, CInMsg&, COutMsg& out) {
                                        self.SendLog(LW_PRINT, "half a line");
                                        out << uint8_t{MSG_ERR_FAIL};
                                    }),
                       CDiagObj::NO_SORT);
    auto* count = new CBodyCmd("count", m_calls, [](CDiagFunc&, CInMsg&, COutMsg& out) {
        out << uint8_t{MSG_ERR_FAIL} << uint32_t{3};
    });
    count->AddChild(new CDiagParam(VT_UINT32, "passed", "steps", PT_OUT), CDiagObj::NO_SORT);
    m_device->AddChild(count, CDiagObj::NO_SORT);
    auto* terse = new CBodyCmd(
        "terse", m_calls, [](CDiagFunc&, CInMsg&, COutMsg& out) { out << uint8_t{MSG_SUCCESS}; });
    terse->AddChild(new CDiagParam(VT_STRING, "text", "a text", PT_OUT), CDiagObj::NO_SORT);
    m_device->AddChild(terse, CDiagObj::NO_SORT);
    auto* gone = new CDiagMenu(TMENU, "gone", "a menu");
    m_root.AddChild(gone, CDiagObj::NO_SORT);
    m_device->AddChild(new CBodyCmd("vanish", m_calls,
                                    [this, gone](CDiagFunc&, CInMsg&, COutMsg& out) {
                                        m_root.RemoveChild(gone->GetId());
                                        out << uint8_t{MSG_SUCCESS};
                                    }),
                       CDiagObj::NO_SORT);
    m_device->AddChild(new CBodyCmd("mute", m_calls, [](CDiagFunc&, CInMsg&, COutMsg&) {}),
                       CDiagObj::NO_SORT);
    m_device->AddChild(new CBodyCmd("throw", m_calls,
                                    [](CDiagFunc&, CInMsg&, COutMsg&) {
                                        throw CDiagException("out of %s", "order");
                                    }),
                       CDiagObj::NO_SORT);
    m_device->AddChild(new CCheckTest(m_calls), CDiagObj::NO_SORT);
    m_device->AddChild(
        new CDiagMemValue<std::string>("name", "a text", false, VT_STRING, "initial"),
        CDiagObj::NO_SORT);
    m_device->AddChild(
        new CDiagMemValue<uint32_t>("fixed", "a number", true, VT_UINT32 | VF_HEX, 0x1234),
        CDiagObj::NO_SORT);
    m_device->AddChild(m_memory, CDiagObj::NO_SORT);
    m_device->AddChild(m_list, CDiagObj::NO_SORT);
    CDiagLog::Instance().AddSink(m_log);
}

ShellTest::~ShellTest() {
    CDiagLog::Instance().RemoveSink(m_log);
}

void ShellTest::Catch() {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
}

void ShellTest::Caught() {
    printed = testing::internal::GetCapturedStdout();
    errors = testing::internal::GetCapturedStderr();
}

EExitStatus ShellTest::Run(const std::string& line, const std::string& origin) {
    Catch();
    const EExitStatus status = m_shell.Execute(line, origin);
    Caught();
    return status;
}
