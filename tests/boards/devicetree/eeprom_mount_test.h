// One EEPROM of a mounted board, right on the bus or behind three multiplexers,
// and its contents, which a test compares with what they were.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "boards/sim/sim_bus.h"
#include "tests/boards/devicetree/mount_test.h"
#include "tests/support/request.h"

class CEepromMountTest : public CMountTest {
  protected:
    using Bytes = std::vector<uint8_t>;
    using Properties = std::function<void(CBlobBuilder&)>;

    // Different bytes all over, also from one 256-byte block to the next.
    static Bytes Pattern(size_t size) {
        Bytes bytes(size);
        for (size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<uint8_t>(i * 7 + i / 256 * 5 + 1);
        }
        return bytes;
    }

    // The EEPROM "dev" at 0x50 of "i2c-0".
    void MountOnRoot(
        const std::string& compatible, size_t size,
        const Properties& properties = [](CBlobBuilder&) {}) {
        m_path = "/i2c-0/dev";
        m_file = "i2c-0/0x50.bin";
        FillImage(size);
        MountOnBus([&](CBlobBuilder& bus) {
            bus.Device("eeprom@50", compatible, 0x50).Text("label", "dev");
            properties(bus);
            bus.End();
        });
    }

    // The EEPROM "dev" at 0x50 behind channel 1 of a multiplexer at 0x70,
    // channel 2 of one at 0x71 and channel 3 of one at 0x72.
    void MountBehindThree(
        const std::string& compatible, size_t size,
        const Properties& properties = [](CBlobBuilder&) {}) {
        m_path = "/i2c-0/top-0/ch1/middle-0/ch2/low-0/ch3/dev";
        m_file = "i2c-0/0x70/ch1/0x71/ch2/0x72/ch3/0x50.bin";
        FillImage(size);
        CBlobBuilder builder;
        builder.Begin("i2c@100").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
        builder.Device("mux@70", "nxp,pca9547", 0x70).Text("label", "top");
        builder.Begin("i2c@1").Cells("reg", {1});
        builder.Device("mux@71", "nxp,pca9548", 0x71).Text("label", "middle");
        builder.Begin("i2c@2").Cells("reg", {2});
        builder.Device("mux@72", "nxp,pca9544", 0x72).Text("label", "low");
        builder.Begin("i2c@3").Cells("reg", {3}).Cells("phandle", {1});
        if (compatible != "sff,sfp") {
            builder.Device("eeprom@50", compatible, 0x50).Text("label", "dev");
            properties(builder);
            builder.End();
        }
        builder.End().End().End().End().End().End().End();
        if (compatible == "sff,sfp") {
            builder.Begin("cage").Text("compatible", compatible).Text("label", "dev");
            builder.Cells("i2c-bus", {1}).End();
        }
        Mount(builder);
    }

    // Of the EEPROM's child; the whole reply.
    template <class... Args>
    CAnswer Call(const std::string& child, const Args&... args) {
        return Send(NodeAt(*m_root, m_path + "/" + child), MSG_CALL, args...);
    }
    CAnswer Peek(uint64_t first, uint64_t last) {
        return Send(NodeAt(*m_root, m_path + "/memory"), MSG_PEEKV, first, last);
    }
    CAnswer Poke(uint8_t value, uint64_t first, uint64_t last) {
        return Send(NodeAt(*m_root, m_path + "/memory"), MSG_POKEV, value, first, last);
    }
    CAnswer CallNode(const std::string& path, uint8_t argument) {
        return Send(NodeAt(*m_root, path), MSG_CALL, argument);
    }

    void SetMode(uint8_t mode) {
        ASSERT_EQ(CallNode("/i2c-0/set-sw-mode", mode).Code(), MSG_SUCCESS);
    }
    // Selects the channels of MountBehindThree from the top down.
    void OpenByHand() {
        const std::string top = "/i2c-0/top-0";
        ASSERT_EQ(CallNode(top + "/sel-channel", 1).Code(), MSG_SUCCESS);
        ASSERT_EQ(CallNode(top + "/ch1/middle-0/sel-channel", 2).Code(), MSG_SUCCESS);
        ASSERT_EQ(CallNode(top + "/ch1/middle-0/ch2/low-0/sel-channel", 3).Code(), MSG_SUCCESS);
    }

    // Whether the chip answers now, without anybody opening a path.
    bool Answers() {
        CI2cXfrReq req;
        byte_t byte = 0;
        req.saddr = 0x50;
        req.dir = 1;
        req.data = &byte;
        req.tsize = 1;
        return Bus("i2c-0").I2cTrans(req);
    }

    CSimBus& SimBus() { return dynamic_cast<CSimBus&>(Bus("i2c-0")); }
    Bytes Contents() const { return BytesOf(m_folder.Path() / "state" / m_file); }
    // Puts back what the EEPROM held at first.
    void Refill() const { WriteFile(m_folder.Path() / "state" / m_file, m_held); }

    // The dump that "read" prints.
    std::string Dump(size_t addr, size_t length) const {
        CFmtString text;
        for (size_t i = 0; i < length; ++i) {
            if (i % 16 == 0) {
                text.printf("\n0x%04x:  ", static_cast<unsigned int>(addr + i));
            }
            text.printf(" %02x", m_held.at(addr + i));
        }
        return text.c_str() + std::string("\n");
    }
    // The reply of a good peek.
    Bytes Elements(size_t first, size_t last) const {
        Bytes reply = {0};
        for (uint64_t at = first; at <= last; ++at) {
            for (int shift = 56; shift >= 0; shift -= 8) {
                reply.push_back(static_cast<uint8_t>(at >> shift));
            }
            reply.push_back(m_held.at(at));
        }
        return reply;
    }

    // What the EEPROM begins with; whatever an earlier board left is gone.
    void FillImage(size_t size) {
        m_held = Pattern(size);
        m_folder.Write("images" / m_file, m_held);
        std::filesystem::remove_all(m_folder.Path() / "state");
    }

    std::string m_path;
    std::filesystem::path m_file;
    Bytes m_held;  // at first
};
