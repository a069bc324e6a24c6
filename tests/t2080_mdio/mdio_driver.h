// The driver of an MDIO bus for tests: the program's own open, ioctl and close, which act
// for this driver's paths while it lives and pass everything else on to the C library.
#pragma once

#include <linux/mii.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

// One ioctl as it arrived, field by field.
struct CMdioCall {
    unsigned long request = 0;
    uint16_t phy_id = 0;
    uint16_t reg_num = 0;
    uint16_t val_in = 0;
    uint16_t val_out = 0;

    bool operator==(const CMdioCall&) const = default;
};
void PrintTo(const CMdioCall& call, std::ostream* out);

class CMdioDriver {
  public:
    // Of these paths: they open unless FailOpen, and nothing has to be there.
    explicit CMdioDriver(std::vector<std::string> paths);
    ~CMdioDriver();
    CMdioDriver(const CMdioDriver&) = delete;
    CMdioDriver& operator=(const CMdioDriver&) = delete;

    // From now on every open of a path, or every ioctl, fails with that error; 0: none.
    void FailOpen(int err) { m_open_error = err; }
    void FailIoctl(int err) { m_ioctl_error = err; }
    // What a register reads as, and what a good ioctl returns.
    void SetRegister(uint16_t phy_id, uint16_t reg_num, uint16_t value);
    void SetIoctlResult(int result) { m_ioctl_result = result; }

    // "open PATH", "close" and "close -1", in order.
    const std::vector<std::string>& Files() const { return m_files; }
    // The flags of the last open.
    int OpenFlags() const { return m_open_flags; }
    const std::vector<CMdioCall>& Calls() const { return m_calls; }
    // Descriptors that were opened and not closed.
    size_t Open() const { return m_open.size(); }

    // What the C library's calls come to: nothing when they do not concern this driver.
    bool Owns(const std::string& path) const { return m_paths.contains(path); }
    bool Owns(int fd) const { return m_open.contains(fd); }
    int OpenPath(const std::string& path, int flags);
    int Ioctl(unsigned long request, mii_ioctl_data& record);
    void NoteClose(int fd);

  private:
    const std::set<std::string> m_paths;
    int m_open_error = 0;
    int m_ioctl_error = 0;
    int m_ioctl_result = 0;
    int m_open_flags = 0;
    std::map<std::pair<uint16_t, uint16_t>, uint16_t> m_registers;
    std::vector<std::string> m_files;
    std::vector<CMdioCall> m_calls;
    std::set<int> m_open;
};
