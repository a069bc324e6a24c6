#include "boards/root_bus/root_bus.h"

#include <chrono>

#include "boards/root_bus/eeprom_pages.h"
#include "boards/root_bus/wire_request.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"

namespace {

constexpr unsigned int LW_BUS_ERROR = LogWord(LOG_LT_HW_DEBUG_BASE, 1);

__attribute__((format(printf, 1, 2))) std::string Text(const char* fmt, ...) {
    CFmtString text;
    va_list args;
    va_start(args, fmt);
    text.vprintf(fmt, args);
    va_end(args);
    return text.c_str();
}

// Why a request must not go on the wire; empty when it may.
std::string Refusal(const CI2cXfrReq& req) {
    if (req.saddr > 0x7F) {
        return Text("bad address 0x%02x: 7 bits at most", req.saddr);
    }
    if (req.cmd_sel > 2) {
        return Text("bad command size %u: 2 bytes at most", req.cmd_sel);
    }
    if (req.tsize > 0 && req.data == nullptr) {
        return Text("no buffer for %u data bytes", req.tsize);
    }
    return {};
}

std::string DataNackText(const CI2cXfrReq& req, size_t byte) {
    if (byte < req.cmd_sel) {
        return Text("0x%02x did not acknowledge command byte %zu", req.saddr, byte);
    }
    if (byte < size_t{req.cmd_sel} + req.tsize) {
        return Text("0x%02x did not acknowledge data byte %zu", req.saddr, byte - req.cmd_sel);
    }
    return Text("0x%02x did not acknowledge the packet error code", req.saddr);
}

std::string OutcomeText(const CI2cResult& result, const CI2cXfrReq& req, unsigned int polls) {
    switch (result.outcome) {
        case I2C_NO_ADDR_ACK:
            if (result.msg > 0) {
                return Text("no acknowledge from 0x%02x at the repeated start", req.saddr);
            }
            if (polls > 0) {
                return Text("no acknowledge from 0x%02x, asked %u more times after a write",
                            req.saddr, polls);
            }
            return Text("no acknowledge from 0x%02x", req.saddr);
        case I2C_NO_DATA_ACK:
            return DataNackText(req, result.byte);
        case I2C_BUS_STUCK:
            return "bus stuck low";
        case I2C_ARB_LOST:
            return "arbitration lost";
        case I2C_OK:
        case I2C_OTHER:
            break;
    }
    return {};
}

}  // namespace

std::string CRootBus::FailureText(const CI2cResult& result, const CI2cXfrReq& req,
                                  unsigned int polls) {
    const std::string outcome = OutcomeText(result, req, polls);
    return outcome + (outcome.empty() || result.text.empty() ? "" : ": ") + result.text;
}

CRootBus::CRootBus(const std::string& name, const std::string& description)
    : CI2cDevice(name, description),
      m_last_error(new CDiagMemValue<std::string>(
          "last-error", "what went wrong in the last transfer", true, VT_STRING)) {
    AddChild(m_last_error, NO_SORT);
}

bool CRootBus::I2cTrans(CI2cXfrReq& req) {
    constexpr const char* OPERATION = "I2cTrans";
    if (!Accept(OPERATION, req)) {
        return false;
    }
    const eeprom_geometry_t* part = m_eeproms.PartOf(req);
    return part != nullptr ? RunPages(OPERATION, req, *part) : End(OPERATION, req, Carry(req));
}

bool CRootBus::Run(const char* operation, CI2cXfrReq& req) {
    return Accept(operation, req) && End(operation, req, Carry(req));
}

bool CRootBus::RunPages(const char* operation, CI2cXfrReq& req, const eeprom_geometry_t& part) {
    CEepromPages pages(part, req);
    if (pages.IsBeyond()) {
        return Fail(operation, req, "the EEPROM at 0x%02x ends at 0x%04x: it has no address 0x%04x",
                    part.addr, part.Reach() - 1, pages.Begin());
    }
    do {
        if (const CFault fault = Carry(pages.Piece())) {
            return Fail(operation, req, "%s%s", fault->c_str(), pages.Account().c_str());
        }
    } while (pages.Next());
    return Succeed(req);
}

bool CRootBus::Accept(const char* operation, CI2cXfrReq& req) {
    const uint32_t max_size = GetMaxTransSize();
    if (req.tsize > max_size) {
        return Fail(operation, req, "bad length %u: %s moves at most %u bytes", req.tsize,
                    Carrier().c_str(), max_size);
    }
    const std::string refusal = Refusal(req);
    return refusal.empty() || Fail(operation, req, "%s", refusal.c_str());
}

bool CRootBus::End(const char* operation, CI2cXfrReq& req, const CFault& fault) {
    return fault ? Fail(operation, req, "%s", fault->c_str()) : Succeed(req);
}

CRootBus::CFault CRootBus::Carry(const CI2cXfrReq& req) {
    CWireRequest wire(req);
    if (CFault fault = Exchange(req, wire.Messages(), wire.WritesData())) {
        return fault;
    }
    const CWireRequest::CPec pec = wire.CheckPec();
    if (pec.got != pec.expected) {
        return Text("bad packet error code 0x%02x from 0x%02x, expected 0x%02x", pec.got, req.saddr,
                    pec.expected);
    }
    wire.Deliver();
    return {};
}

CRootBus::CFault CRootBus::Exchange(const CI2cXfrReq& req, std::span<const CI2cMsg> msgs,
                                    bool writes_data) {
    unsigned int polls = 0;
    const CI2cResult result = Move(msgs, writes_data, polls);
    return result.IsOk() ? CFault{} : FailureText(result, req, polls);
}

// An address that was just written to may answer nothing while its write cycle
// runs, so it is asked again; any other silence is final at once, or a probe
// would take minutes. An answer does not end the waiting: behind a switch it may
// have come from another chip at the same address.
CI2cResult CRootBus::Move(std::span<const CI2cMsg> msgs, bool writes_data, unsigned int& polls) {
    if (std::optional<CI2cResult> objection = Objection(msgs)) {
        return *objection;
    }
    while (true) {
        {
            const CGuard<CMutex> guard(m_wire_lock);
            CI2cResult result = Transfer(msgs, polls > 0);
            std::optional<uint64_t>& written_ms =
                m_written_ms[m_eeproms.CycleOf(msgs.front().addr)];
            if (result.IsOk() && writes_data) {
                written_ms = NowMs();
            }
            const bool unanswered = result.outcome == I2C_NO_ADDR_ACK && result.msg == 0;
            if (!unanswered || !written_ms || NowMs() - *written_ms >= WRITE_CYCLE_MS) {
                return result;
            }
        }
        ++polls;
        WaitMs(1);
    }
}

uint64_t CRootBus::NowMs() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

void CRootBus::WaitMs(unsigned int ms) {
    MsSleep(ms);
}

bool CRootBus::Succeed(CI2cXfrReq& req) {
    req.ClrErrMsg();
    m_last_error->Set({});
    return true;
}

bool CRootBus::Fail(const char* operation, CI2cXfrReq& req, const char* fmt, ...) {
    CFmtString text;
    va_list args;
    va_start(args, fmt);
    text.vprintf(fmt, args);
    va_end(args);
    req.SetErrMsg(text.c_str());
    m_last_error->Set(text.c_str());
    SendLog(LW_BUS_ERROR, "(%s:%s): %s\n", GetName(), operation, text.c_str());
    return false;
}
