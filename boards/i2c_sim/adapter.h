// An I2C adapter as the kernel's i2c-dev sees one: messages go in, and how many of them were
// moved, or an error number, comes out.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "boards/root_bus/i2c_msg.h"

// How an adapter says that nobody acknowledged; real ones differ.
struct no_ack_t {
    bool short_count = false;  // by the number of messages before
    int error = 0;             // else by this error number
};

struct adapter_traits_t {
    uint32_t functions = 0;  // I2C_FUNC_* of linux/i2c.h
    no_ack_t no_ack;
};

class CAdapter {
  public:
    CAdapter(unsigned int number, std::string name, const adapter_traits_t& traits)
        : m_number(number), m_name(std::move(name)), m_traits(traits) {}
    virtual ~CAdapter() = default;
    CAdapter(const CAdapter&) = delete;
    CAdapter& operator=(const CAdapter&) = delete;

    unsigned int Number() const { return m_number; }
    const std::string& Name() const { return m_name; }
    bool Has(uint32_t functions) const { return (m_traits.functions & functions) == functions; }
    uint32_t Functions() const { return m_traits.functions; }
    const adapter_traits_t& Traits() const { return m_traits; }
    // The adapter that a multiplexer's channel hangs on; null for others.
    virtual const CAdapter* Parent() const { return nullptr; }

    // How many messages were moved, or a negated errno.
    virtual int Transfer(std::span<const CI2cMsg> msgs) = 0;

  protected:
    int ResultOf(const CI2cResult& result, size_t messages) const;

  private:
    const unsigned int m_number;
    const std::string m_name;
    const adapter_traits_t m_traits;
};
