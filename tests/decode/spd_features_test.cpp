#include <gtest/gtest.h>

#include "tests/decode/spd_image.h"

namespace {

TEST(SpdFeatures, TellsTheOptionalFeatures) {
    ExpectSpdCodes(30, "RZQ/6 drive", {{0x00, "no"}, {0x01, "yes"}, {0xFE, "no"}});
    ExpectSpdCodes(30, "RZQ/7 drive", {{0x00, "no"}, {0x02, "yes"}, {0xFD, "no"}});
    ExpectSpdCodes(30, "DLL-off mode", {{0x00, "no"}, {0x80, "yes"}, {0x7F, "no"}});
}

TEST(SpdFeatures, TellsTheThermalAndRefreshOptions) {
    ExpectSpdCodes(31, "Temperature range",
                   {{0x00, "0 to 85 degrees C"}, {0x01, "0 to 95 degrees C"}});
    ExpectSpdCodes(31, "Refresh above 85 degrees C",
                   {{0x01, "2x"}, {0x03, "1x"}, {0x00, "absent"}, {0x02, "absent"}});
    ExpectSpdCodes(31, "Auto self-refresh", {{0x04, "yes"}, {0xFB, "no"}});
    ExpectSpdCodes(31, "On-die thermal sensor readout", {{0x08, "yes"}, {0xF7, "no"}});
    ExpectSpdCodes(31, "Partial array self-refresh", {{0x80, "yes"}, {0x7F, "no"}});
}

TEST(SpdFeatures, TellsTheThermalSensor) {
    ExpectSpdCodes(32, "Thermal sensor on the module",
                   {{0x00, "no"}, {0x80, "yes"}, {0x81, "yes, accuracy 0x01"}});
}

TEST(SpdFeatures, TellsTheDeviceType) {
    ExpectSpdCodes(33, "Device type", {{0x00, "standard monolithic"}, {0x80, "non-standard"}});
    ExpectSpdCodes(33, "Dies in a device",
                   {{0x80, "not specified"},
                    {0x90, "1"},
                    {0xA0, "2"},
                    {0xB0, "4"},
                    {0xC0, "8"},
                    {0xD0, "0x5"},
                    {0xF0, "0x7"}});
    ExpectSpdCodes(33, "Signal loading",
                   {{0xA0, "not specified"},
                    {0xA1, "multi load stack"},
                    {0xA2, "single load stack"},
                    {0xA3, "0x3"}});
}

TEST(SpdFeatures, TellsHowOftenARowMayBeActivated) {
    ExpectSpdCodes(41, "Maximum activate count",
                   {{0x00, "untested"},
                    {0x01, "700000"},
                    {0x02, "600000"},
                    {0x03, "500000"},
                    {0x04, "400000"},
                    {0x05, "300000"},
                    {0x06, "200000"},
                    {0x07, "0x7"},
                    {0x08, "unlimited"},
                    {0x09, "0x9"}});
    ExpectSpdCodes(
        41, "Maximum activate window",
        {{0x00, "8192 x tREFI"}, {0x10, "4096 x tREFI"}, {0x20, "2048 x tREFI"}, {0x30, "0x3"}});
}

}  // namespace
