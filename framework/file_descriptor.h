// An open file of the operating system, closed at the end of its scope.
#pragma once

#include <unistd.h>

class CFileDescriptor {
  public:
    // Below 0 for a file that could not be opened.
    explicit CFileDescriptor(int fd) : m_fd(fd) {}
    ~CFileDescriptor() {
        if (IsOpen()) {
            ::close(m_fd);
        }
    }
    CFileDescriptor(const CFileDescriptor&) = delete;
    CFileDescriptor& operator=(const CFileDescriptor&) = delete;

    bool IsOpen() const { return m_fd >= 0; }
    int Get() const { return m_fd; }

  private:
    const int m_fd;
};
