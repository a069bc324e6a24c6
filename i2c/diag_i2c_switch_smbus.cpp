// The SMBus operations of a switch: each goes to the upstream device as it is,
// but for the channel, which is this switch's own business.
#include "i2c/diag_i2c_switch.h"

template <class Operation>
bool CDiagI2cSwitch::ForwardSmbus(int8_t ch, Operation operation) {
    if (!FindUpstream()) {
        return false;
    }
    if (m_sw_mode && ch != NO_CHANNEL) {
        EnablePath(ch);
    }
    return operation(*m_pDev);
}

bool CDiagI2cSwitch::smb_write_quick(int8_t ch, uint8_t addr) {
    // Alone among its kind it looks for the upstream device each time.
    m_pDev = PlainParent();
    return ForwardSmbus(
        ch, [&](CI2cDevice& upstream) { return upstream.smb_write_quick(NO_CHANNEL, addr); });
}

bool CDiagI2cSwitch::smb_read_quick(int8_t ch, uint8_t addr) {
    return ForwardSmbus(
        ch, [&](CI2cDevice& upstream) { return upstream.smb_read_quick(NO_CHANNEL, addr); });
}

bool CDiagI2cSwitch::smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) {
    return ForwardSmbus(
        ch, [&](CI2cDevice& upstream) { return upstream.smb_send_byte(NO_CHANNEL, addr, data); });
}

bool CDiagI2cSwitch::smb_receive_byte(int8_t ch, uint8_t addr, uint8_t* data) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_receive_byte(NO_CHANNEL, addr, data);
    });
}

bool CDiagI2cSwitch::smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_write_byte(NO_CHANNEL, addr, cmd, data);
    });
}

bool CDiagI2cSwitch::smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t* data) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_read_byte(NO_CHANNEL, addr, cmd, data);
    });
}

bool CDiagI2cSwitch::smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_write_word(NO_CHANNEL, addr, cmd, data);
    });
}

bool CDiagI2cSwitch::smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t* data) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_read_word(NO_CHANNEL, addr, cmd, data);
    });
}

bool CDiagI2cSwitch::smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                     uint8_t* buf) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_block_write(NO_CHANNEL, addr, cmd, len, buf);
    });
}

bool CDiagI2cSwitch::smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                    uint8_t* buf) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_block_read(NO_CHANNEL, addr, cmd, len, buf);
    });
}

bool CDiagI2cSwitch::smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                            uint8_t* buf) {
    return ForwardSmbus(ch, [&](CI2cDevice& upstream) {
        return upstream.smb_block_process_call(NO_CHANNEL, addr, cmd, len, buf);
    });
}
