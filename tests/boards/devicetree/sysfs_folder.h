// The adapters, drivers and channels that the kernel of a described board would show.
#pragma once

#include <string>

#include "framework/fmt_output.h"
#include "tests/boards/linux/fake_sysfs.h"

class CSysfsFolder : public CFakeSysfs {
  public:
    // `of_node` is the path of its node in the device tree; may be empty.
    void AddAdapter(unsigned int number, const std::string& name, const std::string& of_node) {
        CFakeSysfs::AddAdapter(number, name);
        if (!of_node.empty()) {
            SetNode(number, "../../../firmware/devicetree/base" + of_node);
        }
    }
    void AddDriver(unsigned int bus, unsigned int addr, const std::string& driver,
                   const std::string& chip) {
        AddChip(DeviceAt(bus, addr), chip, driver);
    }
    void AddChannel(unsigned int bus, unsigned int mux, unsigned int channel, unsigned int number) {
        Link(DeviceAt(bus, mux) + "/channel-" + std::to_string(channel),
             "../i2c-" + std::to_string(number));
    }

  private:
    static std::string DeviceAt(unsigned int bus, unsigned int addr) {
        CFmtString name;
        name.printf("%u-%04x", bus, addr);
        return name.c_str();
    }
};
