// Imports into the memory of a small tree, with nobody there to be asked.
#pragma once

#include <gmock/gmock.h>

#include <csignal>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "framework/diag_exception.h"
#include "tests/host/shell/raw_device.h"
#include "tests/host/shell/standard_input.h"

using CBytes = std::vector<uint8_t>;

class RawImport : public RawDeviceTest {
  protected:
    std::string Make(const CBytes& bytes) const { return m_folder.Write("data", bytes).string(); }
    // The present contents with some bytes changed.
    CBytes Changed(const std::map<uint32_t, uint8_t>& bytes) const {
        CBytes contents = m_eeprom->contents;
        for (const auto& [offset, byte] : bytes) {
            contents.at(offset) = byte;
        }
        return contents;
    }
    // Imports without asking.
    EExitStatus Import(const CBytes& bytes, const std::string& offset = "") {
        return Run("import eeprom " + Make(bytes) + " " + offset + " --yes");
    }
    void RefusesAndTouchesNothing(const std::string& line, const std::string& error) {
        const CBytes before = m_eeprom->contents;
        EXPECT_EQ(Run(line), EXIT_USAGE) << line;
        EXPECT_EQ(errors, error + "\n");
        EXPECT_EQ(printed, "");
        EXPECT_THAT(m_eeprom->reads, testing::IsEmpty());
        EXPECT_THAT(m_eeprom->writes, testing::IsEmpty());
        EXPECT_EQ(m_eeprom->contents, before);
    }
    static std::function<void(uint32_t)> FailAt(uint32_t at) {
        return [at](uint32_t offset) {
            if (offset == at) {
                throw CDiagException("no acknowledge from 0x50");
            }
        };
    }
    static std::function<void(uint32_t)> CtrlCAt(uint32_t at) {
        return [at](uint32_t offset) {
            if (offset == at) {
                std::raise(SIGINT);
            }
        };
    }

    // Nobody is there, unless a test says otherwise.
    const CStandardInput m_input{"/dev/null"};
};
