// Ctrl-C, as seen by one run in the foreground: the first asks it to stop and
// says so, later ones ask again and say what is awaited. Nothing is ever killed:
// what runs has memories to restore.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "host/shell/run/run_watch.h"

class CNodeRun;
class CTerminal;

class CForegroundStop {
  public:
    // Another Ctrl-C so soon wants to know what is going on.
    static constexpr uint64_t SOON_MS = 2000;
    // A key that is held down shall not fill the screen.
    static constexpr uint64_t TELL_EVERY_MS = 500;

    // Of a command or test.
    CForegroundStop(CTerminal& terminal, CRunWatch::CRunning& running, CNodeRun& run);
    // Of a built-in, which looks for Ctrl-C itself.
    CForegroundStop(CTerminal& terminal, CRunWatch::CRunning& running, std::string builtin);

    // Ctrl-C came, at a time in milliseconds.
    void OnInterrupt(uint64_t now);

  private:
    void Say(bool stops, uint64_t now);
    void SayStopping(uint64_t now);
    void Tell(uint64_t now, bool again);

    CTerminal& m_terminal;
    CRunWatch::CRunning& m_running;
    CNodeRun* const m_run;  // null for a built-in
    const std::string m_name;
    std::optional<uint64_t> m_first;
    uint64_t m_last = 0;
    std::optional<uint64_t> m_told;
    bool m_stopping_said = false;
    bool m_goes_on = false;  // to its end, since it cannot be stopped
};
