// The board's tree, and the way to its memories.
#include <algorithm>
#include <set>

#include "host/diag_tree.h"
#include "tests/boards/quillbank/quillbank_test.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Names = std::vector<std::string>;

class Quillbank : public CQuillbankTest {};

// The paths of all nodes but commands and values, in the order of the tree.
void AddPaths(Names& paths, const CDiagObj& node) {
    for (const CDiagObj* child : node.GetChildren()) {
        if (child->GetNodeType() == TMENU || child->GetNodeType() == TDEVICE ||
            child->GetNodeType() == TARRAY_A) {
            paths.push_back(PathOf(*child));
            AddPaths(paths, *child);
        }
    }
}

Names WithChannels(const std::string& mux, unsigned int channels,
                   const std::vector<std::pair<unsigned int, Names>>& devices) {
    Names paths = {mux};
    for (unsigned int ch = 0; ch < channels; ++ch) {
        const std::string channel = mux + "/ch" + std::to_string(ch);
        paths.push_back(channel);
        for (const auto& [at, below] : devices) {
            if (at == ch) {
                paths.insert(paths.end(), below.begin(), below.end());
            }
        }
    }
    return paths;
}

std::set<std::string> FilesBelow(const std::filesystem::path& folder) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.insert(std::filesystem::relative(entry.path(), folder).string());
        }
    }
    return files;
}

}  // namespace

TEST_F(Quillbank, MountsWithoutAWarningAndWithoutAnUnknownDevice) {
    EXPECT_EQ(m_log.Texts(LW_WARN), Names{});
    EXPECT_EQ(m_log.Texts(LW_INFO), Names{});
}

TEST_F(Quillbank, HasItsDevicesWhereTheyHang) {
    const std::string top = "/i2c-0/pca9547-0";
    const std::string dimm = top + "/ch1/pca9548-0";
    const std::string cages = "/i2c-1/pca9548-1";
    const std::string fast = cages + "/ch1/pca9547-1";
    const auto eeprom = [](const std::string& path) { return Names{path, path + "/memory"}; };
    Names want = {"/i2c-0",
                  "/i2c-0/power-12v",
                  "/i2c-0/temp-cpu",
                  "/i2c-0/mfg-eeprom",
                  "/i2c-0/mfg-eeprom/memory",
                  "/i2c-0/cpld"};
    const auto add = [&want](const Names& paths) {
        want.insert(want.end(), paths.begin(), paths.end());
    };
    Names spds = eeprom(top + "/ch0/spd-0");
    for (const std::string& path : eeprom(top + "/ch0/spd-1")) {
        spds.push_back(path);
    }
    add(WithChannels(top, 8,
                     {{0, spds},
                      {1, WithChannels(dimm, 8,
                                       {{2, eeprom(dimm + "/ch2/param-eeprom")},
                                        {5, {dimm + "/ch5/temp-dimm"}},
                                        {6, {dimm + "/ch6/gpio-dimm"}}})}}));
    add({"/i2c-1", "/i2c-1/gpio-cages", "/i2c-1/temp-cages", "/i2c-1/rtc"});
    const auto with_diagnostics = [&eeprom](const std::string& path) {
        Names paths = eeprom(path);
        const Names below = eeprom(path + "/diagnostics");
        paths.insert(paths.end(), below.begin(), below.end());
        return paths;
    };
    add(WithChannels(cages, 8,
                     {{0, with_diagnostics(cages + "/ch0/sfp-1g")},
                      {1, WithChannels(fast, 8, {{3, with_diagnostics(fast + "/ch3/sfp-10g")}})},
                      {2, {cages + "/ch2/gpio-panel"}}}));
    add({"/mdio", "/mdio/mdio-0", "/mdio/mdio-0/phy-mgmt", "/mdio/mdio-0/phy-aux"});
    add({"/mdio/mdio-1", "/mdio/mdio-1/phy-1g", "/mdio/mdio-1/phy-10g"});
    add({"/io-local"});
    add({"/sim", "/sim/i2c-0.power-12v", "/sim/i2c-0.temp-cpu", "/sim/i2c-0.mfg-eeprom",
         "/sim/i2c-0.cpld", "/sim/i2c-0.pca9547-0.ch0.spd-0", "/sim/i2c-0.pca9547-0.ch0.spd-1",
         "/sim/i2c-0.pca9547-0.ch1.pca9548-0.ch2.param-eeprom",
         "/sim/i2c-0.pca9547-0.ch1.pca9548-0.ch5.temp-dimm",
         "/sim/i2c-0.pca9547-0.ch1.pca9548-0.ch6.gpio-dimm", "/sim/i2c-1.gpio-cages",
         "/sim/i2c-1.temp-cages", "/sim/i2c-1.rtc", "/sim/i2c-1.pca9548-1.ch2.gpio-panel",
         "/sim/i2c-1.pca9548-1.ch0.sfp-1g", "/sim/i2c-1.pca9548-1.ch1.pca9547-1.ch3.sfp-10g",
         "/sim/i2c-1.pca9548-1.ch1.pca9547-1.ch3.sfp-10g.diagnostics"});

    Names have;
    AddPaths(have, *m_root);
    EXPECT_EQ(have, want);
    EXPECT_STREQ(m_root->GetDescription(), "QUILLBANK");
}

TEST_F(Quillbank, FillsEveryMemoryFromTheImageOfItsPlace) {
    const std::set<std::string> files = FilesBelow(Images());
    EXPECT_EQ(files.size(), 7U);
    std::set<std::string> state = FilesBelow(State());
    state.erase("lock");  // tells whose they are
    state.erase("io-ports/0xf00000.bin");
    EXPECT_EQ(state, files);
    for (const std::string& file : files) {
        EXPECT_EQ(BytesOf(State() / file), BytesOf(Images() / file)) << file;
    }
}

TEST_F(Quillbank, AnswersWithItsManufacturingRecordOnTheFirstBus) {
    const Bytes image = BytesOf(Images() / "i2c-0/0x50.bin");
    EXPECT_EQ(ReadBus(Bus("i2c-0"), 0x50, {0, 0}, 16), Bytes(image.begin(), image.begin() + 16));
    EXPECT_EQ(ReadBus(Bus("i2c-0"), 0x50, {0, 16}, 9),
              (Bytes{'Q', 'U', 'I', 'L', 'L', 'B', 'A', 'N', 'K'}));
}

TEST_F(Quillbank, ReadsWhatIsOnDiskAtThatMoment) {
    Bytes contents = BytesOf(State() / "i2c-0/0x50.bin");
    const uint8_t changed = static_cast<uint8_t>(~contents[3]);
    contents[3] = changed;
    m_folder.Write("state/i2c-0/0x50.bin", contents);
    EXPECT_EQ(ReadBus(Bus("i2c-0"), 0x50, {0, 3}, 1), Bytes{changed});
}

TEST_F(Quillbank, ReachesTheMemoryModulesThroughTheFirstMultiplexer) {
    ASSERT_TRUE(WriteBus(Bus("i2c-0"), 0x77, {0x08}));
    for (const uint8_t addr : {uint8_t{0x51}, uint8_t{0x53}}) {
        const Bytes image =
            BytesOf(Images() / "i2c-0/0x77/ch0" / (addr == 0x51 ? "0x51.bin" : "0x53.bin"));
        EXPECT_EQ(ReadBus(Bus("i2c-0"), addr, {117}, 20),
                  Bytes(image.begin() + 117, image.begin() + 137));
    }
}

TEST_F(Quillbank, ReachesTheFastModuleThroughTwoMultiplexers) {
    CI2cDevice& bus = Bus("i2c-1");
    EXPECT_EQ(ReadBus(bus, 0x50, {0}, 1), std::nullopt);
    ASSERT_TRUE(WriteBus(bus, 0x70, {1U << 1}));
    ASSERT_TRUE(WriteBus(bus, 0x71, {0x08 | 3}));
    const Bytes image = BytesOf(Images() / "i2c-1/0x70/ch1/0x71/ch3/0x50.bin");
    EXPECT_EQ(ReadBus(bus, 0x50, {0}, 128), Bytes(image.begin(), image.begin() + 128));
}

TEST_F(Quillbank, TellsTheTwoModulesApart) {
    CI2cDevice& bus = Bus("i2c-1");
    ASSERT_TRUE(WriteBus(bus, 0x70, {1U << 0}));
    EXPECT_EQ(ReadBus(bus, 0x50, {40}, 8), (Bytes{'Q', 'O', '-', '1', 'G', '-', 'S', 'X'}));
}
