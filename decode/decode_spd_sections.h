// The sections of a decoded DDR3 SPD, in the order in which they are printed.
#pragma once

#include <span>

#include "decode/decoded_record.h"
#include "i2c/ddr3_spd.h"

using CSpdFields = std::span<const CFieldDecoder<ddr3_spd_eeprom_t>>;

CSpdFields SpdModuleFields();
CSpdFields SpdTimingFields();
CSpdFields SpdFeatureFields();
CSpdFields SpdPhysicalFields();
CSpdFields SpdManufacturingFields();
