// Two parameter EEPROMs on two buses, each with a thread of its own: reading
// tables and driving chips at the same time.
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "tests/i2c/param_eeprom_test.h"
#include "tests/support/bytes.h"

namespace {

constexpr int ROUNDS = 40;

// Memory behind every address; notes nothing.
class CMemoryBus : public CScriptedBus {
  public:
    bool I2cTrans(CI2cXfrReq& req) override {
        const auto addr = static_cast<uint16_t>(req.cmd << 8 | req.cmd >> 8);
        for (size_t i = 0; i < req.tsize; ++i) {
            uint8_t& cell = m_memory[(addr + i) % m_memory.size()];
            (req.dir == 1 ? req.data[i] : cell) = (req.dir == 1 ? cell : req.data[i]);
        }
        return true;
    }
    std::vector<uint8_t> Image(size_t size) const {
        return {m_memory.begin(), m_memory.begin() + static_cast<std::ptrdiff_t>(size)};
    }

  private:
    std::array<uint8_t, 8192> m_memory{};
};

// What one thread does with its EEPROM; whether all of it went well.
bool RunRounds(CMemoryBus& bus, CDiagObj& device, const std::string& file,
               const std::string& broken, const std::vector<uint8_t>& image) {
    CDiagMenu& program = NodeAt(device, "prog-param-eeprom");
    CDiagMenu& check = NodeAt(device, "check-param-eeprom");
    CDiagMenu& erase = NodeAt(device, "erase-param-eeprom");
    for (int round = 0; round < ROUNDS; ++round) {
        const bool ok =
            Send(program, MSG_CALL, broken).Code() == MSG_ERR_FAIL &&
            Send(program, MSG_CALL, file).Code() == MSG_SUCCESS &&
            bus.Image(image.size()) == image &&
            Send(check, MSG_CALL, file).bytes == CheckAnswer(MSG_SUCCESS, 3, WordAt(image, 0)) &&
            Send(erase, MSG_CALL).Code() == MSG_SUCCESS &&
            Send(check, MSG_CALL, file).Code() == MSG_ERR_FAIL;
        if (!ok) {
            return false;
        }
    }
    return true;
}

TEST(ParamEepromThreads, DoNotDisturbEachOther) {
    const CFakeClock clock;
    const CTempFolder folder;
    const std::string no_xml = "<t><signature>1</t>";
    const std::string broken =
        folder.Write("broken.xml", CByteVector(no_xml.begin(), no_xml.end()));
    const std::array<CTable, 2> tables = {CompactTable(), ExtendedTable()};
    std::array<bool, 2> ok{};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < tables.size(); ++i) {
        threads.emplace_back([&, i] {
            const std::string xml = XmlOf(tables[i]);
            const std::string file = folder.Write("table" + std::to_string(i) + ".xml",
                                                  CByteVector(xml.begin(), xml.end()));
            CMemoryBus bus;
            i2c_eeprom_attr_t attr{.xfer_size = 32};
            auto* device = new CTestParamEeprom(bus, &attr, -1);
            bus.AddChild(device, CDiagObj::NO_SORT);
            ok[i] = RunRounds(bus, *device, file, broken, ImageOf(tables[i]));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(ok, (std::array<bool, 2>{true, true}));
}

}  // namespace
