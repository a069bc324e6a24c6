// A POSIX mutex and its scope guard.
#pragma once

#include <pthread.h>

#include <cerrno>
#include <ctime>
#include <exception>

#include "framework/diag_exception.h"

// Locking it twice from one thread, or releasing it from another, is an
// assertion failure rather than a hang.
class CMutex {
  public:
    CMutex();
    ~CMutex() {
        ::pthread_mutex_destroy(&m_lock);
        ::pthread_mutexattr_destroy(&m_attr);
    }
    CMutex(const CMutex&) = delete;
    CMutex& operator=(const CMutex&) = delete;

    // Waits for the mutex: without limit, or until the absolute time `until`
    // (CLOCK_REALTIME). Returns false only when that time passed.
    bool Acquire(const timespec* until = nullptr) {
        if (until != nullptr) {
            const int rc = ::pthread_mutex_timedlock(&m_lock, until);
            if (rc != 0 && rc != ETIMEDOUT) {
                Fail(__LINE__, "!::pthread_mutex_timedlock(&m_lock, until)");
            }
            return rc == 0;
        }
        if (::pthread_mutex_lock(&m_lock) != 0) {
            Fail(__LINE__, "!::pthread_mutex_lock(&m_lock)");
        }
        return true;
    }

    void Release() const {
        if (::pthread_mutex_unlock(&m_lock) != 0) {
            Fail(__LINE__, "!::pthread_mutex_unlock(&m_lock)");
        }
    }

  private:
    // The file is named as the framework's users know it, wherever it was built.
    [[noreturn]] static void Fail(int line, const char* check) {
        throw CDiagException("%s:%d Assert failed (%s)", "lib/Threads", line, check);
    }

    mutable pthread_mutex_t m_lock;
    pthread_mutexattr_t m_attr;
};

// Holds a mutex for a scope.
template <class T>
class CGuard {
  public:
    explicit CGuard(T& mutex) : m_mutex(mutex), m_pending(std::uncaught_exceptions()) {
        m_mutex.Acquire();
    }
    // A failing release is reported, except while another exception is on its way.
    // NOLINTNEXTLINE(bugprone-exception-escape)
    ~CGuard() noexcept(false) {
        try {
            m_mutex.Release();
        } catch (const CDiagException&) {
            if (std::uncaught_exceptions() <= m_pending) {
                throw;
            }
        }
    }
    CGuard(const CGuard&) = delete;
    CGuard& operator=(const CGuard&) = delete;

  private:
    T& m_mutex;
    const int m_pending;
};
