// The operator's keys, one character at a time, and what happens while they are
// waited for.
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

class CInterrupt;

class CKeyboard {
  public:
    enum class EKey { CHARACTER, INTERRUPTED, END };

    explicit CKeyboard(const CInterrupt& interrupt) : m_interrupt(interrupt) {}

    // Has `on_ready` called whenever the descriptor becomes readable while a key
    // is waited for.
    void Watch(int descriptor, std::function<void()> on_ready) {
        m_watched.emplace_back(descriptor, std::move(on_ready));
    }

    // Waits for a character of standard input, or for Ctrl-C. Bytes that are none
    // become a "?".
    EKey Read(wchar_t& character);
    // Whether more was typed already, or pasted.
    bool HasMore() const;
    // Whether there were bytes that are no character since the last call.
    bool TakeUnreadable() { return std::exchange(m_unreadable, false); }

  private:
    EKey ReadByte(char& byte);
    bool AwaitByte() const;

    const CInterrupt& m_interrupt;
    std::vector<std::pair<int, std::function<void()>>> m_watched;
    std::optional<char> m_put_back;  // a byte that broke a character off
    bool m_unreadable = false;
};
