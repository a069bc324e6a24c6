// COMMAND, which runs beside the process that holds the adapters as if it ran instead of it:
// signals reach it, stopping it stops both, and its end is that of both.
#pragma once

#include <sys/types.h>

#include <csignal>

class CCommandProcess {
  public:
    // Takes over the signals of this process, for all threads that it may start later.
    CCommandProcess();
    ~CCommandProcess();
    CCommandProcess(const CCommandProcess&) = delete;
    CCommandProcess& operator=(const CCommandProcess&) = delete;

    // Runs the words, the last of which is null; 0, or the error number with which it
    // cannot be run.
    int Start(char** words);

    // Becomes readable when Attend has something to do.
    int SignalFd() const { return m_signals; }
    // Passes on what signals came; true when the command has ended.
    bool Attend();

    // Of a command that has ended. When a signal ended it, this process ends by the same.
    int PassOnStatus() const;

  private:
    void PassOn(int signal, bool from_terminal, pid_t sender) const;
    bool AwaitChange();

    sigset_t m_before = {};
    int m_signals = -1;
    pid_t m_pid = -1;
    int m_status = 0;
};
