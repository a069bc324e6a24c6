// Something that others wait at until a test opens it.
#pragma once

#include <chrono>
#include <future>
#include <mutex>

class CGate {
  public:
    // Waits until the gate is open.
    void Await() const { m_opened.wait(); }
    bool IsOpen() const {
        return m_opened.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }
    // Opening it again does nothing.
    void Open() {
        std::call_once(m_once, [this] { m_open.set_value(); });
    }

  private:
    std::once_flag m_once;
    std::promise<void> m_open;
    const std::shared_future<void> m_opened = m_open.get_future().share();
};
