// What the tests of the MDIO bus share: a bus, its driver, and a journal of the log.
#pragma once

#include <gmock/gmock.h>
#include <linux/sockios.h>

#include <cstdint>
#include <string>
#include <vector>

#include "framework/diag_functions.h"
#include "t2080_mdio/diag_mdio_bus.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/t2080_mdio/mdio_driver.h"

inline constexpr const char* FIRST_PATH = "/dev/fsl-fman_xmdio_us";
inline constexpr const char* OTHER_PATH = "/dev/other-mdio";

class CMdioBusTest : public testing::Test {
  protected:
    static constexpr uint8_t SUCCESS = 0;
    static constexpr uint8_t FAIL = 2;
    using Bytes = std::vector<uint8_t>;
    using Lines = std::vector<CLogCapture::Line>;
    using Files = std::vector<std::string>;

    CMdioBusTest() { m_root.AddChild(m_bus, CDiagObj::NO_SORT); }

    CDiagMenu& Command(const std::string& name) { return NodeAt(*m_bus, name); }
    // "init" with and without its argument.
    CAnswer Init() { return Send(Command("init"), MSG_CALL); }
    CAnswer Init(const std::string& path) { return Send(Command("init"), MSG_CALL, path); }
    CAnswer Write(uint32_t port, uint32_t device, uint16_t offset, uint16_t data) {
        return Send(Command("write"), MSG_CALL, port, device, offset, data);
    }
    CAnswer Read(uint32_t port, uint32_t device, uint16_t offset) {
        return Send(Command("read"), MSG_CALL, port, device, offset);
    }
    // Destroys the bus, as the end of the tree does.
    void DestroyBus() { m_root.RemoveChild(m_bus->GetId()).reset(); }

    static CLogCapture::Line TestError(const std::string& text) { return {0x10, text}; }
    static CLogCapture::Line SystemError(int err) {
        return TestError("System error: error " + std::to_string(err) + "(" + GetErrorStr(err) +
                         ")");
    }
    const Lines m_not_operational = {TestError("MDIO Bus is not operational, run init")};

    CMdioDriver m_driver{{FIRST_PATH, OTHER_PATH}};
    CDiagMenu m_root{TMENU, "root", "the tree"};
    CDiagMdioBus* m_bus = new CDiagMdioBus("mdio", "the MDIO bus");  // owned by the tree
    CLogCapture m_log;
};
