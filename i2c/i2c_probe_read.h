// The one-byte reads with which a bus is searched: they ask for nothing but an
// acknowledge.
#pragma once

#include "i2c/diag_i2c_device.h"

class CI2cProbeRead {
  public:
    CI2cProbeRead() {
        m_req.dir = 1;
        m_req.tsize = 1;
        m_req.data = &m_byte;
    }

    bool Answers(CI2cDevice& bus, uint8_t addr) { return Read(bus, addr, 0); }
    // With command byte 0 ahead: some devices refuse a read that names no register.
    bool AnswersToCommand(CI2cDevice& bus, uint8_t addr) { return Read(bus, addr, 1); }

  private:
    bool Read(CI2cDevice& bus, uint8_t addr, byte_t cmd_sel) {
        m_req.saddr = addr;
        m_req.cmd_sel = cmd_sel;
        return bus.I2cTrans(m_req);
    }

    CI2cXfrReq m_req;
    byte_t m_byte = 0;
};
