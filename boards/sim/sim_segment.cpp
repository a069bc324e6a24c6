#include "boards/sim/sim_segment.h"

#include <exception>

#include "framework/diag_exception.h"

bool CSimSegment::Start(uint8_t addr, bool read) {
    bool ack = false;
    for (CSlot& slot : m_slots) {
        slot.takes_part = slot.chip->Start(addr, read);
        ack = ack || slot.takes_part;
    }
    return ack;
}

bool CSimSegment::WriteByte(uint8_t value) {
    bool ack = false;
    for (CSlot& slot : m_slots) {
        if (slot.takes_part && slot.chip->WriteByte(value)) {
            ack = true;
        }
    }
    return ack;
}

uint8_t CSimSegment::ReadByte() {
    uint8_t wire = 0xFF;
    for (CSlot& slot : m_slots) {
        if (slot.takes_part) {
            wire = static_cast<uint8_t>(wire & slot.chip->ReadByte());
        }
    }
    return wire;
}

void CSimSegment::Stop() {
    std::exception_ptr fault;
    for (CSlot& slot : m_slots) {
        slot.takes_part = false;
        try {
            slot.chip->Stop();
        } catch (const CDiagException&) {
            // The other chips see the condition all the same.
            fault = std::current_exception();
        }
    }
    if (fault) {
        std::rethrow_exception(fault);
    }
}
