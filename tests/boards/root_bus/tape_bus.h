// A root bus that records what goes over the wire and answers from a queue.
#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <ostream>
#include <span>
#include <utility>
#include <vector>

#include "boards/root_bus/root_bus.h"
#include "host/diag_clock.h"

// A message as it was sent; the length stands for the data of a read.
struct CTapeMsg {
    uint8_t addr;
    bool read;
    std::vector<uint8_t> written;
    size_t length;

    bool operator==(const CTapeMsg&) const = default;
};

inline CTapeMsg WriteOf(uint8_t addr, std::vector<uint8_t> bytes) {
    const size_t length = bytes.size();
    return {addr, false, std::move(bytes), length};
}
inline CTapeMsg ReadOf(uint8_t addr, size_t length) {
    return {addr, true, {}, length};
}

inline std::ostream& operator<<(std::ostream& out, const CTapeMsg& msg) {
    out << (msg.read ? "read " : "write ") << msg.length << " at " << int{msg.addr} << ":";
    for (const uint8_t byte : msg.written) {
        out << ' ' << int{byte};
    }
    return out;
}

using CTape = std::vector<CTapeMsg>;  // the messages of one transfer

class CTapeBus : public CRootBus {
  public:
    CTapeBus() : CRootBus("i2c-0", "recording bus") {}

    // What the next transfers end with, in order, and the bytes that their read
    // yields; without an answer a transfer succeeds and reads zeros.
    void Answer(CI2cResult result) { m_answers.push_back({std::move(result), {}}); }
    void AnswerRead(std::vector<uint8_t> bytes) {
        m_answers.push_back({CI2cResult::Ok(), std::move(bytes)});
    }
    void SetMaxTransSize(uint32_t size) { m_max = size; }

    const std::vector<CTape>& Tapes() const { return m_tapes; }
    // The messages of the only transfer; empty when there was none or several.
    CTape Tape() const { return m_tapes.size() == 1 ? m_tapes.front() : CTape{}; }

    // Which of the transfers were polls.
    const std::vector<bool>& Again() const { return m_again; }

    uint32_t GetMaxTransSize() override { return m_max; }

  protected:
    uint64_t NowMs() override { return GetDiagClock().NowMs(); }
    CI2cResult Transfer(std::span<const CI2cMsg> msgs, bool again) override {
        m_again.push_back(again);
        CTape& tape = m_tapes.emplace_back();
        for (const CI2cMsg& msg : msgs) {
            tape.push_back(msg.read ? ReadOf(msg.addr, msg.data.size())
                                    : WriteOf(msg.addr, {msg.data.begin(), msg.data.end()}));
        }
        if (m_answers.empty()) {
            return CI2cResult::Ok();
        }
        CAnswer answer = std::move(m_answers.front());
        m_answers.pop_front();
        if (msgs.back().read) {
            const std::span<uint8_t> data = msgs.back().data;
            std::copy_n(answer.bytes.begin(), std::min(answer.bytes.size(), data.size()),
                        data.begin());
        }
        return std::move(answer.result);
    }

  private:
    struct CAnswer {
        CI2cResult result;
        std::vector<uint8_t> bytes;
    };

    std::deque<CAnswer> m_answers;
    std::vector<CTape> m_tapes;
    std::vector<bool> m_again;
    uint32_t m_max = 255;
};
