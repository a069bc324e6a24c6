// How the contents of an SPD EEPROM are printed.
#include <cstdio>
#include <span>

#include "framework/diag_log_word.h"
#include "i2c/diag_spd_eeprom.h"

namespace {

using CBytes = std::span<const byte_t>;

// One line for each byte from 0 on. Operators and their scripts know them with
// their uneven columns.
constexpr const char* FIRST_LINES[] = {
    "%-3d    : %02x info_size_crc  bytes written into serial memory, CRC coverage\n",
    "%-3d    : %02x spd_rev        SPD Revision\n",
    "%-3d    : %02x mem_type       Key Byte / DRAM Device Type\n",
    "%-3d    : %02x module_type    Key Byte / Module Type\n",
    "%-3d    : %02x density_banks  SDRAM Density and Banks\n",
    "%-3d    : %02x addressing     SDRAM Addressing\n",
    "%-3d    : %02x module_vdd     Module Nominal Voltage, VDD\n",
    "%-3d    : %02x organization   Module Organization\n",
    "%-3d    : %02x bus_width      Module Memory Bus Width\n",
    "%-3d    : %02x ftb_div        Fine Timebase (FTB) Dividend / Divisor\n",
    "%-3d    : %02x mtb_dividend   Medium Timebase (MTB) Dividend\n",
    "%-3d    : %02x mtb_divisor    Medium Timebase (MTB) Divisor\n",
    "%-3d    : %02x tck_min        SDRAM Minimum Cycle Time\n",
    "%-3d    : %02x res_13         Reserved\n",
    "%-3d    : %02x caslat_lsb     CAS Latencies Supported, LSB\n",
    "%-3d    : %02x caslat_msb     CAS Latencies Supported, MSB\n",
    "%-3d    : %02x taa_min        Min CAS Latency Time\n",
    "%-3d    : %02x twr_min        Min Write REcovery Time\n",
    "%-3d    : %02x trcd_min       Min RAS# to CAS# Delay Time\n",
    "%-3d    : %02x trrd_min       Min Row Active to Row Active Delay Time\n",
    "%-3d    : %02x trp_min        Min Row Precharge Delay Time\n",
    "%-3d    : %02x tras_trc_ext   Upper Nibbles for tRAS and tRC\n",
    "%-3d    : %02x tras_min_lsb   Min Active to Precharge Delay Time, LSB\n",
    "%-3d    : %02x trc_min_lsb Min Active to Active/Refresh Delay Time, LSB\n",
    "%-3d    : %02x trfc_min_lsb   Min Refresh Recovery Delay Time LSB\n",
    "%-3d    : %02x trfc_min_msb   Min Refresh Recovery Delay Time MSB\n",
    "%-3d    : %02x twtr_min Min Internal Write to Read Command Delay Time\n",
    "%-3d    : %02x trtp_min Min Internal Read to Precharge Command Delay Time\n",
    "%-3d    : %02x tfaw_msb       Upper Nibble for tFAW\n",
    "%-3d    : %02x tfaw_min       Min Four Activate Window Delay Time\n",
    "%-3d    : %02x opt_features   SDRAM Optional Features\n",
    "%-3d    : %02x therm_ref_opt  SDRAM Thermal and Refresh Opts\n",
    "%-3d    : %02x therm_sensor  SDRAM Thermal Sensor\n",
    "%-3d    : %02x device_type  SDRAM Device Type\n",
    "%-3d    : %02x fine_tck_min  Fine offset for tCKmin\n",
    "%-3d    : %02x fine_taa_min  Fine offset for tAAmin\n",
    "%-3d    : %02x fine_trcd_min Fine offset for tRCDmin\n",
    "%-3d    : %02x fine_trp_min  Fine offset for tRPmin\n",
    "%-3d    : %02x fine_trc_min  Fine offset for tRCmin\n",
};

constexpr size_t MODULE_AT = 60;

constexpr const char* REGISTERED_LINES[] = {
    "%-3d    : %02x mod_height    (Registered) Module Nominal Height\n",
    "%-3d    : %02x mod_thickness (Registered) Module Maximum Thickness\n",
    "%-3d    : %02x ref_raw_card  (Registered) Reference Raw Card Used\n",
    "%-3d    : %02x modu_attr     (Registered) DIMM Module Attributes\n",
    "%-3d    : %02x thermal       (Registered) Thermal Heat Spreader Solution\n",
    "%-3d    : %02x reg_id_lo     (Registered) Register Manufacturer ID Code, LSB\n",
    "%-3d    : %02x reg_id_hi     (Registered) Register Manufacturer ID Code, MSB\n",
    "%-3d    : %02x reg_rev       (Registered) Register Revision Number\n",
    "%-3d    : %02x reg_type      (Registered) Register Type\n",
};

constexpr const char* UNBUFFERED_LINES[] = {
    "%-3d    : %02x mod_height    (Unbuffered) Module Nominal Height\n",
    "%-3d    : %02x mod_thickness (Unbuffered) Module Maximum Thickness\n",
    "%-3d    : %02x ref_raw_card  (Unbuffered) Reference Raw Card Used\n",
    "%-3d    : %02x addr_mapping  (Unbuffered) Address mapping from Edge Connector to DRAM\n",
};

constexpr size_t RCW_AT = 69;
constexpr size_t RCW_SIZE = 8;

void PrintLines(const CDiagMenu& device, std::span<const char* const> lines, CBytes spd,
                size_t at) {
    for (const char* line : lines) {
        device.SendLog(LW_PRINT, line, static_cast<int>(at), spd[at]);
        ++at;
    }
}

// "122-125: " and the bytes `first` to `last`.
void PrintRange(const CDiagMenu& device, const char* byte_format, CBytes spd, size_t first,
                size_t last) {
    device.SendLog(LW_PRINT, "%-3d-%3d: ", static_cast<int>(first), static_cast<int>(last));
    for (const byte_t byte : spd.subspan(first, last - first + 1)) {
        device.SendLog(LW_PRINT, byte_format, byte);
    }
}

// Past the log, as they always were.
void PrintReserved(CBytes spd) {
    std::printf("%-3d-%3d: ", 39, 59);
    for (const byte_t byte : spd.subspan(39, 21)) {
        std::printf("%02x ", byte);
    }
    std::puts("\n");
}

void PrintModule(const CDiagMenu& device, CBytes spd, uint8_t module_type) {
    switch (module_type) {
        case 1:  // RDIMM
        case 5:  // Mini-RDIMM
            PrintLines(device, REGISTERED_LINES, spd, MODULE_AT);
            for (size_t i = 0; i < RCW_SIZE; ++i) {
                device.SendLog(LW_PRINT, "%-3d    : %02x rcw[%d]\n", static_cast<int>(RCW_AT + i),
                               spd[RCW_AT + i], static_cast<int>(i));
            }
            break;
        case 2:  // UDIMM
        case 3:  // SO-DIMM
        case 4:  // Micro-DIMM
        case 6:  // Mini-UDIMM
            PrintLines(device, UNBUFFERED_LINES, spd, MODULE_AT);
            break;
        default:
            PrintRange(device, "%02x", spd, 60, 116);
            break;
    }
}

}  // namespace

void CDiagSpdEepromDevice::ShowSPD(ddr3_spd_eeprom_t* spd) const {
    const CBytes bytes(reinterpret_cast<const byte_t*>(spd), sizeof *spd);
    PrintLines(*this, FIRST_LINES, bytes, 0);
    PrintReserved(bytes);
    PrintModule(*this, bytes, spd->module_type);
    SendLog(LW_PRINT, "%-3d    : %02x Module MfgID Code LSB - JEP-106\n", 117, spd->mmid_lsb);
    SendLog(LW_PRINT, "%-3d    : %02x Module MfgID Code MSB - JEP-106\n", 118, spd->mmid_msb);
    SendLog(LW_PRINT, "%-3d    : %02x Mfg Location\n", 119, spd->mloc);
    SendLog(LW_PRINT, "%-3d-%3d: %02x %02x Mfg Date\n", 120, 121, spd->mdate[0], spd->mdate[1]);
    PrintRange(*this, "%02x ", bytes, 122, 125);
    SendLog(LW_PRINT, "   Module Serial Number\n");
    SendLog(LW_PRINT, "%-3d-%3d: %02x %02x   SPD CRC\n", 126, 127, spd->crc[0], spd->crc[1]);
    PrintRange(*this, "%02x ", bytes, 128, 145);
    SendLog(LW_PRINT, "   Mfg's Module Part Number\n");
    SendLog(LW_PRINT, "%-3d-%3d: %02x %02x Module Revision code\n", 146, 147, spd->mrev[0],
            spd->mrev[1]);
    SendLog(LW_PRINT, "%-3d    : %02x DRAM MfgID Code LSB - JEP-106\n", 148, spd->dmid_lsb);
    SendLog(LW_PRINT, "%-3d    : %02x DRAM MfgID Code MSB - JEP-106\n", 149, spd->dmid_msb);
    PrintRange(*this, "%02x ", bytes, 150, 175);
    SendLog(LW_PRINT, "   Mfg's Specific Data\n");
    // The customer's bytes have the same label.
    PrintRange(*this, "%02x", bytes, 176, 255);
    SendLog(LW_PRINT, "   Mfg's Specific Data\n");
}
