// What an SFP module works on, since some bytes of its serial ID tell of a fibre, of copper
// or of the cable that it is (SFF-8472).
#pragma once

#include "i2c/sfp_serial_id.h"

// Whether the bytes of the wavelength tell what a cable complies with.
bool HasSfpCableCompliance(const sfp_serial_id_t& id);

// Whether the bytes of single-mode fibre tell a cable's attenuation.
bool IsSfpPassiveCable(const sfp_serial_id_t& id);

// Whether it has no fibre to be plugged in: it is a cable, of fibre or of copper, or takes
// one of copper.
bool IsSfpCopperOrCable(const sfp_serial_id_t& id);
