#include "boards/devicetree/known_part_name.h"

#include <algorithm>
#include <array>

#include "boards/devicetree/part_name.h"

namespace {

struct same_part_t {
    std::string_view part;
    std::string_view known_as;
};

// Other supplies, other addresses or a reset pin; the registers are the same.
constexpr std::array SAME_PARTS = {
    same_part_t{"tmp175", "tmp75"},      // TI SBOS288
    same_part_t{"tmp275", "tmp75"},      // TI SBOS363
    same_part_t{"ina219", "ina220"},     // TI SBOS448
    same_part_t{"pca9554", "pca9534"},   // NXP PCA9554_9554A
    same_part_t{"tca9534", "pca9534"},   // TI SCPS197
    same_part_t{"tca9554", "pca9534"},   // TI SCPS233
    same_part_t{"pca9539", "pca9555"},   // NXP PCA9539_PCA9539R
    same_part_t{"tca9535", "pca9555"},   // TI SCPS201
    same_part_t{"tca9539", "pca9555"},   // TI SCPS202
    same_part_t{"tca9555", "pca9555"},   // TI SCPS200
    same_part_t{"pcf8574a", "pcf8574"},  // NXP PCF8574_PCF8574A
    same_part_t{"pca9846", "pca9546"},   // NXP PCA9846
    same_part_t{"pca9847", "pca9547"},   // NXP PCA9847
    same_part_t{"pca9848", "pca9548"},   // NXP PCA9848
    same_part_t{"pca9849", "pca9544"},   // NXP PCA9849
};

}  // namespace

std::string_view KnownPartName(std::string_view compatible) {
    const std::string_view part = PartName(compatible);
    const auto* same = std::find_if(SAME_PARTS.begin(), SAME_PARTS.end(),
                                    [part](const same_part_t& pair) { return pair.part == part; });
    return same == SAME_PARTS.end() ? part : same->known_as;
}
