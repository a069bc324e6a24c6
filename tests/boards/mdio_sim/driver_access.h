// What the tests of the simulated driver share. They run under morva-mdio-sim.
#pragma once

#include <linux/mii.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdint>
#include <optional>

// What a program that is compiled with _FORTIFY_SOURCE calls.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {
int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
int __openat_2(int folder, const char* path, int flags);
int __openat64_2(int folder, const char* path, int flags);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

// Closed when it goes.
class CDescriptor {
  public:
    explicit CDescriptor(int fd) : m_fd(fd) {}
    ~CDescriptor() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;

    int Get() const { return m_fd; }

  private:
    const int m_fd;
};

inline std::optional<uint16_t> Read(int fd, uint16_t phy_id, uint16_t reg) {
    mii_ioctl_data record = {.phy_id = phy_id, .reg_num = reg, .val_in = 0, .val_out = 0};
    return ::ioctl(fd, SIOCGMIIREG, &record) == 0 ? std::optional(record.val_out) : std::nullopt;
}

inline bool Write(int fd, uint16_t phy_id, uint16_t reg, uint16_t value) {
    mii_ioctl_data record = {.phy_id = phy_id, .reg_num = reg, .val_in = value, .val_out = 0};
    return ::ioctl(fd, SIOCSMIIREG, &record) == 0;
}
