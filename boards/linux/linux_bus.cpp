#include "boards/linux/linux_bus.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "boards/linux/smbus_transfer.h"
#include "boards/linux/transfer_result.h"
#include "framework/consent.h"
#include "framework/diag_log_word.h"
#include "framework/fmt_output.h"

namespace {

// What a record becomes at most: a write, and a read behind a repeated start.
constexpr size_t MAX_MESSAGES = 2;
constexpr uint32_t RECORD_MAX = 255;

std::string Where(const std::string& name, const std::string& path) {
    return path.ends_with("/" + name) ? path : name + " (" + path + ")";
}

// Where multiplexers are.
bool IsMuxAddress(uint8_t addr) {
    return addr >= 0x70 && addr <= 0x77;
}

bool IsDriver(const std::string& driver, std::string_view name) {
    return driver == name || driver.starts_with(std::string(name) + " at ");
}

// How many bytes before a read are no more than its address, to the chip of a driver: a
// multiplexer takes the first one for its channels, and a register chip the second one for
// a register's new contents. Without a driver nobody minds.
size_t AddressBytes(const std::string& driver, uint8_t addr) {
    if (driver.empty()) {
        return SIZE_MAX;
    }
    if (IsDriver(driver, "at24")) {
        return 2;
    }
    return IsMuxAddress(addr) ? 0 : 1;
}

}  // namespace

CLinuxBus::CLinuxBus(const std::string& name, const std::string& description,
                     const std::string& path, const CI2cSysfs& sysfs, II2cDev& dev)
    : CRootBus(name, description), m_adapter(path, sysfs, dev), m_where(Where(name, path)) {}

uint32_t CLinuxBus::GetMaxTransSize() {
    return m_adapter.Has(I2C_FUNC_I2C) ? RECORD_MAX : MaxSmbusData(m_adapter);
}

bool CLinuxBus::CanAsk(EScanAccess access) {
    return access == EScanAccess::QUICK_WRITE
               ? m_adapter.Has(I2C_FUNC_SMBUS_QUICK)
               : m_adapter.Has(I2C_FUNC_I2C | I2C_FUNC_SMBUS_READ_BYTE);
}

std::string CLinuxBus::Carrier() const {
    return m_adapter.Description() + ", which has no I2C_FUNC_I2C,";
}

// Whether the kernel need not be asked whose the address is, which costs as much as the
// transfer itself. A byte before a read is a register's address to all but multiplexers.
bool CLinuxBus::IsHarmless(std::span<const CI2cMsg> msgs) const {
    const CI2cMsg& first = msgs.front();
    if (first.read || first.data.empty()) {
        return true;
    }
    if (msgs.size() == 1 || IsMuxAddress(first.addr)) {
        return false;
    }
    return first.data.size() == 1 || (first.data.size() == 2 && m_has_wide_address.at(first.addr));
}

std::optional<CI2cResult> CLinuxBus::Objection(std::span<const CI2cMsg> msgs) {
    if (IsHarmless(msgs)) {
        return {};
    }
    const uint8_t addr = msgs.front().addr;
    const std::string driver = m_adapter.DriverOf(addr);
    const bool reads = msgs.size() > 1;
    if (reads && msgs.front().data.size() <= AddressBytes(driver, addr)) {
        m_has_wide_address.at(addr) = true;
        return {};
    }
    if (driver.empty() || AllowedToWrite(addr, driver)) {
        return {};
    }
    CI2cResult objection = FailedResult(
        msgs, m_where,
        "a kernel driver uses the address (" + driver + "); diagsh --force writes all the same");
    // No chip is at fault, and many commands say no more than that they failed.
    SendLog(LW_WARN, "%s\n", objection.text.c_str());
    return objection;
}

CI2cResult CLinuxBus::Transfer(std::span<const CI2cMsg> msgs, bool /*again*/) {
    return m_adapter.Has(I2C_FUNC_I2C) ? TransferMessages(msgs)
                                       : SmbusTransfer(m_adapter, msgs, m_where);
}

bool CLinuxBus::AllowedToWrite(uint8_t addr, const std::string& driver) const {
    CFmtString what;
    what.printf("write to 0x%02x on %s, which a kernel driver uses (%s)", addr, m_where.c_str(),
                driver.c_str());
    return AllowedByOperator(what.c_str());
}

CI2cResult CLinuxBus::TransferMessages(std::span<const CI2cMsg> msgs) {
    std::array<i2c_msg, MAX_MESSAGES> kernel = {};
    if (msgs.size() > kernel.size()) {
        return FailedResult(msgs, m_where, "more messages than a bus carries in one transfer");
    }
    for (size_t i = 0; i < msgs.size(); ++i) {
        const CI2cMsg& msg = msgs[i];
        if (msg.data.empty() && !m_adapter.Has(I2C_FUNC_SMBUS_QUICK)) {
            return CI2cResult::Other(m_adapter.Description() +
                                     " has no I2C_FUNC_SMBUS_QUICK: it cannot " +
                                     TransferText(msgs));
        }
        kernel[i] = {.addr = msg.addr,
                     .flags = static_cast<uint16_t>(msg.read ? I2C_M_RD : 0),
                     .len = static_cast<uint16_t>(msg.data.size()),
                     .buf = msg.data.data()};
    }
    return ResultOf(m_adapter.Transfer(std::span(kernel).first(msgs.size())), msgs, m_where);
}
