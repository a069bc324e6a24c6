#include "boards/devicetree/adapter_board.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/diag_tree.h"
#include "tests/boards/devicetree/silent_i2c_dev.h"
#include "tests/boards/devicetree/sysfs_folder.h"
#include "tests/support/log_capture.h"
#include "tests/support/thrown_text.h"

namespace {

std::string DescriptionAt(CDiagMenu& root, const std::string& path) {
    const CDiagObj* node = FindByPath(root, path);
    return node == nullptr ? "(no node at " + path + ")" : node->GetDescription();
}

}  // namespace

TEST(AdapterBoard, HasABusForEveryAdapterWithTheChipsThatTheKernelHas) {
    CSysfsFolder sysfs;
    CSilentI2cDev dev;
    sysfs.AddAdapter(10, "USB\tadapter", "");
    sysfs.AddAdapter(2, "SMBus I801 adapter", "");
    sysfs.AddDriver(2, 0x50, "ee1004", "ee1004");
    sysfs.AddDriver(2, 0x08, "odd driver", "a/b");
    const std::unique_ptr<CDiagMenu> root = MountAdapters(sysfs.Sysfs(), dev);
    ASSERT_EQ(root->GetChildren().size(), 2U);
    EXPECT_EQ(dev.opened, (std::vector<std::string>{"/dev/i2c-2", "/dev/i2c-10"}));
    EXPECT_EQ(DescriptionAt(*root, "/i2c-2"), "/dev/i2c-2, SMBus I801 adapter");
    EXPECT_EQ(DescriptionAt(*root, "/i2c-10"), "/dev/i2c-10, USB?adapter");
    EXPECT_EQ(DescriptionAt(*root, "/i2c-2/ee1004@50"),
              "ee1004 at 0x50 (the kernel's: driver ee1004): plain slave");
    EXPECT_EQ(DescriptionAt(*root, "/i2c-2/a_b@08"),
              "a/b at 0x08 (the kernel's: driver odd driver): plain slave");
}

TEST(AdapterBoard, GoesOnWithoutAnAdapterThatCannotBeOpened) {
    CSysfsFolder sysfs;
    CSilentI2cDev dev;
    const CLogCapture log;
    sysfs.AddAdapter(1, "one", "");
    sysfs.AddAdapter(2, "two", "");
    dev.missing = {"/dev/i2c-1"};
    const std::unique_ptr<CDiagMenu> root = MountAdapters(sysfs.Sysfs(), dev);
    ASSERT_EQ(root->GetChildren().size(), 1U);
    EXPECT_STREQ(root->GetChildren().front()->GetName(), "i2c-2");
    ASSERT_EQ(log.Texts(LW_WARN).size(), 1U);
    EXPECT_EQ(log.Texts(LW_WARN)[0].find("left out: /dev/i2c-1"), 0U) << log.Texts(LW_WARN)[0];
}

TEST(AdapterBoard, NeedsAnAdapter) {
    CSysfsFolder sysfs;
    CSilentI2cDev dev;
    const CLogCapture log;
    EXPECT_EQ(ThrownText([&] { MountAdapters(sysfs.Sysfs(), dev); }),
              "this machine has no I2C adapter, or none that programs may use: the kernel module "
              "i2c-dev makes them (modprobe i2c-dev)");
    sysfs.AddAdapter(1, "one", "");
    dev.missing = {"/dev/i2c-1"};
    EXPECT_EQ(ThrownText([&] { MountAdapters(sysfs.Sysfs(), dev); }),
              "no I2C adapter of this machine can be opened");
}
