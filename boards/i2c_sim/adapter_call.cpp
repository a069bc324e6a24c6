#include "boards/i2c_sim/adapter_call.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace {

// Mapped once in a process. Two threads that meet map it twice, which does no harm.
std::atomic<sim_turns_t*> shared_turns = nullptr;

sim_turns_t* Turns() {
    sim_turns_t* turns = shared_turns.load(std::memory_order_acquire);
    const char* folder = std::getenv(SIM_FOLDER_VARIABLE);
    if (turns != nullptr || folder == nullptr) {
        return turns;
    }
    std::array<char, PATH_MAX> path;
    std::snprintf(path.data(), path.size(), "%s%s", folder, SIM_TURNS);
    const int fd = ::open(path.data(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        return nullptr;
    }
    void* memory = ::mmap(nullptr, sizeof(sim_turns_t), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    ::close(fd);
    if (memory == MAP_FAILED) {
        return nullptr;
    }
    turns = static_cast<sim_turns_t*>(memory);
    shared_turns.store(turns, std::memory_order_release);
    return turns;
}

class CTurn {
  public:
    explicit CTurn(sim_turn_t& turn) : m_turn(turn), m_error(pthread_mutex_lock(&m_turn.lock)) {
        // Whoever died in a call may have left an answer behind, which its id tells.
        if (m_error == EOWNERDEAD) {
            m_error = pthread_mutex_consistent(&m_turn.lock);
        }
    }
    ~CTurn() {
        if (m_error == 0) {
            pthread_mutex_unlock(&m_turn.lock);
        }
    }
    CTurn(const CTurn&) = delete;
    CTurn& operator=(const CTurn&) = delete;

    int Error() const { return m_error; }
    uint64_t NextId() { return ++m_turn.last_id; }

  private:
    sim_turn_t& m_turn;
    int m_error;
};

// Programs may have made the descriptor non-blocking, which means nothing to an adapter.
void Await(int fd, short events) {
    pollfd wanted = {.fd = fd, .events = events, .revents = 0};
    ::poll(&wanted, 1, -1);
}

msghdr HeaderOf(std::span<iovec> parts) {
    msghdr header = {};
    header.msg_iov = parts.data();
    header.msg_iovlen = parts.size();
    return header;
}

// The bytes moved, or a negated errno.
template <class Move>
ssize_t MoveWhole(int fd, short events, Move move) {
    for (;;) {
        const ssize_t moved = move();
        if (moved >= 0) {
            return moved;
        }
        if (errno == EAGAIN) {
            Await(fd, events);
        } else if (errno != EINTR) {
            return -errno;
        }
    }
}

// The process with the adapters is gone, and the board with it.
bool IsGone(ssize_t moved) {
    return moved == -EPIPE || moved == -ECONNRESET || moved == -ENOTCONN;
}

}  // namespace

CAdapterCall::CAdapterCall(int fd, unsigned int adapter, uint32_t code)
    : m_fd(fd), m_adapter(adapter), m_request{}, m_answer{} {
    m_request.code = code;
    Send(&m_request, sizeof m_request);
    Receive(&m_answer, sizeof m_answer);
}

void CAdapterCall::Send(const void* from, size_t size) {
    m_out[m_outs++] = {const_cast<void*>(from), size};
}

void CAdapterCall::Receive(void* to, size_t size) {
    m_in[m_ins++] = {to, size};
}

long CAdapterCall::Do() {
    sim_turns_t* turns = Turns();
    if (turns == nullptr) {
        return -ENODEV;
    }
    CTurn turn(turns->turns[m_adapter % turns->turns.size()]);
    // A signal's handler that calls while its own thread is in a call.
    if (turn.Error() != 0) {
        return -EBUSY;
    }
    m_request.id = turn.NextId();
    const int before = errno;
    const long result = DoInTurn();
    errno = before;
    return result;
}

long CAdapterCall::DoInTurn() {
    const msghdr out = HeaderOf(std::span(m_out).first(m_outs));
    const ssize_t sent =
        MoveWhole(m_fd, POLLOUT, [&] { return ::sendmsg(m_fd, &out, MSG_NOSIGNAL); });
    if (sent < 0) {
        return IsGone(sent) ? -ENODEV : sent;
    }
    for (;;) {
        msghdr in = HeaderOf(std::span(m_in).first(m_ins));
        const ssize_t received = MoveWhole(m_fd, POLLIN, [&] { return ::recvmsg(m_fd, &in, 0); });
        if (received < 0) {
            return IsGone(received) ? -ENODEV : received;
        }
        if (static_cast<size_t>(received) < sizeof m_answer) {
            return -ENODEV;
        }
        if (m_answer.id == m_request.id) {
            return m_answer.result;
        }
    }
}
