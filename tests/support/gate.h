// Something that others wait at until a test opens it.
#pragma once

#include <chrono>
#include <future>

class CGate {
  public:
    // Waits until the gate is open.
    void Await() const { m_opened.wait(); }
    bool IsOpen() const {
        return m_opened.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }
    void Open() { m_open.set_value(); }

  private:
    std::promise<void> m_open;
    const std::shared_future<void> m_opened = m_open.get_future().share();
};
