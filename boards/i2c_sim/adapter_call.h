// One request of the preloaded object to the process that holds the adapters, and its
// answer, which goes straight to where the program wants it. Needs nothing of the heap: a
// program may be anywhere when it calls.
#pragma once

#include <linux/i2c.h>
#include <sys/uio.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "boards/i2c_sim/sim_protocol.h"

class CAdapterCall {
  public:
    CAdapterCall(int fd, unsigned int adapter, uint32_t code);

    void SetArgument(uint64_t argument) { m_request.argument = argument; }
    void SetMessages(uint32_t messages) { m_request.messages = messages; }
    // What follows the request, and what follows the answer, in order. At most one more of
    // either than messages in an I2C_RDWR; both must last until Do returns.
    void Send(const void* from, size_t size);
    void Receive(void* to, size_t size);

    // What the request came to: 0 or more, or a negated errno.
    long Do();
    uint64_t Value() const { return m_answer.value; }

  private:
    // The header, the table of the messages, and the messages.
    using CParts = std::array<iovec, 2 + MAX_MESSAGES>;

    long DoInTurn();

    const int m_fd;
    const unsigned int m_adapter;
    sim_request_t m_request;
    sim_answer_t m_answer;
    CParts m_out;
    CParts m_in;
    size_t m_outs = 0;
    size_t m_ins = 0;
};
