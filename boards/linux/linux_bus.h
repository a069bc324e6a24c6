// A root bus of the running system, on /dev/i2c-N. A record goes out as one combined
// transfer with a repeated start; an adapter that knows SMBus operations alone carries
// what they can, and the rest is refused. To write to what a driver of the kernel owns
// takes the operator's consent.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "boards/linux/i2c_adapter.h"
#include "boards/linux/i2c_dev.h"
#include "boards/linux/i2c_sysfs.h"
#include "boards/root_bus/root_bus.h"

class CLinuxBus : public CRootBus {
  public:
    // `path` is the device file. Throws CDiagException, naming it and the kernel's reason,
    // when it cannot be opened or is no adapter. `dev` must outlive the bus.
    CLinuxBus(const std::string& name, const std::string& description, const std::string& path,
              const CI2cSysfs& sysfs = CI2cSysfs(), II2cDev& dev = KernelI2cDev());

    // All that a transfer record can ask for, or the most that the adapter's SMBus
    // operations move behind a command byte.
    uint32_t GetMaxTransSize() override;

    bool CanAsk(EScanAccess access) override;
    std::string OwnerOf(uint8_t addr) override { return m_adapter.DriverOf(addr); }
    bool HasOwned(uint8_t addr) override { return m_adapter.HasDrivenChip(addr); }

    const std::string& Path() const { return m_adapter.Path(); }

  protected:
    std::optional<CI2cResult> Objection(std::span<const CI2cMsg> msgs) override;
    CI2cResult Transfer(std::span<const CI2cMsg> msgs, bool again) override;
    std::string Carrier() const override;

  private:
    bool IsHarmless(std::span<const CI2cMsg> msgs) const;
    CI2cResult TransferMessages(std::span<const CI2cMsg> msgs);
    bool AllowedToWrite(uint8_t addr, const std::string& driver) const;

    CI2cAdapter m_adapter;
    const std::string m_where;  // the bus in texts: by its name, unless the path tells it
    // Where two bytes before a read were found to be no more than a memory address, which
    // is asked once: drivers come when the machine starts.
    std::array<std::atomic<bool>, 128> m_has_wide_address{};
};
