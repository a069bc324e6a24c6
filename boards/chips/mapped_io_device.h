// I/O ports in memory: a file that is mapped, such as the region of a device that the
// kernel exports, or all of the memory. Port n is the byte n behind `offset`; the register
// "port" is an array of them. Every
// access reaches the file, byte by byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "framework/diag_mutex.h"
#include "framework/file_descriptor.h"
#include "io/diag_io_device.h"

// The device's own table, there before the device is.
class CPortTable {
  protected:
    explicit CPortTable(uint8_t ports);

    diag_reg_st m_register;
    diag_regtable_st m_regt;
};

class CMappedIoDevice : private CPortTable, public CDiagIoDevice {
  public:
    // Throws CDiagException, naming the file and the reason, when it is missing, has fewer
    // bytes than there are ports, or cannot be mapped.
    CMappedIoDevice(const std::string& name, const std::string& description,
                    std::filesystem::path file, uint64_t offset, uint8_t ports);
    ~CMappedIoDevice() override;

    uint32_t ReadIoPort(int port, uint8_t* val) override;
    uint32_t WriteIoPort(int port, uint8_t val, uint8_t msk) override;
    bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override;
    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override;

  private:
    bool IsThere(int64_t port) const;
    std::string Shortage() const;

    const std::filesystem::path m_path;
    const CFileDescriptor m_file;
    const uint64_t m_offset;
    const size_t m_ahead;       // bytes of the first page in front of the ports
    void* m_pages = nullptr;    // mapped
    volatile uint8_t* m_bytes;  // the ports
    CMutex m_write_lock;        // from reading a port to writing it back
};
