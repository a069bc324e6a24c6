// The default board, mounted as the host does it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "framework/diag_board.h"
#include "i2c/diag_i2c_device.h"
#include "tests/support/bus_access.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_folder.h"

class CQuillbankTest : public testing::Test {
  protected:
    CQuillbankTest() {
        const std::string state = State();
        const std::vector<const char*> argv = {"libmorva-board.so", "--sim", QUILLBANK_DTB,
                                               "--state", state.c_str()};
        m_root.reset(morva_board_create(static_cast<int>(argv.size()), argv.data()));
    }

    static std::filesystem::path Images() {
        return std::filesystem::path(QUILLBANK_DTB).parent_path() / "images";
    }
    std::filesystem::path State() const { return m_folder.Path() / "state"; }

    CI2cDevice& Bus(const std::string& name) {
        return dynamic_cast<CI2cDevice&>(*m_root->FindChild(name));
    }

    const CTempFolder m_folder;
    CLogCapture m_log;
    std::unique_ptr<CDiagMenu> m_root;
};
