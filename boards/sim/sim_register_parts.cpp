// What the simulated register chips hold after power-on, which of it can be written (from
// the data sheets that boards/chips/parts names), and what the world outside gives them:
// a room of 24 degrees, a processor of 47, 12 V and 2.5 A over 10 mOhm.
#include <algorithm>
#include <array>

#include "boards/sim/sim_ds3232.h"
#include "boards/sim/sim_expander.h"
#include "boards/sim/sim_ina220.h"
#include "boards/sim/sim_registers.h"
#include "framework/diag_types.h"

namespace {

constexpr uint8_t VT_BITS8 = VT_UINT8 | VF_HEX | VF_PAD;
constexpr uint8_t VT_BITS16 = VT_UINT16 | VF_HEX | VF_PAD;

constexpr sim_register_t ReadOnly(uint8_t pointer, uint8_t bytes, uint16_t reset) {
    return {.pointer = pointer, .bytes = bytes, .reset = reset};
}
constexpr sim_register_t Writable(uint8_t pointer, uint8_t bytes, uint16_t reset, uint16_t bits) {
    return {.pointer = pointer, .bytes = bytes, .reset = reset, .writable = bits};
}
constexpr sim_register_t WrittenAt(uint8_t write_pointer, sim_register_t reg) {
    reg.write_pointer = write_pointer;
    return reg;
}
constexpr sim_register_t Clears(sim_register_t reg) {
    reg.clears = true;
    return reg;
}
constexpr sim_register_t WriteOnly(sim_register_t reg) {
    reg.write_only = true;
    return reg;
}

constexpr std::array LM75 = {ReadOnly(0, 2, 0x1800), Writable(1, 1, 0x00, 0x1F),
                             Writable(2, 2, 0x4B00, 0xFF80), Writable(3, 2, 0x5000, 0xFF80)};
constexpr std::array LM75_OUTSIDE = {sim_outside_t{
    "temp", "temperature, 15:7 in 0.5 degrees Celsius, two's complement", VT_BITS16, 0}};

// The one-shot bit of the configuration is none to read.
constexpr std::array TMP75 = {ReadOnly(0, 2, 0x1810), Writable(1, 1, 0x00, 0x7F),
                              Writable(2, 2, 0x4B00, 0xFFF0), Writable(3, 2, 0x5000, 0xFFF0)};
constexpr std::array TMP75_OUTSIDE = {sim_outside_t{
    "temp", "temperature, 15:4 in 1/16 degrees Celsius, two's complement", VT_BITS16, 0}};

constexpr std::array ADT7461 = {
    ReadOnly(0x00, 1, 31),
    ReadOnly(0x01, 1, 47),
    Clears(ReadOnly(0x02, 1, 0x00)),
    WrittenAt(0x09, Writable(0x03, 1, 0x00, 0xE4)),
    WrittenAt(0x0A, Writable(0x04, 1, 0x08, 0x0F)),
    WrittenAt(0x0B, Writable(0x05, 1, 0x55, 0xFF)),
    WrittenAt(0x0C, Writable(0x06, 1, 0x00, 0xFF)),
    WrittenAt(0x0D, Writable(0x07, 1, 0x55, 0xFF)),
    WrittenAt(0x0E, Writable(0x08, 1, 0x00, 0xFF)),
    ReadOnly(0x10, 1, 0x40),
    Writable(0x11, 1, 0x00, 0xFF),
    Writable(0x12, 1, 0x00, 0xC0),
    Writable(0x13, 1, 0x00, 0xC0),
    Writable(0x14, 1, 0x00, 0xC0),
    Writable(0x19, 1, 0x55, 0xFF),
    Writable(0x20, 1, 0x55, 0xFF),
    Writable(0x21, 1, 0x0A, 0xFF),
    Writable(0x22, 1, 0x01, 0x8F),
    ReadOnly(0xFE, 1, 0x41),
    ReadOnly(0xFF, 1, 0x51),
};
constexpr std::array ADT7461_OUTSIDE = {
    sim_outside_t{"local-temp", "own temperature in degrees Celsius", VT_UINT8, 0x00},
    sim_outside_t{"remote-temp", "the diode's temperature in degrees Celsius", VT_UINT8, 0x01},
    sim_outside_t{"status", "what is out of its limits", VT_BITS8, 0x02},
};

constexpr std::array INA220 = {Writable(0, 2, 0x399F, 0xBFFF),
                               ReadOnly(1, 2, 2500),
                               ReadOnly(2, 2, 0x5DC2),
                               ReadOnly(3, 2, 0),
                               ReadOnly(4, 2, 0),
                               Writable(5, 2, 0x0000, 0xFFFE)};
constexpr std::array INA220_OUTSIDE = {
    sim_outside_t{"shunt-voltage", "voltage over the shunt in 10 uV", VT_INT16, 1},
    sim_outside_t{"bus-voltage", "15:3 voltage of the bus in 4 mV, 1 conversion ready", VT_BITS16,
                  2}};

constexpr std::array ONE_PORT = {ReadOnly(0, 1, 0xFF), Writable(1, 1, 0xFF, 0xFF),
                                 Writable(2, 1, 0x00, 0xFF), Writable(3, 1, 0xFF, 0xFF)};
constexpr std::array TWO_PORTS = {ReadOnly(0, 1, 0xFF),       ReadOnly(1, 1, 0xFF),
                                  Writable(2, 1, 0xFF, 0xFF), Writable(3, 1, 0xFF, 0xFF),
                                  Writable(4, 1, 0x00, 0xFF), Writable(5, 1, 0x00, 0xFF),
                                  Writable(6, 1, 0xFF, 0xFF), Writable(7, 1, 0xFF, 0xFF)};
constexpr char PINS[] = "levels of the pins; poked: 0 pulls the pin low, 1 lets go of it";
constexpr std::array ONE_PORT_OUTSIDE = {sim_outside_t{"pins", PINS, VT_BITS8, 0}};
constexpr std::array TWO_PORTS_OUTSIDE = {sim_outside_t{"pins", PINS, VT_BITS16, 0}};

// Each is written at the other's place, so that the latch is.
constexpr std::array PCF8574 = {
    WrittenAt(CSimQuasiExpander::LATCH, ReadOnly(CSimQuasiExpander::PINS, 1, 0xFF)),
    WrittenAt(CSimQuasiExpander::PINS, Writable(CSimQuasiExpander::LATCH, 1, 0xFF, 0xFF))};

constexpr std::array CPLD = {
    ReadOnly(0x00, 1, 0x51),
    ReadOnly(0x01, 1, 0x42),
    ReadOnly(0x02, 1, 0x13),
    Writable(0x03, 1, 0x00, 0xFF),
    Clears(ReadOnly(0x04, 1, 0x01)),
    Writable(0x05, 1, 0x00, 0x3F),
    WriteOnly(Writable(0x06, 1, 0x00, 0x0F)),
    Writable(0x10, 1, 0x00, 0x07),
    Writable(0x11, 1, 0x00, 0x07),
    Writable(0x12, 1, 0x00, 0x07),
    Writable(0x13, 1, 0x00, 0x07),
    Writable(0x14, 1, 0x00, 0x07),
    Writable(0x15, 1, 0x00, 0x07),
    Writable(0x16, 1, 0x00, 0x07),
    Writable(0x17, 1, 0x00, 0x07),
    Writable(0x20, 1, 0x02, 0x8F),
    Writable(0x21, 1, 0x08, 0x3F),
    Writable(0x22, 1, 0x02, 0x8F),
    Writable(0x23, 1, 0x08, 0x3F),
    Writable(0x24, 1, 0x02, 0x8F),
    Writable(0x25, 1, 0x08, 0x3F),
    Writable(0x26, 1, 0x02, 0x8F),
    Writable(0x27, 1, 0x08, 0x3F),
};
constexpr std::array CPLD_OUTSIDE = {
    sim_outside_t{"events", "what happened, until it is read", VT_BITS8, 0x04},
    sim_outside_t{"reset", "the reset pulses that were asked for last", VT_BITS8, 0x06},
};

const std::array PARTS = {
    sim_register_part_t{"adt7461", SIM_POINTER_STAYS, ADT7461, ADT7461_OUTSIDE,
                        CreateSimRegisterChip<CSimRegisters>},
    SIM_DS3232,
    sim_register_part_t{"ina220", SIM_POINTER_STAYS, INA220, INA220_OUTSIDE,
                        CreateSimRegisterChip<CSimIna220>},
    sim_register_part_t{"lm75", SIM_POINTER_STAYS, LM75, LM75_OUTSIDE,
                        CreateSimRegisterChip<CSimRegisters>},
    sim_register_part_t{"pca9534", SIM_POINTER_STAYS, ONE_PORT, ONE_PORT_OUTSIDE,
                        CreateSimRegisterChip<CSimExpander>},
    sim_register_part_t{"pca9535", SIM_POINTER_TOGGLES, TWO_PORTS, TWO_PORTS_OUTSIDE,
                        CreateSimRegisterChip<CSimExpander>},
    sim_register_part_t{"pca9555", SIM_POINTER_TOGGLES, TWO_PORTS, TWO_PORTS_OUTSIDE,
                        CreateSimRegisterChip<CSimExpander>},
    sim_register_part_t{"pcf8574", SIM_POINTER_NONE, PCF8574, ONE_PORT_OUTSIDE,
                        CreateSimRegisterChip<CSimQuasiExpander>},
    sim_register_part_t{"quillbank-cpld", SIM_POINTER_ADVANCES, CPLD, CPLD_OUTSIDE,
                        CreateSimRegisterChip<CSimRegisters>},
    sim_register_part_t{"tmp75", SIM_POINTER_STAYS, TMP75, TMP75_OUTSIDE,
                        CreateSimRegisterChip<CSimRegisters>},
};

}  // namespace

std::span<const sim_register_part_t> SimRegisterParts() {
    return PARTS;
}

const sim_register_part_t* FindSimRegisterPart(std::string_view name) {
    const auto* found =
        std::find_if(PARTS.begin(), PARTS.end(),
                     [name](const sim_register_part_t& part) { return part.name == name; });
    return found == PARTS.end() ? nullptr : found;
}
