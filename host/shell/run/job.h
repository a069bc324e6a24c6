// A run in the background, on a thread of its own. Its lines begin with its
// number, "[1] ".
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "host/shell/run/node_run.h"

class CRunRecorder;
class CRunWatch;

class CJob {
  public:
    // Starts it.
    CJob(unsigned int number, std::unique_ptr<CNodeRun> run, CTerminal& terminal, CRunWatch& watch,
         CRunRecorder& recorder);
    // Waits for its end.
    ~CJob();
    CJob(const CJob&) = delete;
    CJob& operator=(const CJob&) = delete;

    unsigned int Number() const { return m_number; }
    const CDiagObj& Node() const { return m_run->Node(); }
    // Once it has ended, how.
    std::optional<EExitStatus> Result() const;
    // "[1] /dev/check 5: running 45%, 0:00:12".
    std::string Description() const;

    // Asks it to stop and says so, or that it does not understand.
    void Stop();
    bool IsStopRequested() const { return m_stop_requested; }
    // Waits for its end, or until `give_up` is true when it is woken.
    bool Await(const std::function<bool()>& give_up);
    void WakeAwaiting();

    // Whether somebody has been told the result.
    bool IsCollected() const { return m_collected; }
    void Collect() { m_collected = true; }

  private:
    void Run();
    void Tell(EResCode code);
    std::string Line(const std::string& state) const;
    std::string State() const;

    const unsigned int m_number;
    const std::unique_ptr<CNodeRun> m_run;
    CTerminal& m_terminal;
    CRunWatch& m_watch;
    CRunRecorder& m_recorder;
    const uint64_t m_began;
    bool m_stop_requested = false;
    bool m_collected = false;

    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    std::optional<EResCode> m_code;  // once it has ended
    uint64_t m_ended = 0;
    std::thread m_thread;
};
