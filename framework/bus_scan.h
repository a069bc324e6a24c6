// Finding out which addresses answer, on a bus and behind its multiplexers. A device that
// can be scanned has one wire or several: a bus itself, or the channels of a multiplexer.
// Who scans holds the device and the path to it, and works on one wire at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "framework/diag_menu.h"

// How an address is asked: with an access that means nothing to the chip, as far as that
// can be said of chips that nothing is known of.
enum class EScanAccess : uint8_t {
    QUICK_WRITE,   // the address alone, in the direction of a write
    RECEIVE_BYTE,  // one byte is read from wherever the chip stands
};

struct CScanAnswer {
    enum EKind : uint8_t {
        ACKNOWLEDGED,
        SILENT,
        FAILED,  // the bus did, so that nothing is known of the address
    };
    EKind kind = SILENT;
    std::string reason;  // of a failure
};

class IBusScan {
  public:
    IBusScan() = default;
    virtual ~IBusScan() = default;
    IBusScan(const IBusScan&) = delete;
    IBusScan& operator=(const IBusScan&) = delete;

    // The node of each wire: what hangs on the wire stands below it.
    virtual std::vector<const CDiagMenu*> GetWires() const = 0;
    // Opens the way from the root bus to a wire and closes every other way that it knows,
    // so that what answers then is on the wire or on the way. Throws CDiagException, with
    // nothing left open.
    virtual void OpenWire(size_t wire) = 0;
    // Closes the way. False, and a log line, when a chip on it answers and yet does not
    // close.
    virtual bool CloseWay() = 0;

    // Whether addresses can be asked in this way.
    virtual bool CanAsk(EScanAccess access) = 0;
    // Asks a 7-bit address on the wire that is open.
    virtual CScanAnswer Ask(uint8_t addr, EScanAccess access) = 0;
    // The driver of the running kernel that works with the address, which shall be left in
    // peace then; empty where none does.
    virtual std::string OwnerOf(uint8_t addr) = 0;
    // Whether the chip of that driver is on this bus itself, and so answers on all that is
    // behind it; else it is on another that the kernel's multiplexers connect with this one.
    virtual bool HasOwned(uint8_t addr) = 0;
    // What the board's description has at an address of a wire; empty for nothing.
    virtual std::string NameAt(size_t wire, uint8_t addr) const = 0;
};
