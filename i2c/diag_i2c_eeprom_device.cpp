#include "i2c/diag_i2c_eeprom_device.h"

#include <algorithm>

#include "framework/diag_log_word.h"
#include "i2c/diag_i2c_device.h"
#include "i2c/i2c_eeprom_commands.h"
#include "i2c/i2c_eeprom_memory.h"
#include "i2c/i2c_eeprom_read_cont.h"
#include "i2c/i2c_eeprom_rw_test.h"

namespace {

// The chunk size of both directions; never 0, which would move nothing forever.
uint16_t ChunkSize(const i2c_eeprom_attr_t& attr) {
    return std::max<uint16_t>(1, std::min(attr.xfer_size, attr.wr_pg_size));
}

}  // namespace

CDiagI2cEepromDevice::CDiagI2cEepromDevice(const std::string& n, const std::string& d,
                                           CI2cDevice* i2cDev, i2c_eeprom_attr_t* attr,
                                           bool rd_only, int devId)
    : CDiagI2cSlaveDevice(n, d, i2cDev),
      m_attr(attr != nullptr ? *attr : i2c_eeprom_attr_t{}),
      m_devId(devId),
      m_xfer_size(ChunkSize(m_attr)) {
    AddChild(new CDiagI2cEepromReadCmd("read", "read EEPROM"), NO_SORT);
    if (!rd_only) {
        AddChild(new CDiagI2cEepromWriteCmd("write-byte", "write EEPROM"), NO_SORT);
    }
    AddChild(new CI2cEepromMemory(this, m_attr.mem_size, rd_only), NO_SORT);
    AddChild(new CDiagI2cEepromReadWriteTest(m_attr.mem_size, m_attr.xfer_unit), NO_SORT);
    AddChild(new CDiagI2cEepromReadCont(m_attr.mem_size), NO_SORT);
}

CDiagI2cEepromDevice::~CDiagI2cEepromDevice() = default;

CI2cXfrReq CDiagI2cEepromDevice::NewRequest() const {
    CI2cXfrReq req;
    req.saddr = m_i2c_addr;
    req.switch_ch = m_i2c_ch;
    if (m_attr.mem_addr_size == 1 || m_attr.mem_addr_size == 2) {
        req.cmd_sel = m_attr.mem_addr_size;
    }
    return req;
}

bool CDiagI2cEepromDevice::MoveChunk(CI2cXfrReq& req, uint16_t addr, byte_t* data, uint8_t size) {
    // The low byte of cmd goes out first.
    const bool exchanged = m_attr.mem_addr_size > 1 && m_attr.addrh_first;
    req.cmd = exchanged ? static_cast<uint16_t>((addr << 8) | (addr >> 8)) : addr;
    req.data = data;
    req.tsize = size;
    req.xfer = 0;
    const CGuard<CMutex> guard(m_i2cDev->m_lock);
    return m_i2cDev->I2cTrans(req);
}

bool CDiagI2cEepromDevice::ReadMemory(uint16_t addr, byte_t* buf, uint16_t len) {
    CI2cXfrReq req = NewRequest();
    req.dir = 1;
    while (len != 0) {
        const auto size = static_cast<uint8_t>(std::min(len, m_xfer_size));
        if (!MoveChunk(req, addr, buf, size)) {
            SendLog(LW_ERR_TEST, "ERROR: Memory read failed (addr=%05u nBytes=%u): %s", addr, size,
                    req.errmsg);
            return false;
        }
        if (size == 4) {
            SendLog(LW_HW_TRACE, "RD (addr=%05u) %02X %02X %02X %02X", addr, buf[0], buf[1], buf[2],
                    buf[3]);
        } else {
            SendLog(LW_HW_TRACE, "RD (addr=%05u) %02X", addr, buf[0]);
        }
        addr = static_cast<uint16_t>(addr + size);
        buf += size;
        len = static_cast<uint16_t>(len - size);
    }
    return true;
}

bool CDiagI2cEepromDevice::WriteMemory(uint16_t addr, const byte_t* data, uint16_t len) {
    CI2cXfrReq req = NewRequest();
    while (len != 0) {
        // An unaligned start goes on with as many bytes as it lies behind a
        // multiple of the chunk size, which may be past the end of a page: the
        // root bus knows the pages.
        const auto rest = static_cast<uint16_t>(addr % m_xfer_size);
        const auto size = static_cast<uint8_t>(std::min(len, rest == 0 ? m_xfer_size : rest));
        if (size == 4) {
            SendLog(LW_HW_TRACE, "WR (addr=%05u) %02X %02X %02X %02X", addr, data[0], data[1],
                    data[2], data[3]);
        } else {
            SendLog(LW_HW_TRACE, "WR (addr=%05u) %02X", addr, data[0]);
        }
        // The record is used in both directions; a write leaves the data alone.
        if (!MoveChunk(req, addr, const_cast<byte_t*>(data), size)) {
            SendLog(LW_ERR_TEST, "ERROR: Memory write failed (addr=%05u nBytes=%u): %s", addr, size,
                    req.errmsg);
            return false;
        }
        addr = static_cast<uint16_t>(addr + size);
        data += size;
        len = static_cast<uint16_t>(len - size);
    }
    return true;
}
