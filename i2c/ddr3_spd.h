// The contents of a DDR3 module's serial presence detect EEPROM (JEDEC Standard
// 21-C, annex K: "Serial Presence Detect for DDR3 SDRAM Modules"). Bytes only, so
// that it lies in memory as in the chip on every machine.
#pragma once

#include <array>
#include <cstdint>

#include "i2c/record_layout.h"

// The module-specific section of an unbuffered module.
struct ddr3_spd_unbuffered_t {
    uint8_t mod_height;
    uint8_t mod_thickness;
    uint8_t ref_raw_card;
    uint8_t addr_mapping;
    std::array<uint8_t, 53> rest;
};
static_assert(sizeof(ddr3_spd_unbuffered_t) == 57);
MORVA_ASSERT_FIELD(ddr3_spd_unbuffered_t, mod_height, 0, 1);
MORVA_ASSERT_FIELD(ddr3_spd_unbuffered_t, mod_thickness, 1, 1);
MORVA_ASSERT_FIELD(ddr3_spd_unbuffered_t, ref_raw_card, 2, 1);
MORVA_ASSERT_FIELD(ddr3_spd_unbuffered_t, addr_mapping, 3, 1);

// The same section of a registered module.
struct ddr3_spd_registered_t {
    uint8_t mod_height;
    uint8_t mod_thickness;
    uint8_t ref_raw_card;
    uint8_t modu_attr;
    uint8_t thermal;
    uint8_t reg_id_lo;
    uint8_t reg_id_hi;
    uint8_t reg_rev;
    uint8_t reg_type;
    std::array<uint8_t, 8> rcw;
    std::array<uint8_t, 40> rest;
};
static_assert(sizeof(ddr3_spd_registered_t) == 57);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, mod_height, 0, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, mod_thickness, 1, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, ref_raw_card, 2, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, modu_attr, 3, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, thermal, 4, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, reg_id_lo, 5, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, reg_id_hi, 6, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, reg_rev, 7, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, reg_type, 8, 1);
MORVA_ASSERT_FIELD(ddr3_spd_registered_t, rcw, 9, 8);

struct ddr3_spd_eeprom_s {
    uint8_t info_size_crc;
    uint8_t spd_rev;
    uint8_t mem_type;
    uint8_t module_type;
    uint8_t density_banks;
    uint8_t addressing;
    uint8_t module_vdd;
    uint8_t organization;
    uint8_t bus_width;
    uint8_t ftb_div;
    uint8_t mtb_dividend;
    uint8_t mtb_divisor;
    uint8_t tck_min;
    uint8_t res_13;
    uint8_t caslat_lsb;
    uint8_t caslat_msb;
    uint8_t taa_min;
    uint8_t twr_min;
    uint8_t trcd_min;
    uint8_t trrd_min;
    uint8_t trp_min;
    uint8_t tras_trc_ext;
    uint8_t tras_min_lsb;
    uint8_t trc_min_lsb;
    uint8_t trfc_min_lsb;
    uint8_t trfc_min_msb;
    uint8_t twtr_min;
    uint8_t trtp_min;
    uint8_t tfaw_msb;
    uint8_t tfaw_min;
    uint8_t opt_features;
    uint8_t therm_ref_opt;
    uint8_t therm_sensor;
    uint8_t device_type;
    int8_t fine_tck_min;
    int8_t fine_taa_min;
    int8_t fine_trcd_min;
    int8_t fine_trp_min;
    int8_t fine_trc_min;
    std::array<uint8_t, 21> res_39_59;
    std::array<uint8_t, 57> mod_section;  // one of the two above, by module_type
    uint8_t mmid_lsb;
    uint8_t mmid_msb;
    uint8_t mloc;
    std::array<uint8_t, 2> mdate;
    std::array<uint8_t, 4> sernum;
    std::array<uint8_t, 2> crc;
    std::array<uint8_t, 18> mpart;
    std::array<uint8_t, 2> mrev;
    uint8_t dmid_lsb;
    uint8_t dmid_msb;
    std::array<uint8_t, 26> msd;
    std::array<uint8_t, 80> cust;
};
using ddr3_spd_eeprom_t = ddr3_spd_eeprom_s;
static_assert(sizeof(ddr3_spd_eeprom_t) == 256);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, info_size_crc, 0, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, spd_rev, 1, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mem_type, 2, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, module_type, 3, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, density_banks, 4, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, addressing, 5, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, module_vdd, 6, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, organization, 7, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, bus_width, 8, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, ftb_div, 9, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mtb_dividend, 10, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mtb_divisor, 11, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, tck_min, 12, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, res_13, 13, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, caslat_lsb, 14, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, caslat_msb, 15, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, taa_min, 16, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, twr_min, 17, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, trcd_min, 18, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, trrd_min, 19, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, trp_min, 20, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, tras_trc_ext, 21, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, tras_min_lsb, 22, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, trc_min_lsb, 23, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, trfc_min_lsb, 24, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, trfc_min_msb, 25, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, twtr_min, 26, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, trtp_min, 27, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, tfaw_msb, 28, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, tfaw_min, 29, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, opt_features, 30, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, therm_ref_opt, 31, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, therm_sensor, 32, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, device_type, 33, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, fine_tck_min, 34, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, fine_taa_min, 35, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, fine_trcd_min, 36, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, fine_trp_min, 37, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, fine_trc_min, 38, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, res_39_59, 39, 21);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mod_section, 60, 57);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mmid_lsb, 117, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mmid_msb, 118, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mloc, 119, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mdate, 120, 2);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, sernum, 122, 4);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, crc, 126, 2);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mpart, 128, 18);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, mrev, 146, 2);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, dmid_lsb, 148, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, dmid_msb, 149, 1);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, msd, 150, 26);
MORVA_ASSERT_FIELD(ddr3_spd_eeprom_t, cust, 176, 80);
