// Mounts boards that a test describes, and looks at what came of it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "boards/devicetree/board_mount.h"
#include "boards/devicetree/sim_hardware.h"
#include "framework/diag_menu.h"
#include "host/diag_tree.h"
#include "i2c/diag_i2c_device.h"
#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/temp_folder.h"

class CMountTest : public testing::Test {
  protected:
    // A board with one bus, "i2c-0", on which `devices` are.
    CDiagMenu& MountOnBus(const std::function<void(CBlobBuilder&)>& devices) {
        CBlobBuilder builder;
        builder.Begin("i2c@100")
            .Text("compatible", "fsl-i2c")
            .Cells("reg", {0x100})
            .Text("label", "i2c-0");
        devices(builder);
        builder.End();
        return Mount(builder);
    }

    CDiagMenu& Mount(CBlobBuilder& builder) {
        const std::vector<uint8_t> blob = builder.Finish();
        const CDeviceTree tree("b.dtb", blob);
        m_root.reset();  // two boards cannot have one folder
        CSimHardware hardware(m_folder / "images", m_folder / "state");
        m_root = MountBoard(tree, m_folder / "xml", hardware);
        return *m_root;
    }

    // The names of the nodes below, without the commands of buses and of "sim".
    static std::vector<std::string> MenusBelow(const CDiagObj& node) {
        std::vector<std::string> names;
        for (const CDiagObj* child : node.GetChildren()) {
            if (child->GetNodeType() == TMENU || child->GetNodeType() == TDEVICE) {
                names.emplace_back(child->GetName());
            }
        }
        return names;
    }

    std::vector<std::string> NamesAt(const std::string& path) {
        const CDiagObj* node = FindByPath(*m_root, path);
        return node == nullptr ? std::vector<std::string>{"(no node at " + path + ")"}
                               : MenusBelow(*node);
    }

    std::string DescriptionAt(const std::string& path) {
        const CDiagObj* node = FindByPath(*m_root, path);
        return node == nullptr ? "(no node at " + path + ")" : node->GetDescription();
    }

    CI2cDevice& Bus(const std::string& name) {
        auto* bus = dynamic_cast<CI2cDevice*>(m_root->FindChild(name));
        if (bus == nullptr) {
            throw std::runtime_error("no bus " + name);
        }
        return *bus;
    }

    // What the command "left-out" prints.
    std::vector<std::string> LeftOut() {
        const CLogCapture log;
        EXPECT_EQ(Send(NodeAt(*m_root, "left-out"), MSG_CALL).bytes, std::vector<uint8_t>{0});
        return log.Texts(LW_PRINT);
    }

    std::vector<std::string> Warnings() const { return m_log.Texts(LW_WARN); }

    const CTempFolder m_folder;
    CLogCapture m_log;
    std::unique_ptr<CDiagMenu> m_root;
};
