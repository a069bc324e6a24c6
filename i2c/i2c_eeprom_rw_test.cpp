#include "i2c/i2c_eeprom_rw_test.h"

#include <algorithm>
#include <array>
#include <exception>

#include "framework/diag_command.h"
#include "framework/diag_functions.h"
#include "framework/diag_param.h"
#include "i2c/diag_i2c_eeprom_device.h"
#include "i2c/told_path.h"

namespace {

constexpr uint32_t CHUNK = 256;
constexpr uint8_t MAX_MISMATCHES = 16;
constexpr uint8_t RESTORE_MESSAGES_BELOW = 17;

// The same bytes for writing and for verifying.
class CPattern {
  public:
    byte_t Next() { return static_cast<byte_t>(DiagRand_R(&m_state) >> 24); }

  private:
    unsigned int m_state = 0xCDEBFA0F;
};

}  // namespace

CDiagI2cEepromReadWriteTest::CDiagI2cEepromReadWriteTest(uint32_t mem_size, uint8_t xfer_unit)
    : CDiagTest("rw-test", "EEPROM read/write test"), m_mem_size(mem_size), m_xfer_unit(xfer_unit) {
    AddChild(new CDiagParam(VT_UINT16, "start", "Start address (dflt=0)", PT_IN | PT_OPTIONAL),
             NO_SORT);
    AddChild(
        new CDiagParam(VT_UINT16, "end", "End address (dflt=EEPROM size-1)", PT_IN | PT_OPTIONAL),
        NO_SORT);
}

bool CDiagI2cEepromReadWriteTest::TestSetup(CInMsg& in) {
    const auto limit = static_cast<uint16_t>(m_mem_size - m_xfer_unit);
    uint16_t start = 0;
    uint16_t end = limit;
    try {
        in >> start >> end;
    } catch (const CDiagException&) {  // left out: the default stays
    }
    m_sa = std::min(start, end);
    m_ea = std::max(start, end);
    if (m_sa > limit || m_ea > limit) {
        SendLog(LW_ERR_TEST, "ERROR: Invalid address range %u:%u", m_sa, m_ea);
        return false;
    }
    return true;
}

ETestStatus CDiagI2cEepromReadWriteTest::TestRun(COutMsg& out) {
    auto& eeprom = ParentDeviceOf<CDiagI2cEepromDevice>(*this);
    const uint32_t size = m_ea + 1 - m_sa;
    std::vector<byte_t> saved(size);
    const auto answer = [&out](EResCode code, ETestStatus status) {
        out << static_cast<uint8_t>(code);
        return status;
    };

    if (!OpenPathOrTell(*this, eeprom)) {
        return answer(MSG_ERR_FAIL, DS_FAILED);
    }
    m_progress_total = uint64_t{4} * size;
    m_progress_done = 0;

    ETestStatus status = Save(eeprom, saved);
    if (status != DS_PASSED) {
        return answer(status == DS_ABORTED ? MSG_ERR_ABORTED : MSG_ERR_FAIL, status);
    }
    try {
        status = Write(eeprom);
        if (status == DS_PASSED) {
            status = Verify(eeprom);
        }
    } catch (...) {
        Restore(eeprom, saved);
        eeprom.ClearPath();
        throw;
    }
    m_progress_done = uint64_t{3} * size;
    if (!Restore(eeprom, saved)) {
        status = DS_FAILED;
    }
    if (!ClosePathOrTell(*this, eeprom)) {
        return answer(MSG_ERR_FAIL, DS_FAILED);
    }
    switch (status) {
        case DS_PASSED:
            return answer(MSG_SUCCESS, status);
        case DS_ABORTED:
            return answer(MSG_ERR_ABORTED, status);
        default:
            return answer(MSG_ERR_FAIL, status);
    }
}

// Calls `work` with address and length of one chunk after the other until it
// returns something else than DS_PASSED. A range whose last address begins a
// chunk of its own is covered without it.
template <class Work>
ETestStatus CDiagI2cEepromReadWriteTest::ForEachChunk(EOnStop on_stop, Work work) {
    for (uint32_t addr = m_sa; addr < m_ea;) {
        const uint32_t size = std::min(CHUNK, m_ea + 1 - addr);
        const ETestStatus status = work(static_cast<uint16_t>(addr), static_cast<uint16_t>(size));
        if (status != DS_PASSED) {
            return status;
        }
        m_progress_done += size;
        if (!ProgressCb() && on_stop == END_ON_STOP) {
            return DS_ABORTED;
        }
        addr += size;
    }
    return DS_PASSED;
}

ETestStatus CDiagI2cEepromReadWriteTest::Save(CDiagI2cEepromDevice& eeprom,
                                              std::vector<byte_t>& saved) {
    return ForEachChunk(END_ON_STOP, [&](uint16_t addr, uint16_t size) {
        if (!eeprom.ReadMemory(addr, &saved[addr - m_sa], size)) {
            SendLog(LW_ERR_TEST, "ERROR: Error during EEPROM save");
            return DS_FAILED;
        }
        return DS_PASSED;
    });
}

ETestStatus CDiagI2cEepromReadWriteTest::Write(CDiagI2cEepromDevice& eeprom) {
    CPattern pattern;
    std::array<byte_t, CHUNK> chunk{};
    return ForEachChunk(END_ON_STOP, [&](uint16_t addr, uint16_t size) {
        std::generate_n(chunk.begin(), size, [&pattern] { return pattern.Next(); });
        if (!eeprom.WriteMemory(addr, chunk.data(), size)) {
            SendLog(LW_ERR_TEST, "ERROR: Error during EEPROM write");
            return DS_FAILED;
        }
        return DS_PASSED;
    });
}

ETestStatus CDiagI2cEepromReadWriteTest::Verify(CDiagI2cEepromDevice& eeprom) {
    CPattern pattern;
    std::array<byte_t, CHUNK> chunk{};
    uint8_t mismatches = 0;
    const ETestStatus status = ForEachChunk(END_ON_STOP, [&](uint16_t addr, uint16_t size) {
        if (!eeprom.ReadMemory(addr, chunk.data(), size)) {
            SendLog(LW_ERR_TEST, "ERROR: Error during EEPROM verify");
            return DS_FAILED;
        }
        for (unsigned int i = 0; i < size; ++i) {
            const byte_t expected = pattern.Next();
            if (chunk[i] == expected) {
                continue;
            }
            SendLog(LW_ERR_TEST, "ERROR: EEPROM data mismatch at addr.%u (exp.0x%02x obs.0x%02x)",
                    addr + i, expected, chunk[i]);
            if (++mismatches == MAX_MISMATCHES) {
                return DS_FAILED;
            }
        }
        return DS_PASSED;
    });
    return status == DS_PASSED && mismatches != 0 ? DS_FAILED : status;
}

bool CDiagI2cEepromReadWriteTest::Restore(CDiagI2cEepromDevice& eeprom,
                                          const std::vector<byte_t>& saved) {
    bool restored = true;
    uint8_t failures = 0;
    ForEachChunk(GO_ON, [&](uint16_t addr, uint16_t size) {
        bool ok = false;
        try {
            ok = eeprom.WriteMemory(addr, &saved[addr - m_sa], size);
        } catch (const CDiagException& e) {  // the other chunks still have a chance
            SendLog(LW_ERR_SW, "%s", e.what());
        } catch (const std::exception& e) {  // of a bus of the board's own
            SendLog(LW_ERR_SW, "%s", e.what());
        }
        if (!ok) {
            restored = false;
            if (++failures < RESTORE_MESSAGES_BELOW) {
                SendLog(LW_ERR_TEST, "ERROR: Error during EEPROM restore at addr %u", addr);
            }
        }
        return DS_PASSED;
    });
    return restored;
}
