// The terminal at which the operator types. While a command runs, what is typed
// is neither echoed onto its output nor changed, but kept for the next prompt;
// Ctrl-C and Ctrl-Z work as ever. The terminal is as it was found while the
// program is stopped and when it ends, a question is asked too.
#pragma once

#include <termios.h>

// Takes the terminal at standard input for as long as it lives, and with it the
// signals that stop and continue the program. There is one at a time.
class CTerminalEcho {
  public:
    CTerminalEcho();
    ~CTerminalEcho();
    CTerminalEcho(const CTerminalEcho&) = delete;
    CTerminalEcho& operator=(const CTerminalEcho&) = delete;

    // A descriptor that is readable when the screen has changed: it has a new
    // size, or others wrote to it while the program was stopped.
    int Descriptor() const;
    enum class EChange { NONE, SIZE, RESUMED };
    // What changed since the last call.
    EChange TakeChange();
};

// Has what is typed echoed and read in lines for a scope, as for a question.
class CEchoedInput {
  public:
    CEchoedInput();
    ~CEchoedInput();
    CEchoedInput(const CEchoedInput&) = delete;
    CEchoedInput& operator=(const CEchoedInput&) = delete;
};
