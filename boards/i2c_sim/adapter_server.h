// Serves the adapters of a board to all programs of a run, each request whole before the
// next.
#pragma once

#include <filesystem>
#include <list>
#include <memory>
#include <vector>

#include "boards/i2c_sim/command_process.h"
#include "boards/i2c_sim/i2c_dev_file.h"
#include "framework/file_descriptor.h"

class CAdapterServer {
  public:
    // `folder` is a CSimFolder's.
    CAdapterServer(std::filesystem::path folder, CI2cDevFile::CIsOwned is_owned)
        : m_folder(std::move(folder)), m_is_owned(std::move(is_owned)) {}

    // Throws std::runtime_error when there can be no socket for it. The adapter must
    // outlive the server.
    void Add(CAdapter& adapter);

    // Until the command has ended.
    void ServeWhile(CCommandProcess& command);

  private:
    struct CListener {
        CListener(int socket, CAdapter& of) : fd(socket), adapter(of) {}
        const CFileDescriptor fd;
        CAdapter& adapter;
    };
    struct CConnection {
        CConnection(int socket, CAdapter& adapter, const CI2cDevFile::CIsOwned& is_owned)
            : fd(socket), file(adapter, is_owned) {}
        const CFileDescriptor fd;
        CI2cDevFile file;
    };

    void Accept(const CListener& listener);
    bool Serve(CConnection& connection);

    const std::filesystem::path m_folder;
    const CI2cDevFile::CIsOwned m_is_owned;
    std::list<CListener> m_listeners;
    std::list<CConnection> m_connections;
    std::vector<uint8_t> m_packet = std::vector<uint8_t>(MAX_REQUEST_SIZE + 1);
};
