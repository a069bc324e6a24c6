// The bus that the tests of EEPROMs run on: one memory chip that records every
// transfer.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "framework/diag_mutex.h"
#include "tests/support/journal.h"
#include "tests/support/scripted_bus.h"

// Whether this thread holds the lock, which refuses to be taken twice.
inline bool IsHeld(CMutex& lock) {
    try {
        const CGuard<CMutex> guard(lock);
        return false;
    } catch (const CDiagException&) {
        return true;
    }
}

// One transfer as it arrived, with the bytes that it moved.
struct CEepromXfer {
    CI2cXfrReq req;
    std::vector<uint8_t> data;
    uint16_t addr = 0;  // as the chip takes it
};

// Answers every address with the same 64 KB of memory and notes each transfer in
// a journal, "RD ADDR+SIZE" or "WR ADDR+SIZE". The number of a transfer, which
// hooks and faults go by, counts from 0.
class CEepromBus : public CScriptedBus {
  public:
    static constexpr size_t MEMORY_SIZE = 65536;
    using Hook = std::function<void(size_t index, CI2cXfrReq& req)>;

    CEepromBus(CJournal& journal, const std::string& name)
        : CScriptedBus(name), m_journal(journal) {
        for (size_t i = 0; i < MEMORY_SIZE; ++i) {
            m_memory[i] = Initial(i);
        }
    }

    // What the chip holds at first: no two neighbouring bytes or rows alike.
    static uint8_t Initial(size_t addr) { return static_cast<uint8_t>(addr * 7 + addr / 256 * 3); }
    static std::vector<uint8_t> InitialBytes(size_t addr, size_t count) {
        std::vector<uint8_t> bytes;
        for (size_t i = 0; i < count; ++i) {
            bytes.push_back(Initial((addr + i) % MEMORY_SIZE));
        }
        return bytes;
    }
    bool HoldsInitialBytes() const {
        return std::vector<uint8_t>(m_memory.begin(), m_memory.end()) ==
               InitialBytes(0, MEMORY_SIZE);
    }

    // Whether the first of two address bytes is the high one.
    void TakeHighByteFirst(bool first) { m_high_first = first; }
    // Called before each transfer.
    void OnTransfer(Hook hook) { m_before = std::move(hook); }
    // Called after each transfer that went well; may change what was read.
    void AfterTransfer(Hook hook) { m_after = std::move(hook); }
    void FailWhen(std::function<bool(size_t index)> fails) { m_fails = std::move(fails); }
    void FailAt(size_t index) {
        FailWhen([index](size_t i) { return i == index; });
    }
    // What a failed transfer says, instead of "no ack" and its number.
    void FailWith(const std::string& text) {
        m_error = text;
        FailWhen([](size_t) { return true; });
    }

    const std::vector<CEepromXfer>& Xfers() const { return m_xfers; }
    uint8_t& At(size_t addr) { return m_memory.at(addr); }

    // Only a switch passes transfers on so.
    bool DirectI2cTrans(CI2cXfrReq& req) override {
        m_journal.Note("direct");
        return I2cTrans(req);
    }
    bool I2cTrans(CI2cXfrReq& req) override {
        const size_t index = m_xfers.size();
        const uint16_t addr = AddressOf(req);
        m_xfers.push_back({req, {}, addr});
        m_journal.Note(std::string(req.dir == 1 ? "RD " : "WR ") + std::to_string(addr) + "+" +
                       std::to_string(req.tsize));
        if (m_before) {
            m_before(index, req);
        }
        if (m_fails && m_fails(index)) {
            req.SetErrMsg(m_error.empty() ? ("no ack " + std::to_string(index)).c_str()
                                          : m_error.c_str());
            return false;
        }
        for (size_t i = 0; i < req.tsize; ++i) {
            uint8_t& cell = m_memory[(addr + i) % MEMORY_SIZE];
            (req.dir == 1 ? req.data[i] : cell) = (req.dir == 1 ? cell : req.data[i]);
        }
        if (m_after) {
            m_after(index, req);
        }
        m_xfers[index].data.assign(req.data, req.data + req.tsize);
        return true;
    }

  private:
    uint16_t AddressOf(const CI2cXfrReq& req) const {
        switch (req.cmd_sel) {
            case 1:
                return req.cmd & 0xFF;
            case 2:
                return m_high_first ? static_cast<uint16_t>(req.cmd << 8 | req.cmd >> 8) : req.cmd;
            default:
                return 0;
        }
    }

    CJournal& m_journal;
    std::array<uint8_t, MEMORY_SIZE> m_memory{};
    bool m_high_first = true;
    Hook m_before;
    Hook m_after;
    std::function<bool(size_t)> m_fails;
    std::string m_error;
    std::vector<CEepromXfer> m_xfers;
};
