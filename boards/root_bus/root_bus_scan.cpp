// A root bus as who scans it sees it.
#include "boards/root_bus/root_bus.h"
#include "boards/root_bus/wire_request.h"
#include "framework/diag_exception.h"
#include "framework/fmt_output.h"

namespace {

// Who scans says himself which addresses it was, and one reason may hold for many.
std::string WithoutAddress(std::string text, uint8_t addr) {
    CFmtString place;
    place.printf("0x%02x: ", addr);
    const std::string word = place.c_str();
    const size_t at = text.find(word);
    return at == std::string::npos ? text : text.erase(at, word.size());
}

}  // namespace

// What is behind a multiplexer's open channel would answer as if it were here.
void CRootBus::OpenWire(size_t) {
    for (CDiagObj* child : GetChildren()) {
        auto* mux = dynamic_cast<IBusScan*>(child);
        if (mux != nullptr && !mux->CloseWay()) {
            throw CDiagException("%s does not close its channels", child->GetName());
        }
    }
}

CScanAnswer CRootBus::Ask(uint8_t addr, EScanAccess access) {
    constexpr const char* OPERATION = "scan";
    byte_t byte = 0;
    CI2cXfrReq req;
    req.saddr = addr;
    req.switch_ch = -1;
    if (access == EScanAccess::RECEIVE_BYTE) {
        req.dir = 1;
        req.data = &byte;
        req.tsize = 1;
    }
    if (!Accept(OPERATION, req)) {
        return {CScanAnswer::FAILED, req.errmsg};
    }
    const CWireRequest wire(req);
    unsigned int polls = 0;
    const CI2cResult result = Move(wire.Messages(), false, polls);
    if (result.IsOk()) {
        Succeed(req);
        return {CScanAnswer::ACKNOWLEDGED, {}};
    }
    // Silence is what most addresses answer, and no failure of a scan.
    if (result.outcome == I2C_NO_ADDR_ACK) {
        Succeed(req);
        return {CScanAnswer::SILENT, {}};
    }
    const std::string failure = FailureText(result, req, polls);
    Fail(OPERATION, req, "%s", failure.c_str());
    return {CScanAnswer::FAILED, WithoutAddress(failure, addr)};
}

std::string CRootBus::NameAt(size_t, uint8_t addr) const {
    const auto name = m_names.find(addr);
    return name != m_names.end() ? name->second : std::string();
}
