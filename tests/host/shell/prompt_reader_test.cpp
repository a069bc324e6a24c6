#include <gtest/gtest.h>

#include <csignal>

#include "host/shell/input/line_reader.h"
#include "host/shell/run/interrupt.h"
#include "host/terminal.h"
#include "tests/host/shell/standard_input.h"
#include "tests/host/shell/text_file.h"

namespace {

class PromptReader : public testing::Test {
  protected:
    const CTypedInput m_keyboard;
    CTextFile m_out;
    CTerminal m_terminal{m_out.Get()};
    CInterrupt m_interrupt;
    CPromptReader m_reader{stdin, m_terminal, m_interrupt};
    std::string line;
};

TEST_F(PromptReader, WritesThePromptAndReadsALine) {
    m_keyboard.Type("ls\npwd\n");
    EXPECT_EQ(m_reader.Read("/dev> ", line), ELine::READ);
    EXPECT_EQ(line, "ls");
    EXPECT_EQ(m_out.Written(), "/dev> ");
    EXPECT_EQ(m_reader.Read("/> ", line), ELine::READ);
    EXPECT_EQ(line, "pwd");
}

TEST_F(PromptReader, SeesACtrlCThatCameJustBefore) {
    std::raise(SIGINT);
    EXPECT_EQ(m_reader.Read("/> ", line), ELine::INTERRUPTED);
    EXPECT_EQ(m_out.Written(), "/> \n");
    m_interrupt.Clear();
    m_keyboard.Type("ls\n");
    EXPECT_EQ(m_reader.Read("/> ", line), ELine::READ);
    EXPECT_EQ(line, "ls");
    EXPECT_EQ(m_out.Written(), "/> ");
}

TEST_F(PromptReader, SeesTheEndOfInput) {
    m_keyboard.Type("\x04");
    EXPECT_EQ(m_reader.Read("/> ", line), ELine::END);
    std::clearerr(stdin);
}

}  // namespace
