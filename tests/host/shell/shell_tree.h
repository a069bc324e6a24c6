// A shell on a small tree, with what it prints caught.
//
//   /dev/            a device
//     add A [B]      a command: prints what it got, answers the sum
//     fail           a command that answers ERR_FAIL
//     count          a command that answers ERR_FAIL, yet with its output
//     terse          a command that answers success without its output
//     vanish         a command that removes the menu "gone"
//     mute           a command that answers nothing
//     throw          a command that throws
//     check HOW      a test that passes, fails, skips or waits to be stopped
//     name=          a writable text
//     fixed=         a read-only number
//     memory[]       256 bytes by address
//     list[]         100 bytes by index, from 5 on
//   gone/            a menu
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "framework/diag_array.h"
#include "framework/diag_device.h"
#include "host/log_filter.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/shell.h"
#include "host/terminal.h"

class CMemoryArray : public CDiagArray<unsigned char> {
  public:
    CMemoryArray(ENodeType type, const std::string& name, uint64_t first, uint64_t last)
        : CDiagArray<unsigned char>(type, name, "some bytes", first, last, false,
                                    VT_UINT8 | VF_HEX | VF_PAD) {}

    void Set(uint64_t pos, const unsigned char& value) override;
    unsigned char Get(uint64_t pos) override;

    // Every position not set holds its own low byte.
    std::map<uint64_t, unsigned char> cells;
    // Access to this position fails.
    uint64_t broken = ~uint64_t{0};
    // Ctrl-C comes while this position is read.
    uint64_t interrupted_at = ~uint64_t{0};
};

class ShellTest : public testing::Test {
  protected:
    ShellTest();
    ~ShellTest() override;

    // Runs a line; what it printed is then in `printed` and `errors`.
    EExitStatus Run(const std::string& line, const std::string& origin = "");
    // Starts and ends the catching of output, for what runs no single line.
    void Catch();
    void Caught();

    CDiagMenu m_root{TMENU, "board", "a test board"};
    CDiagDevice* m_device;  // owned by the tree, like these:
    CMemoryArray* m_memory;
    CMemoryArray* m_list;
    unsigned int m_calls = 0;  // of commands and tests

    std::string printed;
    std::string errors;

    CInterrupt m_interrupt;
    CTerminal m_terminal{stdout};
    CLogFilter m_log_filter;
    CTerminalLog m_log{m_terminal, m_log_filter};
    CShell m_shell{m_root, m_terminal, m_interrupt, m_log_filter};
};
