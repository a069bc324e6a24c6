#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "framework/diag_board.h"
#include "i2c/diag_i2c_device.h"
#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/bus_access.h"
#include "tests/support/temp_folder.h"
#include "tests/support/thrown_text.h"

namespace {

std::unique_ptr<CDiagMenu> Create(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "libmorva-board.so");
    std::vector<const char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    return std::unique_ptr<CDiagMenu>(
        morva_board_create(static_cast<int>(argv.size()), argv.data()));
}

std::vector<uint8_t> OneEeprom() {
    return CBlobBuilder()
        .Begin("i2c@1")
        .Text("compatible", "fsl-i2c")
        .Text("label", "i2c-0")
        .Device("eeprom@50", "atmel,24c02", 0x50)
        .End()
        .End()
        .Finish();
}

}  // namespace

TEST(BoardEntry, BuildsTheBoardWithTheImagesBesideItsBlob) {
    const CTempFolder folder;
    const auto blob = folder.Write("board/test.dtb", OneEeprom());
    folder.Write("board/images/i2c-0/0x50.bin", std::vector<uint8_t>(256, 0x3C));
    const auto state = folder.Path() / "state";

    const std::unique_ptr<CDiagMenu> root = Create({"--sim", blob, "--state", state});
    auto* bus = dynamic_cast<CI2cDevice*>(root->FindChild("i2c-0"));
    ASSERT_NE(bus, nullptr);
    EXPECT_EQ(ReadBus(*bus, 0x50, {0}, 2), (std::vector<uint8_t>{0x3C, 0x3C}));
    EXPECT_EQ(BytesOf(state / "i2c-0/0x50.bin"), std::vector<uint8_t>(256, 0x3C));
}

TEST(BoardEntry, FindsWhatEarlierRunsWrote) {
    const CTempFolder folder;
    const auto blob = folder.Write("test.dtb", OneEeprom());
    const std::vector<std::string> arguments = {"--sim", blob, "--state", folder.Path() / "state"};
    {
        const std::unique_ptr<CDiagMenu> root = Create(arguments);
        ASSERT_TRUE(
            WriteBus(dynamic_cast<CI2cDevice&>(*root->FindChild("i2c-0")), 0x50, {0x20, 0x77}));
    }
    const std::unique_ptr<CDiagMenu> root = Create(arguments);
    EXPECT_EQ(ReadBus(dynamic_cast<CI2cDevice&>(*root->FindChild("i2c-0")), 0x50, {0x20}, 1),
              std::vector<uint8_t>{0x77});
}

TEST(BoardEntry, NamesTheFileAndTheFaultOfABadBlob) {
    const CTempFolder folder;
    const std::string state = folder.Path() / "state";
    const std::string none = folder.Path() / "none.dtb";
    EXPECT_EQ(ThrownText([&] {
                  Create({"--sim", none, "--state", state});
              }),
              none + ": cannot be opened: No such file or directory");
    const std::string empty = folder.Write("empty.dtb", {});
    EXPECT_EQ(ThrownText([&] {
                  Create({"--sim", empty, "--state", state});
              }),
              empty + ": the file is empty");
    const std::string text = folder.Write("text.dtb", std::vector<uint8_t>(100, 'x'));
    EXPECT_EQ(ThrownText([&] {
                  Create({"--sim", text, "--state", state});
              }),
              text + ": not a flattened device tree (it does not begin with d00dfeed)");
}

TEST(BoardEntry, SaysWhatItNeeds) {
    EXPECT_NE(ThrownText([] { Create({}); }).find("--sim"), std::string::npos);
}
