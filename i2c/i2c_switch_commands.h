// The channel commands of a switch: "show-channels", "set-channel",
// "clear-channel", "set-channels", "clear-channels", "sel-channel" and
// "disable-channels". They act on the chip directly, whatever the path mode.
#pragma once

class CDiagI2cSwitch;

// Hangs all of them below `i2c_switch`.
void AddI2cSwitchCommands(CDiagI2cSwitch& i2c_switch);
