#include "boards/devicetree/compatible_table.h"

#include <algorithm>
#include <array>

#include "boards/devicetree/i2c_nodes.h"
#include "boards/devicetree/known_part_name.h"
#include "boards/devicetree/plain_node.h"
#include "boards/devicetree/property_reader.h"

namespace {

using enum EBindingKind;

constexpr CBinding Mux(std::string_view compatible) {
    return {compatible, I2C_MUX, CreateMuxNode, CreateSimMux};
}

constexpr CBinding Eeprom(std::string_view compatible, CBinding::DescribeEeprom describe,
                          CBinding::CreateNode create = CreateEepromNode) {
    return {compatible, I2C_DEVICE, create, CreateSimEeprom, describe};
}

constexpr CBinding Registers(std::string_view compatible,
                             CBinding::CreateNode create = CreateRegisterNode) {
    return {compatible, I2C_DEVICE, create, CreateSimRegisters};
}

constexpr std::array BINDINGS = {
    CBinding{"simple-bus", CONTAINER},
    CBinding{"simple-mfd", CONTAINER},
    CBinding{"fsl,fman", CONTAINER},

    CBinding{"fsl-i2c", I2C_BUS},

    Mux("nxp,pca9540"),
    Mux("nxp,pca9542"),
    Mux("nxp,pca9543"),
    Mux("nxp,pca9544"),
    Mux("nxp,pca9545"),
    Mux("nxp,pca9546"),
    Mux("nxp,pca9547"),
    Mux("nxp,pca9548"),
    Mux("nxp,pca9846"),
    Mux("nxp,pca9847"),
    Mux("nxp,pca9848"),
    Mux("nxp,pca9849"),

    Eeprom("morva,mfg-eeprom", DescribeMfgEeprom, CreateMfgEepromNode),
    Eeprom("morva,param-eeprom", DescribeParamEeprom, CreateParamEepromNode),
    Eeprom("*,24c01", DescribeAt24),
    Eeprom("*,24c02", DescribeAt24),
    Eeprom("*,24c04", DescribeAt24),
    Eeprom("*,24c08", DescribeAt24),
    Eeprom("*,24c16", DescribeAt24),
    Eeprom("*,24c32", DescribeAt24),
    Eeprom("*,24c64", DescribeAt24),
    Eeprom("*,24c128", DescribeAt24),
    Eeprom("*,24c256", DescribeAt24),
    Eeprom("*,24c512", DescribeAt24),
    Eeprom("*,24c1024", DescribeAt24),
    Eeprom("*,24cm01", DescribeAt24),
    Eeprom("*,24c2048", DescribeAt24),
    Eeprom("*,24cm02", DescribeAt24),
    Eeprom("*,spd", DescribeSpd, CreateSpdNode),
    CBinding{"sff,sfp", I2C_MODULE, CreateSfpNode, CreateSimModule, DescribeModuleEeprom},

    Registers("*,adt7461"),
    Registers("*,ds3232"),
    Registers("*,ina220"),
    Registers("*,lm75"),
    Registers("*,tmp75"),
    Registers("morva,quillbank-cpld"),
    Registers("*,pca9534", CreateExpanderNode),
    Registers("*,pca9535", CreateExpanderNode),
    Registers("*,pca9555", CreateExpanderNode),
    Registers("*,pcf8574", CreateQuasiExpanderNode),

    CBinding{"morva,io-ports", IO_PORTS},

    CBinding{"fsl,fman-memac-mdio", MDIO_BUS},
    CBinding{"fsl,fman-xmdio", MDIO_BUS},
    CBinding{"ethernet-phy-ieee802.3-c22", MDIO_PHY},
    CBinding{"ethernet-phy-ieee802.3-c45", MDIO_C45_PHY},
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
        if (const CBinding* binding = FindBinding("*," + std::string(KnownPartName(compatible)))) {
            return {binding, compatible};
        }
    }
    return {nullptr, compatibles.empty() ? std::string() : compatibles.front()};
}
