// A chip that nothing is known of but its place: it shows what hangs where, and
// behind a switch its path can be opened, so that transfers by hand reach it.
#pragma once

#include <string>

#include "boards/chips/board_place.h"
#include "i2c/DiagI2cSlaveDevice.h"

class CBoardSlave : public CDiagI2cSlaveDevice {
  public:
    CBoardSlave(const std::string& name, const std::string& description, const board_place_t& place)
        : CDiagI2cSlaveDevice(name, description, place.bus) {
        m_i2c_ch = place.channel;
        m_i2c_addr = place.addr;
    }
};
