// A shell on a board of tests that end when they are let, for what happens
// while something runs in the background.
//
//   a/, b/        devices
//     gated       a test: half done until its gate opens
//     count       a test that fails, with an output
//     say TEXT    a command that needs the device
//     block       a command that keeps the device until its gate opens
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>

#include "framework/diag_device.h"
#include "framework/diag_func.h"
#include "framework/diag_log_word.h"
#include "framework/diag_param.h"
#include "framework/diag_test.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/session.h"
#include "host/shell/shell.h"
#include "tests/host/shell/text_file.h"
#include "tests/support/fake_clock.h"
#include "tests/support/gate.h"

class CGatedTest : public CDiagTest {
  public:
    CGatedTest() : CDiagTest("gated", "half done until its gate opens") {}
    ETestStatus TestRun(COutMsg&) override {
        m_progress_total = 100;
        m_progress_done = 50;
        SendLog(LW_PRINT, "half ");
        SendLog(LW_PRINT, "done\n");
        works.Open();
        while (!gate.IsOpen()) {
            if (!ProgressCb()) {
                if (cleans_up) {
                    gate.Await();
                }
                return DS_ABORTED;
            }
            std::this_thread::yield();
        }
        return DS_PASSED;
    }
    CGate works;
    CGate gate;
    bool cleans_up = false;  // once it is stopped, until its gate opens
};

class CCountTest : public CDiagTest {
  public:
    CCountTest() : CDiagTest("count", "fails") {
        AddChild(new CDiagParam(VT_UINT8, "found", "faults", PT_OUT), NO_SORT);
    }
    ETestStatus TestRun(COutMsg& out) override {
        out << static_cast<uint8_t>(MSG_ERR_FAIL) << uint8_t{3};
        return DS_FAILED;
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

class CBlockCmd : public CDiagFunc {
  public:
    CBlockCmd() : CDiagFunc("block", "keeps the device", SHARES_DEVICE) {}
    void Invoke(CInMsg&, COutMsg& out) override {
        works.Open();
        gate.Await();
        out << static_cast<uint8_t>(MSG_SUCCESS);
    }
    CGate works;
    CGate gate;
};

struct CJobDevice {
    explicit CJobDevice(const std::string& name) : device(new CDiagDevice(name, "", TDEVICE)) {
        device->AddChild(gated, CDiagObj::NO_SORT);
        device->AddChild(new CCountTest, CDiagObj::NO_SORT);
        device->AddChild(new CSayCmd, CDiagObj::NO_SORT);
        device->AddChild(block, CDiagObj::NO_SORT);
    }
    CDiagDevice* device;  // owned by the tree, like these:
    CGatedTest* gated = new CGatedTest;
    CBlockCmd* block = new CBlockCmd;
};

class JobBoard : public testing::Test {
  protected:
    JobBoard() {
        m_root.AddChild(m_a.device, CDiagObj::NO_SORT);
        m_root.AddChild(m_b.device, CDiagObj::NO_SORT);
        m_shell.emplace(m_root, m_terminal, m_interrupt, m_log_filter);
    }

    EExitStatus Run(const std::string& line) { return m_shell->Execute(line); }
    // What was written since the last call, to the output and to the errors.
    std::string Written() { return m_file.Written(); }

    CFakeClock m_clock;
    CTextFile m_file;
    CDiagMenu m_root{TMENU, "board", ""};
    CJobDevice m_a{"a"};
    CJobDevice m_b{"b"};
    CInterrupt m_interrupt;
    CTerminal m_terminal{m_file.Get(), m_file.Get()};
    CLogFilter m_log_filter;
    CTerminalLog m_log{m_terminal, m_log_filter};
    const CLogSinkScope m_sink{m_log};
    std::optional<CShell> m_shell;
};
