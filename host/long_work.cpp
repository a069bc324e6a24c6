#include "framework/long_work.h"

#include "host/run_stop.h"

CLongWork::~CLongWork() = default;

bool CLongWork::ProgressCb(uint64_t done, uint64_t total) {
    m_progress_done = done;
    m_progress_total = total;
    return !CRunStop::IsRequestedHere();
}
