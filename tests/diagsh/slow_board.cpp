// A board of tests that take as long as they are told, for what diagsh does
// while something runs.
//
//   a/, b/               devices
//     until FILE [N]     a test: works until FILE exists, N units a step of 2 N in all
//     fail-at FILE       a test: fails once FILE exists, and does not stop before
//     hold FILE          a command: keeps the device until FILE exists
//     say TEXT           a command that needs the device for a moment
//     overwrite [TEXT]   a command that wants the operator's consent, twice
#include <filesystem>
#include <string>

#include "framework/consent.h"
#include "framework/diag_board.h"
#include "framework/diag_device.h"
#include "framework/diag_func.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "framework/diag_param.h"
#include "framework/diag_test.h"

namespace {

constexpr unsigned int STEP_MS = 5;

class CUntilTest : public CDiagTest {
  public:
    CUntilTest() : CDiagTest("until", "works until a file exists") {
        AddChild(new CDiagParam(VT_STRING, "file", "the file", PT_IN), NO_SORT);
        AddChild(new CDiagParam(VT_UINT32, "units", "half the work", PT_IN | PT_OPTIONAL), NO_SORT);
    }
    bool TestSetup(CInMsg& in) override {
        in >> m_file;
        m_units = 0;
        if (in.GetLen() != 0) {
            in >> m_units;
        }
        return true;
    }
    ETestStatus TestRun(COutMsg&) override {
        // Slept before it is said: the thread sanitizer loses a signal that meets
        // a thread in its very first blocking call, and this line invites signals.
        MsSleep(STEP_MS);
        SendLog(LW_PRINT, "%s works\n", GetParentDevice()->GetName());
        m_progress_total = uint64_t{2} * m_units;
        m_progress_done = m_units;
        while (!std::filesystem::exists(m_file)) {
            if (!ProgressCb()) {
                SendLog(LW_PRINT, "%s cleans up\n", GetParentDevice()->GetName());
                return DS_ABORTED;
            }
            MsSleep(STEP_MS);
        }
        return DS_PASSED;
    }

  private:
    std::string m_file;
    uint32_t m_units = 0;
};

class CFailAtTest : public CDiagTest {
  public:
    CFailAtTest() : CDiagTest("fail-at", "fails once a file exists") {
        AddChild(new CDiagParam(VT_STRING, "file", "the file", PT_IN), NO_SORT);
    }
    bool TestSetup(CInMsg& in) override {
        in >> m_file;
        return true;
    }
    ETestStatus TestRun(COutMsg&) override {
        SendLog(LW_PRINT, "%s works\n", GetParentDevice()->GetName());
        while (!std::filesystem::exists(m_file)) {
            MsSleep(STEP_MS);
        }
        return DS_FAILED;
    }

  private:
    std::string m_file;
};

class CHoldCmd : public CDiagFunc {
  public:
    CHoldCmd() : CDiagFunc("hold", "keeps the device until a file exists", SHARES_DEVICE) {
        AddChild(new CDiagParam(VT_STRING, "file", "the file", PT_IN), NO_SORT);
    }
    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string file;
        in >> file;
        MsSleep(STEP_MS);  // as in CUntilTest
        SendLog(LW_PRINT, "%s is held\n", GetParentDevice()->GetName());
        while (!std::filesystem::exists(file)) {
            MsSleep(STEP_MS);
        }
        out << static_cast<uint8_t>(MSG_SUCCESS);
    }
};

class CSayCmd : public CDiagFunc {
  public:
    CSayCmd() : CDiagFunc("say", "prints a text", SHARES_DEVICE) {
        AddChild(new CDiagParam(VT_STRING, "text", "the text", PT_IN), NO_SORT);
    }
    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string text;
        in >> text;
        SendLog(LW_PRINT, "%s\n", text.c_str());
        out << static_cast<uint8_t>(MSG_SUCCESS);
    }
};

class COverwriteCmd : public CDiagFunc {
  public:
    COverwriteCmd() : CDiagFunc("overwrite", "does what needs consent, twice", SHARES_DEVICE) {
        AddChild(new CDiagParam(VT_STRING, "what", "what is to be done", PT_IN | PT_OPTIONAL),
                 NO_SORT);
    }
    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string what = "overwrite it";
        if (in.GetLen() != 0) {
            in >> what;
        }
        for (int time = 0; time < 2; ++time) {
            const bool allowed = AllowedByOperator(what);
            SendLog(LW_PRINT, "%s %s\n", GetParentDevice()->GetName(),
                    allowed ? "is overwritten" : "is left alone");
        }
        out << static_cast<uint8_t>(MSG_SUCCESS);
    }
};

CDiagDevice* MakeDevice(const std::string& name) {
    auto* device = new CDiagDevice(name, "a slow device", TDEVICE);
    device->AddChild(new CUntilTest, CDiagObj::NO_SORT);
    device->AddChild(new CFailAtTest, CDiagObj::NO_SORT);
    device->AddChild(new CHoldCmd, CDiagObj::NO_SORT);
    device->AddChild(new CSayCmd, CDiagObj::NO_SORT);
    device->AddChild(new COverwriteCmd, CDiagObj::NO_SORT);
    return device;
}

}  // namespace

extern "C" CDiagMenu* morva_board_create(int, const char* const*) {
    auto* root = new CDiagMenu(TMENU, "slow", "a board that takes its time");
    root->AddChild(MakeDevice("a"), CDiagObj::NO_SORT);
    root->AddChild(MakeDevice("b"), CDiagObj::NO_SORT);
    return root;
}
