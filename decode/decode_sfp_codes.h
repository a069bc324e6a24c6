// The codes of an SFP's serial ID that stand for one name each (SFF-8024, SFF-8472).
// A code that is reserved or not assigned comes out as its number.
#pragma once

#include <cstdint>
#include <string>

std::string SfpIdentifier(uint8_t code);
std::string SfpExtendedIdentifier(uint8_t code);
std::string SfpConnector(uint8_t code);
std::string SfpEncoding(uint8_t code);
std::string SfpRateSelect(uint8_t code);
std::string SfpExtendedCompliance(uint8_t code);
std::string SfpRevision(uint8_t code);  // of SFF-8472
