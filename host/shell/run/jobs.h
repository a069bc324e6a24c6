// The background jobs of a shell.
#pragma once

#include <memory>
#include <vector>

#include "host/shell/run/job.h"

class CInterrupt;
class CRunRecorder;

class CJobs {
  public:
    // Ended jobs that are remembered.
    static constexpr size_t KEPT = 100;

    CJobs(CTerminal& terminal, CRunWatch& watch, CRunRecorder& recorder, CInterrupt& interrupt)
        : m_terminal(terminal), m_watch(watch), m_recorder(recorder), m_interrupt(interrupt) {}
    // Stops and awaits what still runs.
    ~CJobs();
    CJobs(const CJobs&) = delete;
    CJobs& operator=(const CJobs&) = delete;

    void Start(std::unique_ptr<CNodeRun> run);
    // In the order of their numbers.
    const std::vector<std::unique_ptr<CJob>>& All() const { return m_jobs; }
    // The job of that number, or null.
    CJob* Find(unsigned int number) const;

    // Waits for the jobs and returns the worst of their results; EXIT_ABORTED
    // when Ctrl-C came first, which does them no harm.
    static EExitStatus Await(const std::vector<CJob*>& jobs, CInterrupt& interrupt);
    // Asks what still runs to stop, and waits for it; Ctrl-C then tells how far
    // it is. Returns the worst result
    // that nobody has been told: failures, and runs that were cut short here.
    EExitStatus Leave();

  private:
    void AwaitEnds(const std::vector<CJob*>& running);
    void ForgetOldest();

    CTerminal& m_terminal;
    CRunWatch& m_watch;
    CRunRecorder& m_recorder;
    CInterrupt& m_interrupt;
    unsigned int m_last_number = 0;
    EExitStatus m_forgotten = EXIT_PASSED;  // the worst that was not told when forgotten
    std::vector<std::unique_ptr<CJob>> m_jobs;
};
