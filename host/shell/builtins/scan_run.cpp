#include "host/shell/builtins/scan_run.h"

#include <algorithm>
#include <utility>

#include "framework/diag_functions.h"
#include "host/device_lock.h"
#include "host/diag_clock.h"
#include "host/diag_tree.h"
#include "host/exception_text.h"
#include "host/shell/builtins/device_use.h"
#include "host/shell/run/run_note.h"
#include "host/shell/shell.h"

namespace {

// A bus that is stuck may fail at every address after a long wait. But there are
// controllers too for which an address without a chip is a failure like any other.
constexpr uint64_t FAILING_MS_IN_A_ROW = 2000;

const char* NameOf(EScanAccess access) {
    return access == EScanAccess::QUICK_WRITE ? "quick write" : "receive byte";
}

const char* OptionFor(EScanAccess access) {
    return access == EScanAccess::QUICK_WRITE ? "-q" : "-r";
}

EScanAccess OtherThan(EScanAccess access) {
    return access == EScanAccess::QUICK_WRITE ? EScanAccess::RECEIVE_BYTE
                                              : EScanAccess::QUICK_WRITE;
}

// What the controller of a bus can do.
class CAbility {
  public:
    explicit CAbility(IBusScan& bus)
        : m_quick_write(bus.CanAsk(EScanAccess::QUICK_WRITE)),
          m_receive_byte(bus.CanAsk(EScanAccess::RECEIVE_BYTE)) {}

    bool Has(EScanAccess access) const {
        return access == EScanAccess::QUICK_WRITE ? m_quick_write : m_receive_byte;
    }
    // Why addresses were not asked by an access that it has not.
    std::string LackText(EScanAccess access) const {
        const EScanAccess other = OtherThan(access);
        const std::string text =
            std::string("the controller cannot do the SMBus ") + NameOf(access);
        return Has(other) ? text + "; scan " + OptionFor(other) + " asks by " + NameOf(other)
                          : text + ", nor " + NameOf(other);
    }

  private:
    const bool m_quick_write;
    const bool m_receive_byte;
};

void SetAnswer(const CScanAnswer& answer, CScanCell& cell) {
    switch (answer.kind) {
        case CScanAnswer::ACKNOWLEDGED:
            cell.mark = EScanMark::ANSWERS;
            break;
        case CScanAnswer::SILENT:
            cell.mark = EScanMark::SILENT;
            break;
        case CScanAnswer::FAILED:
            cell.mark = EScanMark::FAILED;
            cell.text = answer.reason;
            break;
    }
}

}  // namespace

// A write, even of nothing, spoils EEPROMs of one kind; reading locks up chips that can
// only be written, which clock generators at other addresses are.
EScanAccess CScanOptions::AccessTo(uint8_t addr) const {
    const bool holds_memory = (addr >= 0x30 && addr <= 0x37) || (addr >= 0x50 && addr <= 0x5F);
    return access.value_or(holds_memory ? EScanAccess::RECEIVE_BYTE : EScanAccess::QUICK_WRITE);
}

CScanRun::CScanRun(const CShell& shell, std::vector<CScanWire> wires, const CScanOptions& options)
    : m_shell(shell), m_wires(std::move(wires)), m_options(options) {
    const auto needed = std::count_if(m_wires.begin(), m_wires.end(),
                                      [](const CScanWire& wire) { return wire.is_needed; });
    m_total = static_cast<uint64_t>(needed) * m_options.Count();
}

bool CScanRun::Run() {
    for (size_t begin = 0; begin < m_wires.size(); begin = EndOfBus(begin)) {
        if (m_wires[begin].is_needed && !RunBus(begin, EndOfBus(begin))) {
            return false;
        }
    }
    return true;
}

std::vector<CScannedWire> CScanRun::Results() const {
    std::vector<CScannedWire> results;
    for (const auto& [at, result] : m_results) {
        if (m_wires[at].is_shown) {
            results.push_back(result);
        }
    }
    return results;
}

// Behind the wires of a root bus and of all that hangs on it.
size_t CScanRun::EndOfBus(size_t begin) const {
    const auto next =
        std::find_if(m_wires.begin() + static_cast<std::ptrdiff_t>(begin) + 1, m_wires.end(),
                     [](const CScanWire& wire) { return wire.above == CScanWire::NONE; });
    return static_cast<size_t>(next - m_wires.begin());
}

bool CScanRun::RunBus(size_t begin, size_t end) {
    std::vector<CDeviceClaim> claims;
    for (size_t at = begin; at < end; ++at) {
        const CDiagDevice* device = m_wires[at].device;
        if (m_wires[at].is_needed && (claims.empty() || claims.back().device != device)) {
            claims.push_back({device, DEV_LOCK_ACCESS});
        }
    }
    const CDeviceUse use(m_shell, claims);
    if (!use.IsHeld()) {
        return false;
    }
    for (size_t at = begin; at < end; ++at) {
        if (m_wires[at].is_needed) {
            ScanWire(at);
            m_done += m_options.Count();
        }
        if (m_shell.IsInterrupted()) {
            return false;
        }
    }
    return true;
}

void CScanRun::ScanWire(size_t at) {
    const CScanWire& wire = m_wires[at];
    CScannedWire& result = m_results[at];
    result.path = PathOf(*wire.node);
    result.is_behind = wire.above != CScanWire::NONE;
    CRunNote::Say(result.path);
    for (size_t addr = 0; addr < CScannedWire::ADDRESSES; ++addr) {
        result.cells[addr].name = wire.scan->NameAt(wire.number, static_cast<uint8_t>(addr));
    }
    if (InheritTrouble(at)) {
        return;
    }
    try {
        wire.scan->OpenWire(wire.number);
        result.is_reached = true;
    } catch (...) {
        result.error = m_unreached[wire.device] = CurrentExceptionText();
        return;
    }
    try {
        AskAll(wire, result);
    } catch (...) {
        result.error = CurrentExceptionText();
    }
    if (!wire.scan->CloseWay()) {
        result.error = "the way to it could not be closed";
    }
}

// A multiplexer that did not open one channel would not open the others either, and each
// attempt would be logged.
bool CScanRun::InheritTrouble(size_t at) {
    const CScanWire& wire = m_wires[at];
    CScannedWire& result = m_results[at];
    if (const auto unreached = m_unreached.find(wire.device); unreached != m_unreached.end()) {
        result.error = unreached->second;
    } else if (wire.above != CScanWire::NONE && !m_results[wire.above].is_reached) {
        result.error = m_results[wire.above].error;
    }
    return !result.error.empty();
}

void CScanRun::AskAll(const CScanWire& wire, CScannedWire& result) {
    const CAbility ability(*wire.scan);
    uint64_t failing_since_ms = GetDiagClock().NowMs();
    bool has_asked = false;
    std::optional<EScanAccess> lacking;
    for (unsigned int i = 0; i < m_options.Count(); ++i) {
        const auto addr = static_cast<uint8_t>(m_options.first + i);
        if (m_shell.IsInterrupted()) {
            result.error = "aborted before " + toString(addr, VF_HEX | VF_PAD);
            return;
        }
        CRunNote::Count(m_done + i, m_total);
        CScanCell& cell = result.cells[addr];
        if (MarkUnasked(wire, addr, cell)) {
            continue;
        }
        const EScanAccess access = m_options.AccessTo(addr);
        if (!ability.Has(access)) {
            lacking = access;
            continue;
        }
        has_asked = true;
        SetAnswer(wire.scan->Ask(addr, access), cell);
        const uint64_t now_ms = GetDiagClock().NowMs();
        if (cell.mark != EScanMark::FAILED) {
            failing_since_ms = now_ms;
        } else if (now_ms - failing_since_ms >= FAILING_MS_IN_A_ROW) {
            result.error = "given up behind " + toString(addr, VF_HEX | VF_PAD) +
                           ", as it only fails and takes long";
            return;
        }
    }
    if (lacking.has_value()) {
        (has_asked ? result.note : result.error) = ability.LackText(*lacking);
    }
}

// What is on the way answers everywhere behind it, and what a driver of the kernel works
// with is left in peace. Of a bus that the kernel makes of a channel nothing is known from
// the wire above: the kernel leaves the channel open that it used last, so what is behind it
// answered there as well.
bool CScanRun::MarkUnasked(const CScanWire& wire, uint8_t addr, CScanCell& cell) const {
    const bool is_kernels = wire.node == wire.device;
    for (size_t above = wire.above; above != CScanWire::NONE; above = m_wires[above].above) {
        const EScanMark mark = m_results.at(above).cells[addr].mark;
        if ((mark == EScanMark::ANSWERS && !is_kernels) ||
            (mark == EScanMark::OWNED && m_wires[above].scan->HasOwned(addr))) {
            cell.mark = EScanMark::ABOVE;
            return true;
        }
    }
    cell.text = wire.scan->OwnerOf(addr);
    if (cell.text.empty()) {
        return false;
    }
    cell.mark = EScanMark::OWNED;
    return true;
}
