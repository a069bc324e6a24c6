// The register tables of all parts, one file each.
#pragma once

#include "boards/chips/register_part.h"

extern const register_part_t ADT7461;
extern const register_part_t DS3232;
extern const register_part_t INA220;
extern const register_part_t LM75;
extern const register_part_t PCA9534;
extern const register_part_t PCA9535;
extern const register_part_t PCA9555;
extern const register_part_t PCF8574;
extern const register_part_t QUILLBANK_CPLD;
extern const register_part_t TMP75;
