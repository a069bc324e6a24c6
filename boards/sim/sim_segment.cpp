#include "boards/sim/sim_segment.h"

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
    for (CSlot& slot : m_slots) {
        slot.chip->Stop();
        slot.takes_part = false;
    }
}
