// The serial ID of an SFP or SFP+ module: the first 128 bytes at its address 0x50
// (SFF-8472, "Serial ID: Data Fields", page A0h). Bytes only, so that it lies in
// memory as in the chip on every machine.
#pragma once

#include <array>
#include <cstdint>

#include "i2c/record_layout.h"

struct sfp_serial_id_s {
    uint8_t Identifier;
    uint8_t Ext_Identifier;
    uint8_t Connector;
    std::array<uint8_t, 8> Transceiver;
    uint8_t Encoding;
    uint8_t BR_Nominal;
    uint8_t Rate_ID;
    uint8_t Length_9um_km;
    uint8_t Length_9um_100m;
    uint8_t Length_50um_OM2;
    uint8_t Length_62p5um;
    uint8_t Length_Copper;
    uint8_t Length_50um_10m;
    std::array<uint8_t, 16> Vendor_name;
    uint8_t Transciever;
    std::array<uint8_t, 3> Vendor_OUI;
    std::array<uint8_t, 16> Vendor_PN;
    std::array<uint8_t, 4> Vendor_rev;
    std::array<uint8_t, 2> Wavelength;
    uint8_t Unallocated;
    uint8_t CC_BASE;
    std::array<uint8_t, 2> Options;
    uint8_t BR_max;
    uint8_t BR_min;
    std::array<uint8_t, 16> Vendor_SN;
    std::array<uint8_t, 8> Date_code;
    uint8_t Diagnostic_Monitoring_Type;
    uint8_t Enhanced_Options;
    uint8_t SFF_8472_Compliance;
    uint8_t CC_EXT;
    std::array<uint8_t, 32> Vendor_Specific;
};
using sfp_serial_id_t = sfp_serial_id_s;
static_assert(sizeof(sfp_serial_id_t) == 128);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Identifier, 0, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Ext_Identifier, 1, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Connector, 2, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Transceiver, 3, 8);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Encoding, 11, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, BR_Nominal, 12, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Rate_ID, 13, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Length_9um_km, 14, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Length_9um_100m, 15, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Length_50um_OM2, 16, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Length_62p5um, 17, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Length_Copper, 18, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Length_50um_10m, 19, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Vendor_name, 20, 16);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Transciever, 36, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Vendor_OUI, 37, 3);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Vendor_PN, 40, 16);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Vendor_rev, 56, 4);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Wavelength, 60, 2);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Unallocated, 62, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, CC_BASE, 63, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Options, 64, 2);
MORVA_ASSERT_FIELD(sfp_serial_id_t, BR_max, 66, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, BR_min, 67, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Vendor_SN, 68, 16);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Date_code, 84, 8);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Diagnostic_Monitoring_Type, 92, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Enhanced_Options, 93, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, SFF_8472_Compliance, 94, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, CC_EXT, 95, 1);
MORVA_ASSERT_FIELD(sfp_serial_id_t, Vendor_Specific, 96, 32);
