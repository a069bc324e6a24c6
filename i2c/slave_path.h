// The way to a chip on an I2C bus, which every kind of slave opens and closes alike.
#pragma once

#include <cstdint>

class CDiagDevice;
class CI2cDevice;

// `ch`: the channel of the switch `bus` that the chip hangs on; -1 when it needs no
// path, nor a bus then. True without a word when there is no way to open.
bool EnableSlavePath(const CDiagDevice& slave, CI2cDevice* bus, int8_t ch);
bool ClearSlavePath(const CDiagDevice& slave, CI2cDevice* bus, int8_t ch);
