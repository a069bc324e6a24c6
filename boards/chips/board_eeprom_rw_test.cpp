#include "boards/chips/board_eeprom_rw_test.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "boards/chips/board_path.h"
#include "framework/diag_command.h"

namespace {

constexpr size_t ROW = 16;
constexpr uint64_t PHASES = 4;  // of the library's test
// A transfer may fail by chance; a chip that fails twice would only fill the log.
constexpr unsigned int READ_BACK_TRIES = 2;
// What a progress display shows, not the log.
constexpr unsigned int LW_STEP = LogWord(LOG_LT_PROGRESS, 1);

}  // namespace

bool CBoardEepromRwTest::TestSetup(CInMsg& in) {
    if (m_read_only) {
        SendLog(LW_ERR_TEST, "ERROR: EEPROM not tested, it is read-only\n");
        return false;
    }
    return CDiagI2cEepromReadWriteTest::TestSetup(in);
}

ETestStatus CBoardEepromRwTest::TestRun(COutMsg& out) {
    auto& eeprom = ParentDeviceOf<CDiagI2cEepromDevice>(*this);
    std::vector<byte_t> held(size_t{m_ea} + 1 - m_sa);
    const EResCode looked = Look(eeprom, held);
    if (looked != MSG_SUCCESS) {
        AnswerCode(out, looked);
        return looked == MSG_ERR_ABORTED ? DS_ABORTED : DS_FAILED;
    }
    SendLog(LW_STEP, "saving, writing, verifying and putting back 0x%04x to 0x%04x\n", m_sa, m_ea);
    ETestStatus status = DS_FAILED;
    try {
        status = CDiagI2cEepromReadWriteTest::TestRun(out);
    } catch (...) {
        LookAgain(eeprom, held);
        throw;
    }
    if (status != DS_PASSED) {
        LookAgain(eeprom, held);
    }
    return status;
}

// Reads what the range holds. Without that nothing may be written.
EResCode CBoardEepromRwTest::Look(CDiagI2cEepromDevice& eeprom, std::vector<byte_t>& held) {
    m_progress_total = PHASES * held.size();
    m_progress_done = 0;
    bool all = false;
    try {
        OnOpenPath(eeprom, [&] { all = ReadAll(eeprom, held); });
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_TEST, "ERROR: EEPROM not tested, its contents are untouched: %s\n",
                e.what());
        return MSG_ERR_FAIL;
    }
    if (!all) {
        SendLog(LW_ERR_TEST, "EEPROM not tested, its contents are untouched: stopped\n");
        return MSG_ERR_ABORTED;
    }
    return MSG_SUCCESS;
}

// False when a stop was requested on the way.
bool CBoardEepromRwTest::ReadAll(CDiagI2cEepromDevice& eeprom, std::vector<byte_t>& held) {
    for (size_t at = 0; at < held.size(); at += m_xfer_size) {
        const size_t size = std::min<size_t>(m_xfer_size, held.size() - at);
        SendStep("looking at", at, size);
        if (!eeprom.ReadMemory(static_cast<uint16_t>(m_sa + at), &held[at],
                               static_cast<uint16_t>(size))) {
            throw CDiagException("a read failed");
        }
        if (!ProgressCb()) {
            return false;
        }
    }
    return true;
}

// Says how the contents were left. Opens the path anew, and so closes it too
// where the library's test left it open.
void CBoardEepromRwTest::LookAgain(CDiagI2cEepromDevice& eeprom,
                                   const std::vector<byte_t>& held) const {
    std::vector<byte_t> now(held.size());
    size_t known = 0;
    try {
        OnOpenPath(eeprom, [&] {
            known = ReadBack(eeprom, now);
            if (PutBack(eeprom, held, now, known)) {
                known = ReadBack(eeprom, now);
            }
        });
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_TEST, "ERROR: EEPROM contents after the test: %s\n", e.what());
    }
    const bool as_before = NameChanges(held, now, known);
    if (known < held.size()) {
        NameBytes("could not be read back", held, known, held.size());
    } else if (as_before) {
        SendLog(LW_PRINT, "EEPROM 0x%04x to 0x%04x holds what it held before the test\n", m_sa,
                m_ea);
    }
}

// Writes what differs in the first `known` bytes once more: one bad transfer is
// enough to leave the rest of a chunk unwritten. False when nothing differs.
bool CBoardEepromRwTest::PutBack(CDiagI2cEepromDevice& eeprom, const std::vector<byte_t>& held,
                                 const std::vector<byte_t>& now, size_t known) const {
    bool differs = false;
    for (size_t at = 0; at < known; at += m_xfer_size) {
        const size_t size = std::min<size_t>(m_xfer_size, known - at);
        if (std::equal(held.begin() + static_cast<ptrdiff_t>(at),
                       held.begin() + static_cast<ptrdiff_t>(at + size),
                       now.begin() + static_cast<ptrdiff_t>(at))) {
            continue;
        }
        if (!differs) {
            SendLog(LW_PRINT, "EEPROM contents differ, putting them back once more\n");
            differs = true;
        }
        SendStep("putting back", at, size);
        if (!eeprom.WriteMemory(static_cast<uint16_t>(m_sa + at), &held[at],
                                static_cast<uint16_t>(size))) {
            break;
        }
    }
    return differs;
}

// Returns how many bytes could be read.
size_t CBoardEepromRwTest::ReadBack(CDiagI2cEepromDevice& eeprom, std::vector<byte_t>& now) const {
    size_t at = 0;
    while (at < now.size()) {
        const size_t size = std::min<size_t>(m_xfer_size, now.size() - at);
        SendStep("looking again at", at, size);
        bool read = false;
        for (unsigned int tries = 0; !read && tries < READ_BACK_TRIES; ++tries) {
            read = eeprom.ReadMemory(static_cast<uint16_t>(m_sa + at), &now[at],
                                     static_cast<uint16_t>(size));
        }
        if (!read) {
            break;
        }
        at += size;
    }
    return at;
}

// Says what is done next with `size` bytes of the range.
void CBoardEepromRwTest::SendStep(const char* what, size_t at, size_t size) const {
    SendLog(LW_STEP, "%s 0x%04x to 0x%04x of 0x%04x to 0x%04x\n", what,
            static_cast<unsigned int>(m_sa + at), static_cast<unsigned int>(m_sa + at + size - 1),
            m_sa, m_ea);
}

// Names what differs in the first `known` bytes; true when nothing does.
bool CBoardEepromRwTest::NameChanges(const std::vector<byte_t>& held,
                                     const std::vector<byte_t>& now, size_t known) const {
    bool same = true;
    size_t at = 0;
    while (at < known) {
        if (held[at] == now[at]) {
            ++at;
            continue;
        }
        size_t end = at + 1;
        while (end < known && held[end] != now[end]) {
            ++end;
        }
        NameBytes("is not restored", held, at, end);
        same = false;
        at = end;
    }
    return same;
}

// Names the bytes from `first` to before `end` of the range, with what they held.
void CBoardEepromRwTest::NameBytes(const char* fault, const std::vector<byte_t>& held, size_t first,
                                   size_t end) const {
    SendLog(LW_ERR_TEST, "ERROR: EEPROM 0x%04x to 0x%04x %s, before the test it held:\n",
            static_cast<unsigned int>(m_sa + first), static_cast<unsigned int>(m_sa + end - 1),
            fault);
    for (size_t row = first; row < end; row += ROW) {
        CFmtString bytes;
        for (size_t at = row; at < std::min(row + ROW, end); ++at) {
            bytes.printf(" %02x", held[at]);
        }
        SendLog(LW_ERR_TEST, "0x%04x: %s\n", static_cast<unsigned int>(m_sa + row), bytes.c_str());
    }
}
