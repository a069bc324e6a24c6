// An event that other threads set and who waits for input polls for.
#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

class CEvent {
  public:
    CEvent() : m_fd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (m_fd < 0) {
            throw std::system_error(errno, std::generic_category(), "eventfd");
        }
    }
    ~CEvent() { ::close(m_fd); }
    CEvent(const CEvent&) = delete;
    CEvent& operator=(const CEvent&) = delete;

    void Set() const { ::eventfd_write(m_fd, 1); }
    void Clear() const {
        eventfd_t count = 0;
        ::eventfd_read(m_fd, &count);
    }
    int Descriptor() const { return m_fd; }

  private:
    const int m_fd;
};
