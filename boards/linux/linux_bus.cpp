#include "boards/linux/linux_bus.h"

#include <array>

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

// A write before a read only tells the slave what to read.
bool OnlyWrites(std::span<const CI2cMsg> msgs) {
    return msgs.size() == 1 && !msgs.front().read && !msgs.front().data.empty();
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

CI2cResult CLinuxBus::Transfer(std::span<const CI2cMsg> msgs, bool again) {
    // Who asks again was allowed to ask.
    if (OnlyWrites(msgs) && !again) {
        const std::string driver = m_adapter.DriverOf(msgs.front().addr);
        if (!driver.empty() && !AllowedToWrite(msgs.front().addr, driver)) {
            CI2cResult refusal = FailedResult(msgs, m_where,
                                              "a kernel driver uses the address (" + driver +
                                                  "); diagsh --force writes all the same");
            // No chip is at fault, and many commands say no more than that they failed.
            SendLog(LW_WARN, "%s\n", refusal.text.c_str());
            return refusal;
        }
    }
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
