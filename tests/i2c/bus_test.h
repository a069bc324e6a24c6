// What the tests of the I2C bus share: a bus in a tree, the log, and short
// names for the lines expected in it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "framework/diag_func.h"
#include "framework/diag_log_word.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/scripted_bus.h"
#include "tests/support/thrown_text.h"

using CLines = std::vector<CLogCapture::Line>;

inline CLogCapture::Line Print(const std::string& text) {
    return {0xB0, text};
}
inline CLogCapture::Line ArgError(const std::string& text) {
    return {0x30, text};
}

// Any number of byte arguments of one request.
struct CNumbers {
    std::vector<uint8_t> bytes;
};
inline COutMsg& operator<<(COutMsg& out, const CNumbers& numbers) {
    for (const uint8_t byte : numbers.bytes) {
        out << byte;
    }
    return out;
}

// Every field of a transfer but the buffer's contents, for comparing all of
// them at once.
std::string Describe(const CI2cXfrReq& req);

// The text of the exception that reading a T from a request of these bytes
// throws.
template <class T>
std::string UnderflowText(const std::vector<uint8_t>& bytes = {}) {
    COutMsg request(MSG_CALL);
    request << CNumbers{bytes};
    CInMsg in(request);
    T value{};
    return ThrownText([&] { in >> value; });
}

// The text of a failed look-up of the parent device, as source file and line
// vary it.
testing::AssertionResult IsMissingDeviceText(const std::string& text);

class CBusTest : public testing::Test {
  protected:
    static constexpr uint8_t SUCCESS = 0;
    static constexpr uint8_t FAIL = 2;
    using Bytes = std::vector<uint8_t>;

    CBusTest() : m_bus(*new CScriptedBus("i2c-0")) { m_root.AddChild(&m_bus, CDiagObj::NO_SORT); }

    CDiagMenu& Command(const std::string& name) { return NodeAt(m_root, "i2c-0/" + name); }
    CDiagFunc& Func(const std::string& name) { return dynamic_cast<CDiagFunc&>(Command(name)); }

    // Takes a command out of the bus.
    std::unique_ptr<CDiagObj> Detach(const std::string& name) {
        return m_bus.RemoveChild(Command(name).GetId());
    }

    CDiagMenu m_root{TMENU, "root", "the tree"};
    CScriptedBus& m_bus;
    CLogCapture m_log;
};
