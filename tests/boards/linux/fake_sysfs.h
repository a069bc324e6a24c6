// A sysfs of adapters, chips and drivers in a folder of the test's own.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "boards/linux/i2c_sysfs.h"
#include "tests/support/temp_folder.h"

class CFakeSysfs {
  public:
    // Without any adapter, as of a kernel that has I2C.
    CFakeSysfs() { std::filesystem::create_directories(Devices()); }

    CI2cSysfs Sysfs() const { return CI2cSysfs(m_folder.Path().string()); }
    std::filesystem::path Devices() const { return m_folder / "bus/i2c/devices"; }

    void AddAdapter(unsigned int number, const std::string& name) {
        Write("i2c-" + std::to_string(number) + "/name", name + "\n");
    }
    void SetNode(unsigned int number, const std::string& target) {
        Link("i2c-" + std::to_string(number) + "/of_node", target);
    }
    // A chip as "0-0050"; without a driver where that is empty.
    void AddChip(const std::string& device, const std::string& name, const std::string& driver) {
        Write(device + "/name", name + "\n");
        if (!driver.empty()) {
            Link(device + "/driver", "../../../../bus/i2c/drivers/" + driver);
        }
    }
    void Link(const std::string& file, const std::string& target) {
        std::filesystem::create_directories((Devices() / file).parent_path());
        std::filesystem::create_symlink(target, Devices() / file);
    }
    void Write(const std::string& file, const std::string& text) {
        m_folder.Write("bus/i2c/devices/" + file,
                       std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
    }

  private:
    CTempFolder m_folder;
};
