#include "boards/chips/register_access.h"

#include "boards/chips/register_part.h"
#include "framework/diag_log_word.h"
#include "framework/diag_mutex.h"
#include "i2c/diag_i2c_device.h"

namespace {

uint8_t PointerOf(uint64_t first, const diag_reg_st& reg, uint32_t index) {
    return static_cast<uint8_t>(first + uint64_t{index} * reg.addr_stride);
}

}  // namespace

bool CRegisterAccess::Read(const diag_reg_st& reg, uint32_t index, diag_regdata_t& data) const {
    if (reg.access == DIAG_REGACC_WO || reg.access == DIAG_REGACC_NONE) {
        m_chip.SendLog(LW_ERR_SW, "register %s cannot be read\n", reg.name);
        return false;
    }
    byte_t bytes[sizeof data] = {};
    const size_t count = BytesOf(reg.dtype);
    if (!Transfer(reg, PointerOf(reg.offset, reg, index), true, bytes, count)) {
        return false;
    }
    data = 0;
    for (size_t i = 0; i < count; ++i) {
        data = data << 8 | bytes[i];
    }
    return true;
}

bool CRegisterAccess::Write(const diag_reg_st& reg, uint32_t index, diag_regdata_t data) const {
    if (reg.access == DIAG_REGACC_RO || reg.access == DIAG_REGACC_RC ||
        reg.access == DIAG_REGACC_NONE) {
        m_chip.SendLog(LW_ERR_SW, "register %s cannot be written\n", reg.name);
        return false;
    }
    const bool elsewhere = (reg.flags & HAS_WRITE_POINTER) != 0;
    const uint64_t first = elsewhere ? reg.flags & 0xFF : reg.offset;
    byte_t bytes[sizeof data] = {};
    const size_t count = BytesOf(reg.dtype);
    for (size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<byte_t>(data >> 8 * (count - 1 - i));
    }
    return Transfer(reg, PointerOf(first, reg, index), false, bytes, count);
}

bool CRegisterAccess::Transfer(const diag_reg_st& reg, uint8_t pointer, bool read, byte_t* bytes,
                               size_t count) const {
    CI2cXfrReq req;
    req.saddr = m_place.addr;
    req.cmd_sel = (reg.flags & HAS_NO_POINTER) != 0 ? 0 : 1;
    req.cmd = pointer;
    req.data = bytes;
    req.tsize = static_cast<byte_t>(count);
    req.dir = read ? 1 : 0;
    req.switch_ch = m_place.channel;

    const CGuard<CMutex> guard(m_place.bus->m_lock);
    const bool ok = m_place.bus->I2cTrans(req);
    if (!ok) {
        m_chip.SendLog(LW_ERR_TEST, "register %s cannot be %s: %s\n", reg.name,
                       read ? "read" : "written", req.errmsg);
    }
    return ok;
}
