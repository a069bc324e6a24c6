// A command that takes long: it tells how far it is, and an operator can stop
// it. It is then to answer MSG_ERR_ABORTED. Tests have CDiagTestBase for both.
#pragma once

#include <atomic>
#include <cstdint>

class CLongWork {
  public:
    virtual ~CLongWork();

    // In the command's own units; a total of 0 means unknown.
    uint64_t GetProgressDone() const { return m_progress_done; }
    uint64_t GetProgressTotal() const { return m_progress_total; }

  protected:
    // To be called between units of work; false when whoever runs the command on
    // this thread asked it to stop.
    bool ProgressCb(uint64_t done, uint64_t total);

  private:
    std::atomic<uint64_t> m_progress_done{0};
    std::atomic<uint64_t> m_progress_total{0};
};
