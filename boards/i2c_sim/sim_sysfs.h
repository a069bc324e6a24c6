// The little of sysfs that a program finds adapters, their nodes in the device tree and the
// kernel's own chips by, written as files of a folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "boards/i2c_sim/adapter.h"

class CSimSysfs {
  public:
    // All throw std::filesystem::filesystem_error, or std::runtime_error, when a file
    // cannot be made.
    CSimSysfs(std::filesystem::path folder, std::span<const uint8_t> blob);

    // `node` is the adapter's path in the device tree; empty when it has none.
    void AddAdapter(const CAdapter& adapter, const std::string& node);
    // A multiplexer that the kernel drives, with the adapters of its channels in order.
    void AddMux(const CAdapter& adapter, uint8_t addr, const std::string& chip,
                std::span<const unsigned int> channels);

    // Whether a driver has that address of that adapter. Looks again each time: tests bind
    // drivers as they go.
    bool HasDriver(unsigned int adapter, uint8_t addr) const;

  private:
    std::filesystem::path Device(unsigned int adapter, uint8_t addr) const;

    const std::filesystem::path m_folder;
    const std::filesystem::path m_devices;
};
