// One I2C transfer: what a slave is sent and what it shall answer.
#pragma once

#include <cstdint>
#include <cstring>

#include "framework/diag_types.h"

struct CI2cXfrReq {
    byte_t saddr = 0;        // 7-bit slave address
    byte_t esaddr = 0;       // extended slave address
    byte_t cmd_sel = 0;      // command bytes sent before the data: 0, 1 or 2
    byte_t baddr_sel = 0;    // selects baddr
    uint16_t cmd = 0;        // one command byte, or two as (second << 8) | first
    uint32_t baddr = 0;      // byte or block address inside the slave
    byte_t* data = nullptr;  // the caller's buffer of tsize bytes
    byte_t tsize = 0;
    byte_t dir = 0;         // 1 = read, 0 = write
    byte_t xfer = 0;        // transfer kind
    byte_t rpec_en = 0;     // SMBus packet error checking on reads
    byte_t wpec_en = 0;     // and on writes
    int8_t switch_ch = 0;   // downstream channel of the switch, -1 = none
    char errmsg[256] = {};  // what went wrong, left by the transfer code

    // Stores a text, cut to what errmsg holds.
    void SetErrMsg(const char* text) {
        std::strncpy(errmsg, text, sizeof errmsg - 1);
        errmsg[sizeof errmsg - 1] = '\0';
    }
    void ClrErrMsg() { errmsg[0] = '\0'; }
};
