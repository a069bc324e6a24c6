// Standard input replaced for a scope: by a file, or by a terminal at which the
// test types.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

class CStandardInput {
  public:
    explicit CStandardInput(int fd) : m_saved(::dup(STDIN_FILENO)) {
        if (fd < 0 || ::dup2(fd, STDIN_FILENO) < 0) {
            throw std::system_error(errno, std::generic_category(), "standard input");
        }
        ::close(fd);
    }
    explicit CStandardInput(const char* file) : CStandardInput(::open(file, O_RDONLY)) {}
    ~CStandardInput() {
        ::dup2(m_saved, STDIN_FILENO);
        ::close(m_saved);
    }
    CStandardInput(const CStandardInput&) = delete;
    CStandardInput& operator=(const CStandardInput&) = delete;

  private:
    const int m_saved;
};

class CTypedInput {
  public:
    explicit CTypedInput(std::string_view typed = "")
        : m_keyboard(::posix_openpt(O_RDWR | O_NOCTTY)), m_input(OpenScreen(m_keyboard)) {
        Type(typed);
    }
    ~CTypedInput() { ::close(m_keyboard); }
    CTypedInput(const CTypedInput&) = delete;
    CTypedInput& operator=(const CTypedInput&) = delete;

    void Type(std::string_view keys) const {
        if (::write(m_keyboard, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
            throw std::system_error(errno, std::generic_category(), "typing");
        }
    }
    // What the screen has shown, up to and with `end`, for which it waits.
    std::string ScreenUpTo(const std::string& end) const {
        std::string shown;
        char c = 0;
        while (!shown.ends_with(end) && ::read(m_keyboard, &c, 1) == 1) {
            shown += c;
        }
        return shown;
    }

  private:
    static int OpenScreen(int keyboard) {
        ::grantpt(keyboard);
        ::unlockpt(keyboard);
        return ::open(::ptsname(keyboard), O_RDWR | O_NOCTTY);
    }

    const int m_keyboard;
    const CStandardInput m_input;
};
