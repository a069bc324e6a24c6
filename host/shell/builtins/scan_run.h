// One scan: asks every address of every wire, one wire after the other, each with the way
// to it open and nothing else.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/shell/builtins/scan_wires.h"
#include "host/shell/run/scan_result.h"

class CShell;

struct CScanOptions {
    uint8_t first = 0x08;
    uint8_t last = 0x77;
    // For all addresses; else the one that is the safest for each.
    std::optional<EScanAccess> access;

    EScanAccess AccessTo(uint8_t addr) const;
    unsigned int Count() const { return last - first + 1U; }
};

class CScanRun {
  public:
    CScanRun(const CShell& shell, std::vector<CScanWire> wires, const CScanOptions& options);

    // False when Ctrl-C ended it.
    bool Run();
    // Of the wires that were to be shown, as far as it came, in order.
    std::vector<CScannedWire> Results() const;

  private:
    size_t EndOfBus(size_t begin) const;
    bool RunBus(size_t begin, size_t end);
    void ScanWire(size_t at);
    bool InheritTrouble(size_t at);
    void AskAll(const CScanWire& wire, CScannedWire& result);
    bool MarkUnasked(const CScanWire& wire, uint8_t addr, CScanCell& cell) const;

    const CShell& m_shell;
    const std::vector<CScanWire> m_wires;
    const CScanOptions m_options;
    std::map<size_t, CScannedWire> m_results;  // by the position of the wire
    std::map<const CDiagDevice*, std::string> m_unreached;
    uint64_t m_done = 0;  // addresses, of the wires before
    uint64_t m_total = 0;
};
