#include "decode/decode_sfp.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>

#include "decode/decode_sfp_codes.h"
#include "decode/decode_sfp_compliance.h"
#include "decode/decode_sfp_diagnostics.h"
#include "decode/decode_sfp_medium.h"
#include "decode/field_text.h"
#include "i2c/big_endian.h"
#include "i2c/sfp_serial_id.h"

namespace {

using Id = sfp_serial_id_t;
using enum ESfpCompliance;

constexpr uint8_t MORE = 0xFF;  // than the field can tell

// A check code is the sum of the bytes of its part.
uint8_t Sum(const Id& id, size_t begin, size_t end) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(&id);
    return std::accumulate(bytes + begin, bytes + end, uint8_t{0});
}

uint8_t BaseSum(const Id& id) {
    return Sum(id, 0, offsetof(Id, CC_BASE));
}

uint8_t ExtensionSum(const Id& id) {
    return Sum(id, offsetof(Id, Options), offsetof(Id, CC_EXT));
}

// Those of other form factors are elsewhere, or mean something else.
std::string Layout(const Id& id) {
    constexpr uint8_t CODES[] = {0x00,   // unspecified
                                 0x01,   // GBIC, whose layout SFP took over
                                 0x02,   // soldered
                                 0x03,   // SFP
                                 0x0B};  // DWDM-SFP
    const bool is_sfp =
        std::find(std::begin(CODES), std::end(CODES), id.Identifier) != std::end(CODES);
    return is_sfp ? "" : "taken for SFP's, which this form factor may not have";
}

// Two digits each of year, month and day, and a lot.
std::string DateCode(const Id& id) {
    const std::string digits(id.Date_code.begin(), id.Date_code.begin() + 6);
    const std::string date = DateOf("20" + digits);
    if (date.empty()) {
        return TextOf(id.Date_code);
    }
    const std::string lot = TextOf(std::span(id.Date_code).subspan(6));
    return lot == "(none)" ? date : date + ", lot " + lot;
}

std::string Oui(const Id& id) {
    return BigEndian(id.Vendor_OUI) == 0 ? "unspecified" : HexBytes(id.Vendor_OUI, ':');
}

std::string BitRate(const Id& id) {
    const int megabauds = id.BR_Nominal == MORE ? id.BR_max * 250 : id.BR_Nominal * 100;
    return megabauds == 0 ? "unspecified" : std::to_string(megabauds) + " MBd";
}

std::string Percent(uint8_t margin) {
    return margin == 0 ? "unspecified" : std::to_string(margin) + " %";
}

std::string UpperMargin(const Id& id) {
    // The byte of the upper one tells the rate then.
    return Percent(id.BR_Nominal == MORE ? id.BR_min : id.BR_max);
}

std::string LowerMargin(const Id& id) {
    return Percent(id.BR_min);
}

// `tenths` of `unit` for each count. None may mean "not on this fibre" as well as "see the
// technology".
std::string Length(uint8_t count, int tenths, const char* unit) {
    if (count == 0) {
        return "not stated";
    }
    const int length = (count == MORE ? count - 1 : count) * tenths;
    return (count == MORE ? "more than " : "") + Decimal(length / 10.0, 1) + " " + unit;
}

std::string Kilometres(const Id& id) {
    return IsSfpCopperOrCable(id) ? "" : Length(id.Length_9um_km, 10, "km");
}

std::string Hectometres(const Id& id) {
    return IsSfpCopperOrCable(id) ? "" : Length(id.Length_9um_100m, 1, "km");
}

template <uint8_t Id::*COUNT>
std::string TensOfMetres(const Id& id) {
    return IsSfpCopperOrCable(id) ? "" : Length(id.*COUNT, 100, "m");
}

// Cables use the bytes of single-mode fibre for it.
std::string Attenuation(const Id& id, uint8_t decibels) {
    if (!IsSfpPassiveCable(id)) {
        return "";
    }
    return decibels == 0 ? "unspecified" : std::to_string(decibels) + " dB";
}

std::string Copper(const Id& id) {
    return IsSfpCopperOrCable(id) ? Length(id.Length_Copper, 10, "m") : "";
}

// More of the same length, in codes that differ from revision to revision.
std::string CableLengthCode(const Id& id) {
    if (!IsSfpCopperOrCable(id)) {
        return "";
    }
    return id.Length_50um_10m == 0 ? "not stated" : Hex(id.Length_50um_10m);
}

std::string Wavelength(const Id& id) {
    if (HasSfpCableCompliance(id)) {
        return "";
    }
    const uint64_t nanometres = BigEndian(id.Wavelength);
    return nanometres == 0 ? "unspecified" : std::to_string(nanometres) + " nm";
}

std::string VendorSpecific(const Id& id) {
    const std::string text = TextOf(id.Vendor_Specific);
    return text == "(none)" ? "" : text;
}

template <ESfpCompliance GROUP>
std::string Compliances(const Id& id) {
    return SfpCompliances(id, GROUP);
}

constexpr CFieldDecoder<Id> FIELDS[] = {
    {"Module", "Form factor", [](const Id& id) { return SfpIdentifier(id.Identifier); }},
    {"Module", "Layout", Layout},
    {"Module", "Extended identifier",
     [](const Id& id) { return SfpExtendedIdentifier(id.Ext_Identifier); }},
    {"Module", "Connector", [](const Id& id) { return SfpConnector(id.Connector); }},
    {"Module", "Vendor", [](const Id& id) { return TextOf(id.Vendor_name); }},
    {"Module", "Vendor OUI", Oui},
    {"Module", "Part number", [](const Id& id) { return TextOf(id.Vendor_PN); }},
    {"Module", "Revision", [](const Id& id) { return TextOf(id.Vendor_rev); }},
    {"Module", "Serial number", [](const Id& id) { return TextOf(id.Vendor_SN); }},
    {"Module", "Date", DateCode},
    {"Module", "Vendor specific", VendorSpecific},
    {"Compliance", "10G Ethernet", Compliances<ETHERNET_10G>},
    {"Compliance", "InfiniBand", Compliances<INFINIBAND>},
    {"Compliance", "ESCON", Compliances<ESCON>},
    {"Compliance", "SONET", Compliances<SONET>},
    {"Compliance", "SONET reach", SfpSonetReach},
    {"Compliance", "Ethernet", Compliances<ETHERNET>},
    {"Compliance", "Fibre Channel length", Compliances<FC_LENGTH>},
    {"Compliance", "Fibre Channel technology", Compliances<FC_TECHNOLOGY>},
    {"Compliance", "Fibre Channel media", Compliances<FC_MEDIA>},
    {"Compliance", "Fibre Channel speed", Compliances<FC_SPEED>},
    {"Compliance", "Cable technology", Compliances<CABLE>},
    {"Compliance", "Cable complies with",
     [](const Id& id) { return HasSfpCableCompliance(id) ? SfpCableCompliance(id) : ""; }},
    {"Compliance", "Extended compliance",
     [](const Id& id) { return SfpExtendedCompliance(id.Transciever); }},
    {"Compliance", "Unallocated bits", SfpUnallocatedCompliances},
    {"Link", "Encoding", [](const Id& id) { return SfpEncoding(id.Encoding); }},
    {"Link", "Nominal bit rate", BitRate},
    {"Link", "Upper bit rate margin", UpperMargin},
    {"Link", "Lower bit rate margin", LowerMargin},
    {"Link", "Rate select", [](const Id& id) { return SfpRateSelect(id.Rate_ID); }},
    {"Link", "Wavelength", Wavelength},
    {"Link", "Single-mode fibre", Kilometres},
    {"Link", "Single-mode fibre, finer", Hectometres},
    {"Link", "50 um fibre, OM2", TensOfMetres<&Id::Length_50um_OM2>},
    {"Link", "62.5 um fibre, OM1", TensOfMetres<&Id::Length_62p5um>},
    {"Link", "50 um fibre, OM3", TensOfMetres<&Id::Length_50um_10m>},
    {"Link", "50 um fibre, OM4", TensOfMetres<&Id::Length_Copper>},
    {"Link", "Copper or cable", Copper},
    {"Link", "Cable length code", CableLengthCode},
    {"Link", "Attenuation at 12.9 GHz",
     [](const Id& id) { return Attenuation(id, id.Length_9um_km); }},
    {"Link", "Attenuation at 25.78 GHz",
     [](const Id& id) { return Attenuation(id, id.Length_9um_100m); }},
    {"Options", "Signals and functions", SfpOptions},
    {"Options", "Power level", SfpPowerLevel},
    {"Options", "Enhanced options", SfpEnhancedOptions},
    {"Options", "Diagnostics type", SfpDiagnosticsType},
    {"Options", "SFF-8472 revision",
     [](const Id& id) { return SfpRevision(id.SFF_8472_Compliance); }},
    {"Checks", "CC_BASE", [](const Id& id) { return CheckText(id.CC_BASE, BaseSum(id), 2); }},
    {"Checks", "CC_EXT", [](const Id& id) { return CheckText(id.CC_EXT, ExtensionSum(id), 2); }},
};

}  // namespace

CDecodedRecord DecodeSfp(std::span<const uint8_t> image) {
    Id id;
    static_assert(sizeof id == SFP_SIZE);
    std::memcpy(&id, image.data(), sizeof id);
    CDecodedRecord decoded;
    decoded.checks_hold = id.CC_BASE == BaseSum(id) && id.CC_EXT == ExtensionSum(id);
    DecodeFields(id, FIELDS, decoded);
    DecodeSfpDiagnostics(id, image, decoded);
    TellIfBlank(image.first(SFP_SIZE), decoded);
    return decoded;
}
