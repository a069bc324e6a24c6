// The record of a manufacturing EEPROM. Bytes only, so that it lies in memory as
// in the chip on every machine; numbers are big-endian, texts have no end.
#pragma once

#include <array>
#include <cstdint>

#include "i2c/record_layout.h"

struct CTarnInventory {
    uint8_t id;
    uint8_t fmt_rev;
    uint8_t num_32B_pages;
    std::array<uint8_t, 13> serial_numb;
    std::array<uint8_t, 22> product_num;
    std::array<uint8_t, 17> batch_num;
    std::array<uint8_t, 10> clei_code;
    std::array<uint8_t, 7> rstate;
    std::array<uint8_t, 8> manu_date;
    std::array<uint8_t, 4> product_code;
    uint8_t product_code_crc;
    uint8_t eprom_reserve;
    std::array<uint8_t, 6> macaddr_start;
    std::array<uint8_t, 2> mac_count;
    std::array<uint8_t, 2> crc_16;  // of the bytes before it
};
static_assert(sizeof(CTarnInventory) == 96);
MORVA_ASSERT_FIELD(CTarnInventory, id, 0, 1);
MORVA_ASSERT_FIELD(CTarnInventory, fmt_rev, 1, 1);
MORVA_ASSERT_FIELD(CTarnInventory, num_32B_pages, 2, 1);
MORVA_ASSERT_FIELD(CTarnInventory, serial_numb, 3, 13);
MORVA_ASSERT_FIELD(CTarnInventory, product_num, 16, 22);
MORVA_ASSERT_FIELD(CTarnInventory, batch_num, 38, 17);
MORVA_ASSERT_FIELD(CTarnInventory, clei_code, 55, 10);
MORVA_ASSERT_FIELD(CTarnInventory, rstate, 65, 7);
MORVA_ASSERT_FIELD(CTarnInventory, manu_date, 72, 8);
MORVA_ASSERT_FIELD(CTarnInventory, product_code, 80, 4);
MORVA_ASSERT_FIELD(CTarnInventory, product_code_crc, 84, 1);
MORVA_ASSERT_FIELD(CTarnInventory, eprom_reserve, 85, 1);
MORVA_ASSERT_FIELD(CTarnInventory, macaddr_start, 86, 6);
MORVA_ASSERT_FIELD(CTarnInventory, mac_count, 92, 2);
MORVA_ASSERT_FIELD(CTarnInventory, crc_16, 94, 2);
