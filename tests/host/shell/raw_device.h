// A shell on a tree with a memory device in it:
//
//   /eeprom/         256 bytes in pages of 16, each holding its own offset
//     memory[]       an array
//     deeper/        a menu
//       memory[]     an array that is not the device's own
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "framework/diag_device.h"
#include "framework/raw_memory.h"
#include "tests/host/shell/shell_tree.h"
#include "tests/support/temp_folder.h"

class CFakeRawDevice : public CDiagDevice, public IRawMemory {
  public:
    using CAccess = std::pair<uint32_t, size_t>;  // offset, size

    CFakeRawDevice(const std::string& name, uint32_t size)
        : CDiagDevice(name, "a memory", TDEVICE), contents(size) {
        for (uint32_t i = 0; i < size; ++i) {
            contents[i] = static_cast<byte_t>(i);
        }
    }

    uint32_t GetRawSize() const override { return static_cast<uint32_t>(contents.size()); }
    uint32_t GetRawPage() const override { return page; }
    bool IsRawReadOnly() const override { return read_only; }
    void ReadRaw(uint32_t offset, std::span<byte_t> to) override {
        reads.emplace_back(offset, to.size());
        before_read(offset);
        std::copy_n(contents.begin() + offset, to.size(), to.begin());
    }
    void WriteRaw(uint32_t offset, std::span<const byte_t> from) override {
        writes.emplace_back(offset, from.size());
        before_write(offset);
        for (size_t i = 0; i < from.size(); ++i) {
            const auto position = static_cast<uint32_t>(offset + i);
            contents.at(position) = stuck.contains(position) ? stuck[position] : from[i];
        }
    }

    std::vector<byte_t> contents;
    uint32_t page = 16;
    bool read_only = false;
    std::map<uint32_t, byte_t> stuck;  // bytes that take no other value
    // Called with the offset of each access before anything is moved.
    std::function<void(uint32_t)> before_read = [](uint32_t) {};
    std::function<void(uint32_t)> before_write = [](uint32_t) {};
    std::vector<CAccess> reads;
    std::vector<CAccess> writes;
};

class RawDeviceTest : public ShellTest {
  protected:
    RawDeviceTest() : m_eeprom(new CFakeRawDevice("eeprom", 256)) {
        m_root.AddChild(m_eeprom, CDiagObj::NO_SORT);
        m_eeprom->AddChild(new CMemoryArray(TARRAY_A, "memory", 0, 255), CDiagObj::NO_SORT);
        auto* deeper = new CDiagMenu(TMENU, "deeper", "a menu");
        m_eeprom->AddChild(deeper, CDiagObj::NO_SORT);
        deeper->AddChild(new CMemoryArray(TARRAY_A, "memory", 0, 255), CDiagObj::NO_SORT);
    }

    std::string File(const std::string& name) const { return (m_folder / name).string(); }
    // Names of the files in the folder, in order.
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    CTempFolder m_folder;
    CFakeRawDevice* m_eeprom;  // owned by the tree
};
