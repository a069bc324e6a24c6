// The diagnostics of an SFP or SFP+ module: the 256 bytes at its address 0x51, which
// SFF-8472 calls A2h. Bytes only, so that it lies in memory as in the chip on every
// machine; numbers are big-endian.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "i2c/record_layout.h"

// What is measured, in the order of thresholds and values alike.
enum ESfpQuantity : size_t {
    SFP_TEMPERATURE,
    SFP_VOLTAGE,
    SFP_TX_BIAS,
    SFP_TX_POWER,
    SFP_RX_POWER,
    SFP_LASER_TEMPERATURE,
    SFP_TEC_CURRENT,
    SFP_QUANTITIES
};

using sfp_word_t = std::array<uint8_t, 2>;

struct sfp_thresholds_s {
    sfp_word_t high_alarm;
    sfp_word_t low_alarm;
    sfp_word_t high_warning;
    sfp_word_t low_warning;
};
static_assert(sizeof(sfp_thresholds_s) == 8);
MORVA_ASSERT_FIELD(sfp_thresholds_s, high_alarm, 0, 2);
MORVA_ASSERT_FIELD(sfp_thresholds_s, low_alarm, 2, 2);
MORVA_ASSERT_FIELD(sfp_thresholds_s, high_warning, 4, 2);
MORVA_ASSERT_FIELD(sfp_thresholds_s, low_warning, 6, 2);

// value = slope * raw + offset; the slope in 1/256, the offset as the value.
struct sfp_calibration_s {
    sfp_word_t slope;
    sfp_word_t offset;
};
static_assert(sizeof(sfp_calibration_s) == 4);
MORVA_ASSERT_FIELD(sfp_calibration_s, slope, 0, 2);
MORVA_ASSERT_FIELD(sfp_calibration_s, offset, 2, 2);

struct sfp_diagnostics_s {
    std::array<sfp_thresholds_s, SFP_QUANTITIES> thresholds;
    // Coefficients of a polynomial of the raw power, IEEE 754, the highest power first.
    std::array<std::array<uint8_t, 4>, 5> rx_power;
    sfp_calibration_s tx_bias;
    sfp_calibration_s tx_power;
    sfp_calibration_s temperature;
    sfp_calibration_s voltage;
    std::array<uint8_t, 3> unallocated;
    uint8_t CC_DMI;  // sum of the bytes before it
    std::array<sfp_word_t, SFP_QUANTITIES> values;
    uint8_t status;
    uint8_t reserved;
    std::array<uint8_t, 2> alarms;
    std::array<uint8_t, 2> signal_conditioning;
    std::array<uint8_t, 2> warnings;
    std::array<uint8_t, 138> rest;
};
using sfp_diagnostics_t = sfp_diagnostics_s;
static_assert(sizeof(sfp_diagnostics_t) == 256);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, thresholds, 0, 56);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, rx_power, 56, 20);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, tx_bias, 76, 4);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, tx_power, 80, 4);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, temperature, 84, 4);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, voltage, 88, 4);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, unallocated, 92, 3);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, CC_DMI, 95, 1);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, values, 96, 14);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, status, 110, 1);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, reserved, 111, 1);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, alarms, 112, 2);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, signal_conditioning, 114, 2);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, warnings, 116, 2);
MORVA_ASSERT_FIELD(sfp_diagnostics_t, rest, 118, 138);
