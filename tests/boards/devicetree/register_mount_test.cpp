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
    using CReg = std::initializer_list<uint32_t>;

    // A board of a bus of the processor with these I/O ports, each labelled with its name.
    // Of 0 cells the bus says nothing.
    void MountPorts(const std::vector<std::pair<std::string, CReg>>& nodes,
                    uint32_t address_cells = 1, uint32_t size_cells = 1) {
        CBlobBuilder builder;
        builder.Begin("soc").Text("compatible", "simple-bus");
        if (address_cells != 0) {
            builder.Cells("#address-cells", {address_cells});
        }
        if (size_cells != 0) {
            builder.Cells("#size-cells", {size_cells});
        }
        for (const auto& [name, reg] : nodes) {
            builder.Begin(name).Text("compatible", "morva,io-ports").Cells("reg", reg).End();
        }
        builder.End();
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
        {"ti,tmp275", 0x4B, "ti,tmp275 at 0x4b: temperature sensor"},
        {"ti,ina219", 0x41, "ti,ina219 at 0x41: power monitor"},
        {"ti,tca9554", 0x24, "ti,tca9554 at 0x24: I/O expander, 8 pins"},
        {"ti,tca9539", 0x74, "ti,tca9539 at 0x74: I/O expander, 16 pins"},
        {"nxp,pcf8574a", 0x38, "nxp,pcf8574a at 0x38: I/O expander, 8 pins"},
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

TEST_F(RegisterMount, TellsTheNamesOfTheLinesOfAnExpanderPortByPort) {
    MountOnBus([](CBlobBuilder& bus) {
        std::string names("a\0\0c", 4);
        bus.Device("narrow", "nxp,pcf8574", 0x20).Text("gpio-line-names", names).End();
        names += std::string(7, '\0') + "b0";
        bus.Device("wide", "nxp,pca9555", 0x21).Text("gpio-line-names", names).End();
        bus.Device("second", "nxp,pca9555", 0x22);
        bus.Text("gpio-line-names", std::string(10, '\0') + "x\x1by").End();
        bus.Device("none", "nxp,pca9534", 0x23).End();
    });
    EXPECT_EQ(Warnings(), Names{});
    const auto lines = [this](const std::string& path) {
        const Bytes answer = Send(NodeAt(*m_root, "/i2c-0/" + path), MSG_PEEKV).bytes;
        return std::string(answer.begin() + 3, answer.end());
    };
    EXPECT_EQ(lines("narrow/lines-0"), "0 a, 2 c");
    EXPECT_EQ(lines("wide/lines-0"), "0 a, 2 c");
    EXPECT_EQ(lines("wide/lines-1"), "1 b0");
    EXPECT_EQ(lines("second/lines-1"), "2 x?y");
    for (const char* path : {"narrow/lines-1", "second/lines-0", "none/lines-0"}) {
        EXPECT_EQ(FindByPath(*m_root, std::string("/i2c-0/") + path), nullptr) << path;
    }
    EXPECT_NE(Send(NodeAt(*m_root, "/i2c-0/wide/lines-0"), MSG_POKEV, std::string("x")).Code(),
              MSG_SUCCESS);
}

TEST_F(RegisterMount, LeavesOutAnExpanderWithMoreNamesThanLines) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("a", "nxp,pca9534", 0x20);
        bus.Text("gpio-line-names", std::string(8, '\0')).End();
        bus.Device("b", "nxp,pca9534", 0x21);
        bus.Text("gpio-line-names", std::string(7, '\0')).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), Names{"b"});
    EXPECT_EQ(Warnings(),
              Names{"left out: /i2c@100/a: property \"gpio-line-names\" has 9 names, should be at "
                    "most 8\n"});
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
    MountPorts({{"io", {0xF000, 3}}});
    EXPECT_EQ(DescriptionAt("/io"), "morva,io-ports at 0xf000: 3 ports");
    const auto file = m_folder.Path() / "state/io-ports/0xf000.bin";
    EXPECT_EQ(BytesOf(file), (Bytes{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(Call("/io/write-port", uint8_t{1}, uint8_t{0x00}, uint8_t{0x81}).Code(), MSG_SUCCESS);
    EXPECT_EQ(BytesOf(file), (Bytes{0xFF, 0x7E, 0xFF}));
    EXPECT_EQ(Warnings(), Names{});

    // What is there is kept.
    MountPorts({{"io", {0xF000, 3}}});
    EXPECT_EQ(Call("/io/read-port", uint8_t{1}).bytes, (Bytes{0, 0x7E}));
}

TEST_F(RegisterMount, ReadsAddressAndSizeOfIoPortsInAsManyCellsAsTheBusSays) {
    struct CCase {
        uint32_t address_cells;
        uint32_t size_cells;
        CReg reg;
        const char* address;
    };
    const CCase cases[] = {
        {1, 1, {0xF000, 5}, "0xf000"},
        {1, 2, {0xF000, 0, 5}, "0xf000"},
        {2, 1, {0xF, 0xFFE0'0000, 5}, "0xfffe00000"},
        {2, 2, {0xF, 0xF000, 0, 5}, "0xf0000f000"},
        {2, 1, {0, 0xF000, 5}, "0xf000"},
        // What a bus means that says nothing.
        {0, 0, {0xF, 0xF000, 5}, "0xf0000f000"},
        {1, 0, {0xF000, 5}, "0xf000"},
        {0, 2, {0xF, 0xF000, 0, 5}, "0xf0000f000"},
    };
    for (const CCase& one : cases) {
        const auto file = m_folder.Path() / "state/io-ports" / (one.address + std::string(".bin"));
        std::filesystem::remove(file);
        MountPorts({{"io", one.reg}}, one.address_cells, one.size_cells);
        EXPECT_EQ(DescriptionAt("/io"),
                  "morva,io-ports at " + std::string(one.address) + ": 5 ports");
        EXPECT_TRUE(std::filesystem::exists(file)) << file;
        EXPECT_EQ(Warnings(), Names{});
    }
}

TEST_F(RegisterMount, LeavesOutIoPortsThatDoNotFitTheirBus) {
    const std::string node = "left out: /soc/io: property \"reg\" has ";
    const std::string bus = "left out: /soc: property ";
    struct CCase {
        uint32_t address_cells;
        uint32_t size_cells;
        CReg reg;
        std::string warning;
    };
    const CCase cases[] = {
        {1, 1, {0xF000}, node + "1 cells, should be 1 of an address and 1 of a size\n"},
        {1, 1, {0, 0xF000, 3}, node + "3 cells, should be 1 of an address and 1 of a size\n"},
        {1,
         1,
         {0xF000, 3, 0xF100, 3},
         node + "4 cells, should be 1 of an address and 1 of a size\n"},
        {0, 0, {0xF000, 3}, node + "2 cells, should be 2 of an address and 1 of a size\n"},
        {1, 1, {0xF000, 0}, node + "the size 0, should be 1 to 255 ports\n"},
        {1, 1, {0xF000, 256}, node + "the size 256, should be 1 to 255 ports\n"},
        {1, 2, {0xF000, 1, 3}, node + "the size 4294967299, should be 1 to 255 ports\n"},
        {3, 1, {0, 0, 0xF000, 3}, bus + "\"#address-cells\" is 3, should be 1 or 2\n"},
        {1, 3, {0xF000, 0, 0, 3}, bus + "\"#size-cells\" is 3, should be 1 or 2\n"},
    };
    for (const CCase& one : cases) {
        m_log.Clear();
        MountPorts({{"io", one.reg}}, one.address_cells, one.size_cells);
        EXPECT_EQ(NamesAt("/"), Names{"sim"});
        EXPECT_EQ(Warnings(), Names{one.warning});
    }
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path() / "state/io-ports"));
}

TEST_F(RegisterMount, LeavesOutIoPortsOnAnAddressThatOthersHave) {
    MountPorts({{"first", {0xF000, 4}},
                {"same", {0xF000, 4}},
                {"inside", {0xF003, 1}},
                {"around", {0xEFFF, 255}},
                {"behind", {0xF004, 1}},
                {"before", {0xEFFF, 1}}});
    EXPECT_EQ(NamesAt("/"), (Names{"first", "behind", "before", "sim"}));
    EXPECT_EQ(Warnings(),
              (Names{"left out: /soc/same: address 0xf000 is already taken by /soc/first\n",
                     "left out: /soc/inside: address 0xf003 is already taken by /soc/first\n",
                     "left out: /soc/around: address 0xf000 is already taken by /soc/first\n"}));
}

TEST_F(RegisterMount, EndsTheStartWhenTheFileOfIoPortsHasAnotherSize) {
    const auto file = m_folder.Write("state/io-ports/0xf000.bin", Bytes{1, 2});
    try {
        MountPorts({{"io", {0xF000, 3}}});
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
