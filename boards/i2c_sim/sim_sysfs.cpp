#include "boards/i2c_sim/sim_sysfs.h"

#include <array>
#include <cstdio>
#include <fstream>

namespace {

void Write(const std::filesystem::path& file, std::span<const uint8_t> bytes) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

// An attribute is a line.
void WriteLine(const std::filesystem::path& file, const std::string& text) {
    const std::string line = text + "\n";
    Write(file, std::span(reinterpret_cast<const uint8_t*>(line.data()), line.size()));
}

std::string NameOf(unsigned int adapter) {
    return "i2c-" + std::to_string(adapter);
}

// As links are in sysfs: seen from where they stand.
void Link(const std::filesystem::path& link, const std::filesystem::path& target) {
    std::filesystem::create_directories(link.parent_path());
    std::filesystem::create_directories(target);
    std::filesystem::create_symlink(target.lexically_relative(link.parent_path()), link);
}

}  // namespace

CSimSysfs::CSimSysfs(std::filesystem::path folder, std::span<const uint8_t> blob)
    : m_folder(std::move(folder)), m_devices(m_folder / "bus" / "i2c" / "devices") {
    Write(m_folder / "firmware" / "fdt", blob);
    std::filesystem::create_directories(m_devices);
    std::filesystem::create_directories(m_folder / "class" / "i2c-dev");
}

void CSimSysfs::AddAdapter(const CAdapter& adapter, const std::string& node) {
    const std::string name = NameOf(adapter.Number());
    const std::filesystem::path device = m_devices / name;
    WriteLine(device / "name", adapter.Name());
    if (!node.empty()) {
        Link(device / "of_node", (m_folder / "firmware" / "devicetree" / "base") += node);
    }
    const std::filesystem::path file = m_folder / "class" / "i2c-dev" / name;
    WriteLine(file / "name", adapter.Name());
    Link(file / "device", device);
}

void CSimSysfs::AddMux(const CAdapter& adapter, uint8_t addr, const std::string& chip,
                       std::span<const unsigned int> channels) {
    const std::filesystem::path device = Device(adapter.Number(), addr);
    WriteLine(device / "name", chip);
    Link(device / "driver", m_folder / "bus" / "i2c" / "drivers" / "pca954x");
    for (size_t channel = 0; channel < channels.size(); ++channel) {
        const std::filesystem::path below = m_devices / NameOf(channels[channel]);
        Link(device / ("channel-" + std::to_string(channel)), below);
        Link(below / "mux_device", device);
    }
}

bool CSimSysfs::HasDriver(unsigned int adapter, uint8_t addr) const {
    return std::filesystem::is_symlink(Device(adapter, addr) / "driver");
}

std::filesystem::path CSimSysfs::Device(unsigned int adapter, uint8_t addr) const {
    std::array<char, 32> name;
    std::snprintf(name.data(), name.size(), "%u-%04x", adapter, unsigned{addr});
    return m_devices / name.data();
}
