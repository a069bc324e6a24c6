// A register chip of each kind as the driver and as the simulation, on one simulated bus.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "boards/chips/port_expander.h"
#include "boards/chips/register_chip.h"
#include "boards/sim/sim_registers.h"
#include "tests/boards/chips/taped_sim_bus.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

class CRegisterTest : public testing::Test {
  protected:
    using Names = std::vector<std::string>;

    // The driver of `part` at `addr`, and below it on the wire the simulation.
    template <class Chip = CRegisterChip>
    Chip& AddChip(const char* part, uint8_t addr) {
        const sim_register_part_t& sim = *FindSimRegisterPart(part);
        m_sim = &m_bus.Segment().Add(sim.create(sim, addr));
        auto* chip = new Chip(*FindRegisterPart(part), part, "chip under test", {&m_bus, -1, addr});
        m_bus.AddChild(chip, CDiagObj::NO_SORT);
        return *chip;
    }

    uint16_t GetOutside(const char* name) { return m_sim->GetOutside(Outside(name)); }
    void SetOutside(const char* name, uint16_t value) { m_sim->SetOutside(Outside(name), value); }

    // What was on the wire since the last call.
    Names Tape() {
        Names tape = m_bus.Tape();
        m_bus.ClearTape();
        for (std::string& entry : tape) {
            entry.erase(0, std::string("[] ").size());
        }
        return tape;
    }

    // Of one element; -1 when it failed.
    static int64_t Read(CDiagRegisterDevice& chip, const char* name, uint32_t index = 0) {
        diag_regdata_t data = 0;
        return chip.readRegEntry(&data, chip.getRegEntry(name), index) ? static_cast<int64_t>(data)
                                                                       : -1;
    }
    static bool Write(CDiagRegisterDevice& chip, const char* name, diag_regdata_t data,
                      uint32_t index = 0) {
        return chip.writeRegEntry(&data, chip.getRegEntry(name), index);
    }

    CLogCapture m_log;
    CTapedSimBus m_bus{"i2c-0", "simulated bus", 100'000};

  private:
    const sim_outside_t& Outside(const std::string& name) const {
        for (const sim_outside_t& what : m_sim->Outside()) {
            if (name == what.name) {
                return what;
            }
        }
        throw std::runtime_error("nothing outside is called " + name);
    }

    CSimRegisters* m_sim = nullptr;
};
