// Writes device tree blobs, right ones and wrong ones.
#pragma once

#include <libfdt.h>

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// The root node is open from the start; every Begin needs its End but the root.
class CBlobBuilder {
  public:
    explicit CBlobBuilder(size_t capacity = size_t{64} << 10) : m_blob(capacity) {
        Check(fdt_create(Data(), static_cast<int>(capacity)));
        Check(fdt_finish_reservemap(Data()));
        Check(fdt_begin_node(Data(), ""));
    }

    CBlobBuilder& Begin(const std::string& name) {
        Check(fdt_begin_node(Data(), name.c_str()));
        return *this;
    }
    CBlobBuilder& End() {
        Check(fdt_end_node(Data()));
        return *this;
    }
    CBlobBuilder& Bytes(const std::string& name, std::string_view value) {
        Check(fdt_property(Data(), name.c_str(), value.data(), static_cast<int>(value.size())));
        return *this;
    }
    // A string, or several with zero bytes between them.
    CBlobBuilder& Text(const std::string& name, std::string_view value) {
        return Bytes(name, std::string(value) + '\0');
    }
    CBlobBuilder& Cells(const std::string& name, std::initializer_list<uint32_t> cells) {
        std::string value;
        for (const uint32_t cell : cells) {
            for (int shift = 24; shift >= 0; shift -= 8) {
                value += static_cast<char>(cell >> shift);
            }
        }
        return Bytes(name, value);
    }
    // A node that has begun with these: what nearly every device needs.
    CBlobBuilder& Device(const std::string& name, std::string_view compatible, uint32_t reg) {
        return Begin(name).Text("compatible", compatible).Cells("reg", {reg});
    }

    std::vector<uint8_t> Finish() {
        Check(fdt_end_node(Data()));
        Check(fdt_finish(Data()));
        m_blob.resize(fdt_totalsize(Data()));
        return m_blob;
    }

  private:
    void* Data() { return m_blob.data(); }
    static void Check(int result) {
        if (result < 0) {
            throw std::runtime_error(std::string("blob builder: ") + fdt_strerror(result));
        }
    }

    std::vector<uint8_t> m_blob;
};
