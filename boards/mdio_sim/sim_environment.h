// What morva-mdio-sim tells the object that it preloads: all of it is in the environment,
// so that it reaches every program that COMMAND starts.
#pragma once

#include <optional>

// The file that holds the CPhyBus, open in COMMAND for as long as it runs.
inline constexpr const char* BUS_VARIABLE = "MORVA_MDIO_SIM_BUS";
// And its name in memory, by which a descriptor of the driver is known.
inline constexpr const char* BUS_NAME = "morva-mdio-sim-bus";

// Faults on purpose: every open of the driver, or every access, fails with this error number.
inline constexpr const char* OPEN_FAULT_VARIABLE = "MORVA_MDIO_SIM_OPEN_ERRNO";
inline constexpr const char* ACCESS_FAULT_VARIABLE = "MORVA_MDIO_SIM_IOCTL_ERRNO";
inline constexpr int LAST_ERRNO = 4095;

// The error number of a fault, 0 without the fault; nothing when the text is no such number.
std::optional<int> FaultFrom(const char* variable);
// Says on standard error what is wrong with that text, and what would be right.
void TellWrongFault(const char* variable);
