#include "host/shell/input/await_input.h"

#include <poll.h>

#include <array>
#include <cerrno>

#include "host/shell/run/interrupt.h"

bool AwaitInput(int descriptor, const CInterrupt& interrupt) {
    std::array<pollfd, 2> inputs{{{descriptor, POLLIN, 0}, {interrupt.Descriptor(), POLLIN, 0}}};
    while (::poll(inputs.data(), inputs.size(), -1) < 0 && errno == EINTR) {
    }
    return inputs[1].revents == 0;
}
