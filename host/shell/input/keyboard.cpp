#include "host/shell/input/keyboard.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cwchar>

#include "host/shell/run/interrupt.h"

CKeyboard::EKey CKeyboard::Read(wchar_t& character) {
    std::mbstate_t state{};
    while (true) {
        char byte = 0;
        const EKey key = ReadByte(byte);
        if (key != EKey::CHARACTER) {
            return key;
        }
        const bool first = std::mbsinit(&state) != 0;
        const size_t used = std::mbrtowc(&character, &byte, 1, &state);
        if (used == static_cast<size_t>(-2)) {
            continue;  // more bytes belong to it
        }
        if (used == static_cast<size_t>(-1)) {
            if (!first) {
                m_put_back = byte;
            }
            m_unreadable = true;
            character = L'?';
        }
        return EKey::CHARACTER;
    }
}

bool CKeyboard::HasMore() const {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return m_put_back.has_value() || ::poll(&input, 1, 0) > 0;
}

CKeyboard::EKey CKeyboard::ReadByte(char& byte) {
    if (m_put_back.has_value()) {
        byte = *std::exchange(m_put_back, std::nullopt);
        return EKey::CHARACTER;
    }
    while (AwaitByte()) {
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count > 0) {
            return EKey::CHARACTER;
        }
        if (count == 0 || errno != EINTR) {
            return EKey::END;
        }
    }
    return EKey::INTERRUPTED;
}

// False when Ctrl-C comes first, or came already.
bool CKeyboard::AwaitByte() const {
    std::vector<pollfd> inputs{{STDIN_FILENO, POLLIN, 0}, {m_interrupt.Descriptor(), POLLIN, 0}};
    for (const auto& [descriptor, on_ready] : m_watched) {
        inputs.push_back({descriptor, POLLIN, 0});
    }
    do {
        while (::poll(inputs.data(), inputs.size(), -1) < 0 && errno == EINTR) {
        }
        for (size_t i = 0; i < m_watched.size(); ++i) {
            if (inputs[2 + i].revents != 0) {
                m_watched[i].second();
            }
        }
    } while (inputs[0].revents == 0 && inputs[1].revents == 0);
    return inputs[1].revents == 0;
}
