// Register chips and I/O ports of a description.
#include "boards/chips/mapped_io_device.h"
#include "boards/chips/port_expander.h"
#include "boards/chips/register_chip.h"
#include "tests/boards/devicetree/mount_test.h"
#include "tests/support/bus_access.h"
#include "tests/support/request.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Names = std::vector<std::string>;

class RegisterMount : public CMountTest {
  protected:
    template <class... Args>
    CAnswer Call(const std::string& path, const Args&... args) {
        return Send(NodeAt(*m_root, path), MSG_CALL, args...);
    }
    // A board of one node with that "reg" on the processor's bus.
    void MountPorts(std::initializer_list<uint32_t> reg, const std::string& label = "io") {
        CBlobBuilder builder;
        builder.Begin("soc").Text("compatible", "simple-bus");
        builder.Begin("io-ports@f000").Text("compatible", "morva,io-ports").Text("label", label);
        builder.Cells("reg", reg).End().End();
        Mount(builder);
    }
};

TEST_F(RegisterMount, MountsEveryPartOfEveryVendorWithItsChip) {
    struct CCase {
        const char* compatible;
        uint8_t addr;
        const char* description;
    };
    const CCase cases[] = {
        {"national,lm75", 0x48, "national,lm75 at 0x48: temperature sensor"},
        {"ti,lm75", 0x49, "ti,lm75 at 0x49: temperature sensor"},
        {"ti,tmp75", 0x4A, "ti,tmp75 at 0x4a: temperature sensor"},
        {"adi,adt7461", 0x4C, "adi,adt7461 at 0x4c: temperature monitor"},
        {"ti,ina220", 0x40, "ti,ina220 at 0x40: power monitor"},
        {"dallas,ds3232", 0x68, "dallas,ds3232 at 0x68: real-time clock"},
        {"maxim,ds3232", 0x69, "maxim,ds3232 at 0x69: real-time clock"},
        {"nxp,pca9534", 0x20, "nxp,pca9534 at 0x20: I/O expander, 8 pins"},
        {"nxp,pca9535", 0x21, "nxp,pca9535 at 0x21: I/O expander, 16 pins"},
        {"ti,pca9555", 0x22, "ti,pca9555 at 0x22: I/O expander, 16 pins"},
        {"nxp,pcf8574", 0x23, "nxp,pcf8574 at 0x23: I/O expander, 8 pins"},
        {"morva,quillbank-cpld", 0x60, "morva,quillbank-cpld at 0x60: board CPLD"},
    };
    MountOnBus([&](CBlobBuilder& bus) {
        for (const CCase& one : cases) {
            bus.Device("chip@" + std::to_string(one.addr), one.compatible, one.addr).End();
        }
    });
    EXPECT_EQ(Warnings(), Names{});
    for (const CCase& one : cases) {
        const std::string path = "/i2c-0/chip@" + std::to_string(one.addr);
        EXPECT_EQ(DescriptionAt(path), one.description);
        EXPECT_EQ(Call(path + "/regdump").Code(), MSG_SUCCESS) << one.compatible;
        EXPECT_TRUE(ReadBus(Bus("i2c-0"), one.addr, {}, 1).has_value()) << one.compatible;
    }
}

TEST_F(RegisterMount, GivesExpandersTheirKindOfDevice) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("a", "nxp,pca9534", 0x20).End();
        bus.Device("b", "nxp,pcf8574", 0x21).End();
        bus.Device("c", "ti,tmp75", 0x48).End();
    });
    EXPECT_NE(dynamic_cast<CPortExpander*>(&NodeAt(*m_root, "/i2c-0/a")), nullptr);
    EXPECT_NE(dynamic_cast<CQuasiPortExpander*>(&NodeAt(*m_root, "/i2c-0/b")), nullptr);
    EXPECT_NE(dynamic_cast<CRegisterChip*>(&NodeAt(*m_root, "/i2c-0/c")), nullptr);
    EXPECT_EQ(Call("/i2c-0/a/read-port", uint8_t{0}).bytes, (Bytes{0, 0xFF}));
    EXPECT_EQ(Call("/i2c-0/b/read-port", uint8_t{0}).bytes, (Bytes{0, 0xFF}));
}

TEST_F(RegisterMount, LeavesOutAChipAtAWrongAddress) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("good", "ti,tmp75", 0x48).End();
        bus.Device("taken", "national,lm75", 0x48).End();
        bus.Device("wide", "ti,tmp75", 0x80).End();
        bus.Device("none", "ti,tmp75", 0).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), Names{"good"});
    EXPECT_EQ(Warnings(),
              (Names{"left out: /i2c@100/taken: address 0x48 is already taken by "
                     "/i2c@100/good\n",
                     "left out: /i2c@100/wide: property \"reg\" is 0x80, should be a 7-bit "
                     "address from 0x1 to 0x7f\n",
                     "left out: /i2c@100/none: property \"reg\" is 0x0, should be a 7-bit "
                     "address from 0x1 to 0x7f\n"}));
}

TEST_F(RegisterMount, ShowsTheWorldOutsideOfEachChipBelowTheSimulation) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c@3").Cells("reg", {3});
        bus.Device("sensor@48", "ti,tmp75", 0x48).Text("label", "temp").End().End().End();
        bus.Device("sensor@4c", "adi,adt7461", 0x4C).Text("label", "temp").End();
    });
    EXPECT_EQ(NamesAt("/sim"), (Names{"i2c-0.mux-0.ch3.temp", "i2c-0.temp"}));
    CDiagMenu& temp = NodeAt(*m_root, "/sim/i2c-0.mux-0.ch3.temp/temp");
    EXPECT_EQ(Send(temp, MSG_POKEV, uint16_t{0x5A00}).Code(), MSG_SUCCESS);
    const CAnswer answer = Call("/i2c-0/mux-0/ch3/temp/regpeek", std::string("temp"));
    EXPECT_EQ(answer.bytes, (Bytes{0, 0, 6, '0', 'x', '5', 'a', '0', '0'}));
}

TEST_F(RegisterMount, MountsIoPortsOnAFileOfTheStateFolder) {
    MountPorts({0xF000, 3});
    EXPECT_EQ(DescriptionAt("/io"), "morva,io-ports at 0xf000: 3 ports");
    const auto file = m_folder.Path() / "state/io-ports/0xf000.bin";
    EXPECT_EQ(BytesOf(file), (Bytes{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(Call("/io/write-port", uint8_t{1}, uint8_t{0x00}, uint8_t{0x81}).Code(), MSG_SUCCESS);
    EXPECT_EQ(BytesOf(file), (Bytes{0xFF, 0x7E, 0xFF}));
    EXPECT_EQ(Warnings(), Names{});

    // What is there is kept.
    MountPorts({0x0, 0xF000, 3});
    EXPECT_EQ(Call("/io/read-port", uint8_t{1}).bytes, (Bytes{0, 0x7E}));
}

TEST_F(RegisterMount, LeavesOutIoPortsWithoutANumberOfThem) {
    const std::string node = "left out: /soc/io-ports@f000: property \"reg\" has ";
    const std::pair<std::initializer_list<uint32_t>, std::string> cases[] = {
        {{0xF000}, "1 cells, should be an address and a size\n"},
        {{0xF000, 0}, "the size 0, should be 1 to 255 ports\n"},
        {{0xF000, 256}, "the size 256, should be 1 to 255 ports\n"},
    };
    for (const auto& [reg, why] : cases) {
        m_log.Clear();
        MountPorts(reg);
        EXPECT_EQ(NamesAt("/"), Names{"sim"});
        EXPECT_EQ(Warnings(), Names{node + why});
    }
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path() / "state/io-ports"));
}

TEST_F(RegisterMount, EndsTheStartWhenTheFileOfIoPortsHasAnotherSize) {
    const auto file = m_folder.Write("state/io-ports/0xf000.bin", Bytes{1, 2});
    try {
        MountPorts({0xF000, 3});
        FAIL() << "mounted";
    } catch (const CDiagException& fault) {
        EXPECT_EQ(fault.what(), file.string() +
                                    " holds 2 bytes, but the chip has 3; remove it to have it "
                                    "made anew");
    }
}

TEST_F(RegisterMount, RefusesIoPortsOnAnI2cBus) {
    MountOnBus([](CBlobBuilder& bus) { bus.Device("io", "morva,io-ports", 0x30).End(); });
    EXPECT_EQ(Warnings(), Names{"left out: /i2c@100/io: \"morva,io-ports\" is not a device on an "
                                "I2C bus\n"});
}

}  // namespace
