#include "boards/i2c_sim/adapter.h"

#include <cerrno>

// Kernel documentation, "I2C/SMBus Fault Codes".
int CAdapter::ResultOf(const CI2cResult& result, size_t messages) const {
    switch (result.outcome) {
        case I2C_OK:
            return static_cast<int>(messages);
        case I2C_NO_ADDR_ACK:
            return m_traits.no_ack.short_count ? static_cast<int>(result.msg)
                                               : -m_traits.no_ack.error;
        case I2C_NO_DATA_ACK:
            return m_traits.no_ack.short_count ? static_cast<int>(result.msg) : -EIO;
        case I2C_BUS_STUCK:
            return -EBUSY;
        case I2C_ARB_LOST:
            return -EAGAIN;
        case I2C_OTHER:
            break;
    }
    return -EIO;
}
