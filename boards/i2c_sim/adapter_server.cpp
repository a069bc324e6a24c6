#include "boards/i2c_sim/adapter_server.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "boards/preload/preloading.h"

namespace {

// An answer to the most and longest messages is one packet, too.
constexpr int SEND_BUFFER = 212'992;

}  // namespace

void CAdapterServer::Add(CAdapter& adapter) {
    const std::string name = m_folder.string() + SIM_SOCKETS + std::to_string(adapter.Number());
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, name.c_str(), sizeof address.sun_path - 1);
    const int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const CListener& listener = m_listeners.emplace_back(fd, adapter);
    if (fd < 0 || ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener.fd.Get(), SOMAXCONN) != 0) {
        throw SystemError(name);
    }
}

void CAdapterServer::ServeWhile(CCommandProcess& command) {
    for (;;) {
        std::vector<pollfd> wanted = {{.fd = command.SignalFd(), .events = POLLIN, .revents = 0}};
        for (const CListener& listener : m_listeners) {
            wanted.push_back({.fd = listener.fd.Get(), .events = POLLIN, .revents = 0});
        }
        for (const CConnection& connection : m_connections) {
            wanted.push_back({.fd = connection.fd.Get(), .events = POLLIN, .revents = 0});
        }
        if (::poll(wanted.data(), wanted.size(), -1) < 0) {
            if (errno != EINTR) {
                throw SystemError("cannot wait for requests");
            }
            continue;
        }
        auto next = wanted.begin();
        const auto is_ready = [&] { return (next++)->revents != 0; };
        if (is_ready() && command.Attend()) {
            return;
        }
        const auto old_connections = m_connections.size();
        for (const CListener& listener : m_listeners) {
            if (is_ready()) {
                Accept(listener);
            }
        }
        auto connection = m_connections.begin();
        for (size_t i = 0; i < old_connections; ++i) {
            const bool keep = !is_ready() || Serve(*connection);
            connection = keep ? std::next(connection) : m_connections.erase(connection);
        }
    }
}

void CAdapterServer::Accept(const CListener& listener) {
    const int fd = ::accept4(listener.fd.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (fd >= 0) {
        ::setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &SEND_BUFFER, sizeof SEND_BUFFER);
        m_connections.emplace_back(fd, listener.adapter, m_is_owned);
    }
}

// False when the connection is of no more use: the last program that had it open has closed
// it, or sends what is no request, or does not take its answer.
bool CAdapterServer::Serve(CConnection& connection) {
    const ssize_t size = ::recv(connection.fd.Get(), m_packet.data(), m_packet.size(), 0);
    if (size <= 0) {
        return size < 0 && (errno == EAGAIN || errno == EINTR);
    }
    try {
        const std::vector<uint8_t> answer =
            connection.file.Answer(std::span(m_packet).first(static_cast<size_t>(size)));
        return ::send(connection.fd.Get(), answer.data(), answer.size(), MSG_NOSIGNAL) >= 0;
    } catch (const CPacketFault&) {
        return false;
    }
}
