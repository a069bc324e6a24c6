// What the tests of port devices share: a plain one and one on an I2C bus, whose port
// accesses stand in the journal beside what the switches do.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "io/diag_i2c_io_device.h"
#include "io/diag_io_device.h"
#include "tests/i2c/slave_test.h"

// How the ports of a device answer.
struct CPortScript {
    std::map<int, uint8_t> values;  // of the ports that can be read
    uint32_t result = 1;            // of every access
    std::function<void()> hook;     // called after each access has been written down
};

// Notes "NAME: ReadIoPort(PORT)" and "NAME: WriteIoPort(PORT, VALUE, MASK)".
template <class Device>
class CTestPorts : public Device {
  public:
    template <class... Args>
    CTestPorts(CJournal& journal, CPortScript& script, Args&&... args)
        : Device(std::forward<Args>(args)...), m_journal(journal), m_script(script) {}

    uint32_t ReadIoPort(int port, uint8_t* val) override {
        Note(CallText("ReadIoPort", port));
        *val = m_script.values[port];
        return m_script.result;
    }
    uint32_t WriteIoPort(int port, uint8_t val, uint8_t msk) override {
        Note(CallText("WriteIoPort", port, int{val}, int{msk}));
        return m_script.result;
    }
    bool readRegEntry(diag_regdata_t*, diag_reg_st*, uint32_t) override { return false; }
    bool writeRegEntry(diag_regdata_t*, diag_reg_st*, uint32_t) override { return false; }

    using Device::m_num_ports;
    using Device::m_port_width;

  private:
    void Note(const std::string& call) {
        m_journal.Note(std::string(this->GetName()) + ": " + call);
        if (m_script.hook) {
            m_script.hook();
        }
    }

    CJournal& m_journal;
    CPortScript& m_script;
};

using CPlainPorts = CTestPorts<CDiagIoDevice>;

class CI2cPorts : public CTestPorts<CDiagI2cIoDevice> {
  public:
    using CDiagI2cIoDevice::m_i2c_ch;
    using CTestPorts::CTestPorts;
};

// "gpio" in the tree, and "expander" below channel 1 of "mux-2", which is on channel 0
// of "top-1".
class CIoPortTest : public CSlaveTest {
  protected:
    CIoPortTest()
        : m_plain(*new CPlainPorts(m_journal, m_script, "gpio", "plain ports", nullptr)),
          m_expander(
              *new CI2cPorts(m_journal, m_script, "expander", "ports of a chip", nullptr, &m_mux)) {
        m_root.AddChild(&m_plain, CDiagObj::NO_SORT);
        m_mux.getChannelMenu(1)->AddChild(&m_expander, CDiagObj::NO_SORT);
        m_expander.m_i2c_ch = 1;
    }

    CPortScript m_script;
    CPlainPorts& m_plain;
    CI2cPorts& m_expander;
};
