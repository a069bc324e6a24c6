// A byte-addressed serial EEPROM. Children: "read", "write-byte" (not on a
// read-only one), the array "memory", and the tests "rw-test" and "read-cont".
#pragma once

#include <cstdint>
#include <string>

#include "i2c/DiagI2cSlaveDevice.h"
#include "i2c/i2c_xfr_req.h"

// One EEPROM part.
struct i2c_eeprom_attr_t {
    uint32_t mem_size = 8192;   // bytes
    uint8_t mem_addr_size = 2;  // memory-address bytes ahead of the data: 1 or 2, else none
    bool addrh_first = true;    // of two address bytes the high one goes out first
    uint8_t xfer_unit = 1;      // access unit of the read/write test
    uint8_t wr_pg_size = 32;    // write page, bytes
    uint8_t xfer_size = 1;      // largest transfer, bytes
    uint8_t rd_wr = 0;          // carried along, of no effect
};

class CDiagI2cEepromDevice : public CDiagI2cSlaveDevice {
  public:
    // Copies `attr`; null stands for the record's defaults. `devId` is the
    // creator's own number.
    CDiagI2cEepromDevice(const std::string& n, const std::string& d, CI2cDevice* i2cDev,
                         i2c_eeprom_attr_t* attr, bool rd_only, int devId);
    ~CDiagI2cEepromDevice() override;

    // Move `len` bytes from or to memory address `addr` on, in transfers of at
    // most m_xfer_size bytes, each under the bus's lock. The way to the chip
    // must be open. False, and a log line, at the first transfer that failed.
    // Nothing waits for write cycles; that is the root bus's business.
    bool ReadMemory(uint16_t addr, byte_t* buf, uint16_t len);
    bool WriteMemory(uint16_t addr, const byte_t* data, uint16_t len);

    int getDevId() const { return m_devId; }
    uint32_t GetMemSize() const { return m_attr.mem_size; }

  protected:
    i2c_eeprom_attr_t m_attr;
    int m_devId;
    uint16_t m_xfer_size;

  private:
    // A record with all that the chunks of one call have in common.
    CI2cXfrReq NewRequest() const;
    bool MoveChunk(CI2cXfrReq& req, uint16_t addr, byte_t* data, uint8_t size);
};
