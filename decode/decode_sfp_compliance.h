// The bits of an SFP's serial ID that stand for one name each: what it complies with,
// its options, its kind of diagnostics (SFF-8472).
#pragma once

#include <string>

#include "i2c/sfp_serial_id.h"

enum class ESfpCompliance {
    ETHERNET_10G,
    INFINIBAND,
    ESCON,
    SONET,
    ETHERNET,
    FC_LENGTH,
    FC_TECHNOLOGY,
    CABLE,
    FC_MEDIA,
    FC_SPEED,
};

// The names of the bits that are set, or empty.
std::string SfpCompliances(const sfp_serial_id_t& id, ESfpCompliance group);
// "LR-2": the SONET reach by its specifiers; their number when they tell of none, and
// empty without them.
std::string SfpSonetReach(const sfp_serial_id_t& id);
// Compliance bits that are set and have no meaning, as "byte 5 bit 7"; or empty.
std::string SfpUnallocatedCompliances(const sfp_serial_id_t& id);

// "none" when no bit is set.
std::string SfpOptions(const sfp_serial_id_t& id);
std::string SfpPowerLevel(const sfp_serial_id_t& id);
std::string SfpEnhancedOptions(const sfp_serial_id_t& id);
std::string SfpDiagnosticsType(const sfp_serial_id_t& id);
// Of what HasSfpCableCompliance.
std::string SfpCableCompliance(const sfp_serial_id_t& id);
