// A simulated bus that writes down what went over the wire, and which channels
// of its multiplexers were open at that moment.
#pragma once

#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "boards/sim/sim_bus.h"
#include "boards/sim/sim_mux.h"

class CTapedSimBus : public CSimBus {
  public:
    using CSimBus::CSimBus;

    // From now on each entry shows the control register of this chip.
    void Watch(const CSimMux& mux) { m_watched.push_back(&mux); }

    // One text per transfer: "[08 00] 70 w 04" is one byte written to 0x70
    // while the first watched chip's register held 0x08 and the second's 0.
    const std::vector<std::string>& Tape() const { return m_tape; }
    void ClearTape() { m_tape.clear(); }

  protected:
    CI2cResult Transfer(std::span<const CI2cMsg> msgs, bool again) override {
        std::string entry = "[";
        for (const CSimMux* mux : m_watched) {
            entry += (entry.size() > 1 ? " " : "") + Hex(mux->Control());
        }
        entry += "]";
        CI2cResult result = CSimBus::Transfer(msgs, again);
        for (const CI2cMsg& msg : msgs) {
            entry += " " + Hex(msg.addr) + (msg.read ? " r" : " w");
            for (const uint8_t byte : msg.data) {
                entry += " " + Hex(byte);
            }
        }
        m_tape.push_back(entry + (result.IsOk() ? "" : " nak"));
        return result;
    }

  private:
    static std::string Hex(uint8_t byte) {
        char text[3];
        std::snprintf(text, sizeof text, "%02x", byte);
        return text;
    }

    std::vector<const CSimMux*> m_watched;
    std::vector<std::string> m_tape;
};
