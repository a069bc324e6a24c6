// Other threads that take devices, without a test having to guess when.
#pragma once

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "host/device_lock.h"

using CClaims = std::vector<CDeviceClaim>;

// A thread that asks for devices, and gives them back as soon as it has had them.
class CLockSeeker {
  public:
    explicit CLockSeeker(CClaims claims)
        : m_claims(std::move(claims)), m_answer(m_looked.get_future()), m_thread([this] {
              const auto hold = CDeviceHold::Acquire(m_claims, [this] {
                  // Read first: Look lets the test go on, and it may call Stop at once.
                  const bool stop = m_stop;
                  Look();
                  return stop;
              });
              m_got = hold != nullptr;
              Look();
          }) {}
    ~CLockSeeker() {
        if (m_thread.joinable()) {
            Stop();
            m_thread.join();
        }
    }

    // Returns when the thread has looked whether it shall stop, which it does
    // before it waits, or has what it asked for.
    void AwaitLook() { m_answer.wait(); }
    void Stop() {
        m_stop = true;
        CDeviceHold::WakeWaiting();
    }
    // Whether the thread got its devices; waits for its end.
    bool Got() {
        m_thread.join();
        return m_got;
    }
    bool HasGot() const { return m_got; }

  private:
    void Look() {
        if (!m_has_looked.exchange(true)) {
            m_looked.set_value();
        }
    }

    const CClaims m_claims;
    std::promise<void> m_looked;
    std::future<void> m_answer;
    std::atomic<bool> m_has_looked{false};
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_got{false};
    std::thread m_thread;
};

// A thread that holds devices until it is told to release them.
class CLockHolder {
  public:
    explicit CLockHolder(CClaims claims)
        : m_claims(std::move(claims)), m_thread([this] {
              const auto hold = CDeviceHold::Acquire(m_claims, [] { return false; });
              m_held.set_value();
              m_release.get_future().wait();
          }) {
        m_held.get_future().wait();
    }
    ~CLockHolder() {
        if (m_thread.joinable()) {
            Release();
        }
    }
    void Release() {
        m_release.set_value();
        m_thread.join();
    }

  private:
    const CClaims m_claims;
    std::promise<void> m_held;
    std::promise<void> m_release;
    std::thread m_thread;
};

// Whether another thread would have to wait for these devices now.
inline bool WouldWait(const CClaims& claims) {
    CLockSeeker seeker(claims);
    seeker.AwaitLook();
    seeker.Stop();
    return !seeker.Got();
}
inline bool WouldWait(const CDiagDevice& device, EDevLockType type) {
    return WouldWait({{&device, type}});
}
