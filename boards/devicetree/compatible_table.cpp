#include "boards/devicetree/compatible_table.h"

#include <algorithm>
#include <array>

#include "boards/devicetree/property_reader.h"

namespace {

using enum EBindingKind;

constexpr auto Unsupported = CreateUnsupportedNode;

constexpr std::array BINDINGS = {
    CBinding{"simple-bus", CONTAINER, nullptr, nullptr},
    CBinding{"simple-mfd", CONTAINER, nullptr, nullptr},
    CBinding{"fsl,fman", CONTAINER, nullptr, nullptr},

    CBinding{"fsl-i2c", I2C_BUS, nullptr, nullptr},

    CBinding{"nxp,pca9540", I2C_DEVICE, Unsupported, CreateSimMux},
    CBinding{"nxp,pca9542", I2C_DEVICE, Unsupported, CreateSimMux},
    CBinding{"nxp,pca9543", I2C_DEVICE, Unsupported, CreateSimMux},
    CBinding{"nxp,pca9544", I2C_DEVICE, Unsupported, CreateSimMux},
    CBinding{"nxp,pca9545", I2C_DEVICE, Unsupported, CreateSimMux},
    CBinding{"nxp,pca9546", I2C_DEVICE, Unsupported, CreateSimMux},
    CBinding{"nxp,pca9547", I2C_DEVICE, Unsupported, CreateSimMux},
    CBinding{"nxp,pca9548", I2C_DEVICE, Unsupported, CreateSimMux},

    CBinding{"morva,mfg-eeprom", I2C_DEVICE, Unsupported, CreateSimBoardEeprom},
    CBinding{"morva,param-eeprom", I2C_DEVICE, Unsupported, CreateSimBoardEeprom},
    CBinding{"*,24c01", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c02", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c04", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c08", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c16", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c32", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c64", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c128", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c256", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,24c512", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"*,spd", I2C_DEVICE, Unsupported, CreateSimAt24},
    CBinding{"sff,sfp", I2C_MODULE, Unsupported, CreateSimModuleEeprom},

    CBinding{"nxp,pca9555", I2C_DEVICE, Unsupported, nullptr},
    CBinding{"adi,adt7461", I2C_DEVICE, Unsupported, nullptr},
    CBinding{"ti,tmp75", I2C_DEVICE, Unsupported, nullptr},

    CBinding{"fsl,fman-memac-mdio", MDIO_BUS, Unsupported, nullptr},
    CBinding{"fsl,fman-xmdio", MDIO_BUS, Unsupported, nullptr},
    CBinding{"ethernet-phy-ieee802.3-c22", MDIO_PHY, Unsupported, nullptr},
    CBinding{"ethernet-phy-ieee802.3-c45", MDIO_PHY, Unsupported, nullptr},
};

const CBinding* FindBinding(std::string_view compatible) {
    const auto found = std::find_if(
        BINDINGS.begin(), BINDINGS.end(),
        [compatible](const CBinding& binding) { return binding.compatible == compatible; });
    return found == BINDINGS.end() ? nullptr : &*found;
}

}  // namespace

CMatch MatchCompatible(const CDeviceTreeNode& node) {
    const std::vector<std::string> compatibles = ReadStrings(node, "compatible");
    for (const std::string& compatible : compatibles) {
        if (const CBinding* binding = FindBinding(compatible)) {
            return {binding, compatible};
        }
    }
    for (const std::string& compatible : compatibles) {
        if (const CBinding* binding = FindBinding("*," + std::string(PartName(compatible)))) {
            return {binding, compatible};
        }
    }
    return {nullptr, compatibles.empty() ? std::string() : compatibles.front()};
}
