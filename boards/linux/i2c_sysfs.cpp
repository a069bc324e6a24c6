#include "boards/linux/i2c_sysfs.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <tuple>
#include <utility>

#include "framework/fmt_output.h"

namespace {

constexpr std::string_view ADAPTER_PREFIX = "i2c-";
constexpr uint8_t LAST_ADDR = 0x7F;
// More multiplexers in a row than anybody has.
constexpr int DEEPEST_MUX = 16;

// The number that a text is as a whole.
std::optional<unsigned int> Number(std::string_view text, int base) {
    unsigned int value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, base);
    if (result.ec != std::errc{} || result.ptr != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<unsigned int> AdapterNumber(std::string_view file) {
    if (!file.starts_with(ADAPTER_PREFIX)) {
        return std::nullopt;
    }
    return Number(file.substr(ADAPTER_PREFIX.size()), 10);
}

std::string_view LastPart(std::string_view path) {
    return path.substr(path.rfind('/') + 1);  // npos + 1 is 0
}

std::string FirstLine(const std::string& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

// What a link says, wherever that leads; empty for what is no link.
std::string LinkText(const char* path) {
    std::array<char, PATH_MAX> text{};
    const ssize_t length = ::readlink(path, text.data(), text.size());
    return length > 0 ? std::string(text.data(), static_cast<size_t>(length)) : std::string();
}

// The names in a folder; none where there is no such folder.
std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
         at.increment(error)) {
        names.push_back(at->path().filename().string());
    }
    return names;
}

// The path in the device tree that a link "of_node" means.
std::string TreePath(const std::string& link) {
    constexpr std::string_view BASE = "/devicetree/base";
    const size_t at = link.find(BASE);
    if (at == std::string::npos) {
        return {};
    }
    const std::string path = link.substr(at + BASE.size());
    return path.empty() ? "/" : path;
}

// Bus and address of a device "N-00AA". Others, of 10 bits or named by firmware, have
// names of other forms.
std::optional<std::pair<unsigned int, uint8_t>> BusAndAddr(std::string_view name) {
    constexpr size_t DIGITS = 4;
    const size_t dash = name.find('-');
    if (dash == std::string_view::npos || name.size() - dash - 1 != DIGITS) {
        return std::nullopt;
    }
    const auto bus = Number(name.substr(0, dash), 10);
    const auto addr = Number(name.substr(dash + 1), 16);
    if (!bus || !addr || *addr > LAST_ADDR) {
        return std::nullopt;
    }
    return std::pair(*bus, static_cast<uint8_t>(*addr));
}

}  // namespace

std::string CI2cSysfs::DefaultRoot() {
    const char* const path = std::getenv("SYSFS_PATH");
    return path != nullptr && *path != '\0' ? path : "/sys";
}

CI2cSysfs::CI2cSysfs(const std::string& root) : m_devices(root + "/bus/i2c/devices") {}

std::vector<i2c_adapter_t> CI2cSysfs::Adapters() const {
    std::vector<i2c_adapter_t> adapters;
    for (const std::string& file : NamesIn(m_devices)) {
        if (const auto number = AdapterNumber(file)) {
            adapters.push_back(Read(*number));
        }
    }
    std::ranges::sort(adapters, {}, &i2c_adapter_t::number);
    return adapters;
}

std::optional<i2c_adapter_t> CI2cSysfs::Adapter(unsigned int number) const {
    std::error_code error;
    if (!std::filesystem::exists(Folder(number), error)) {
        return std::nullopt;
    }
    return Read(number);
}

std::string CI2cSysfs::Folder(unsigned int number) const {
    return m_devices + "/i2c-" + std::to_string(number);
}

i2c_adapter_t CI2cSysfs::Read(unsigned int number) const {
    const std::string folder = Folder(number);
    return {.number = number,
            .name = FirstLine(folder + "/name"),
            .dev_path = "/dev/i2c-" + std::to_string(number),
            .of_node = TreePath(LinkText((folder + "/of_node").c_str()))};
}

std::optional<unsigned int> CI2cSysfs::NumberOf(const std::string& dev_path) {
    std::error_code error;
    const std::filesystem::path file = std::filesystem::weakly_canonical(dev_path, error);
    return AdapterNumber(LastPart(error ? dev_path : file.string()));
}

// Asked before each write: the path needs no memory of its own.
std::string CI2cSysfs::DriverOf(unsigned int bus, uint8_t addr) const {
    std::array<char, PATH_MAX> path{};
    const int length =
        std::snprintf(path.data(), path.size(), "%s/%u-%04x/driver", m_devices.c_str(), bus, addr);
    if (length < 0 || static_cast<size_t>(length) >= path.size()) {
        return {};
    }
    return std::string(LastPart(LinkText(path.data())));
}

std::string CI2cSysfs::DriverAcrossMuxes(unsigned int bus, uint8_t addr) const {
    CFmtString text;
    for (const i2c_driven_chip_t& chip : DrivenChips()) {
        if (chip.addr == addr && (IsBehind(chip.bus, bus) || IsBehind(bus, chip.bus))) {
            text.printf("%s at %u-%04x", chip.driver.c_str(), chip.bus, chip.addr);
            break;
        }
    }
    return text.c_str();
}

// A channel's adapter has a link to its multiplexer, a device on the bus above.
bool CI2cSysfs::IsBehind(unsigned int bus, unsigned int upper) const {
    for (int level = 0; level < DEEPEST_MUX; ++level) {
        const auto mux = BusAndAddr(LastPart(LinkText((Folder(bus) + "/mux_device").c_str())));
        if (!mux) {
            return false;
        }
        bus = mux->first;
        if (bus == upper) {
            return true;
        }
    }
    return false;
}

std::optional<unsigned int> CI2cSysfs::ChannelOf(unsigned int bus, uint8_t mux_addr,
                                                 unsigned int channel) const {
    CFmtString path;
    path.printf("%s/%u-%04x/channel-%u", m_devices.c_str(), bus, mux_addr, channel);
    return AdapterNumber(LastPart(LinkText(path.c_str())));
}

std::vector<i2c_driven_chip_t> CI2cSysfs::DrivenChips() const {
    std::vector<i2c_driven_chip_t> chips;
    for (const std::string& file : NamesIn(m_devices)) {
        const auto place = BusAndAddr(file);
        if (!place) {
            continue;
        }
        std::string driver = DriverOf(place->first, place->second);
        if (!driver.empty()) {
            chips.push_back({place->first, place->second,
                             FirstLine(m_devices + "/" + file + "/name"), std::move(driver)});
        }
    }
    std::ranges::sort(
        chips, {}, [](const i2c_driven_chip_t& chip) { return std::tuple(chip.bus, chip.addr); });
    return chips;
}
