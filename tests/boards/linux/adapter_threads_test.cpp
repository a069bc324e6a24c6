// One adapter that several threads use: selecting an address and what is then done with
// it are two calls of the kernel.
#include <gtest/gtest.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <thread>

#include "boards/linux/i2c_adapter.h"
#include "tests/support/gate.h"

namespace {

constexpr int ROUNDS = 2000;

// Every chip holds its own address; every third call finds the adapter unplugged.
class CAddressDev : public II2cDev {
  public:
    int Open(const std::string&) override {
        m_addr = 0;
        return 7;
    }
    void Close(int) override { m_addr = 0; }
    int GetFunctions(int, unsigned long& functions) override {
        functions = I2C_FUNC_SMBUS_BYTE;
        return 0;
    }
    int Transfer(int, std::span<i2c_msg>) override { return -EOPNOTSUPP; }
    int SelectSlave(int, uint8_t addr, bool) override {
        m_addr = addr;
        return 0;
    }
    int Smbus(int, bool, uint8_t, uint32_t, i2c_smbus_data* data) override {
        data->byte = m_addr;
        return ++m_calls % 3 == 0 ? -ENODEV : 0;
    }

  private:
    uint8_t m_addr = 0;
    unsigned int m_calls = 0;
};

TEST(AdapterThreads, AskTheChipThatEachOfThemMeans) {
    CAddressDev dev;
    CI2cAdapter adapter("/dev/i2c-3", CI2cSysfs("/nowhere"), dev);
    CGate start;
    std::array<int, 2> good{};
    std::array<std::thread, 2> threads;
    for (size_t i = 0; i < threads.size(); ++i) {
        threads[i] = std::thread([&, i] {
            const auto addr = static_cast<uint8_t>(0x50 + i);
            start.Await();
            for (int round = 0; round < ROUNDS; ++round) {
                i2c_smbus_data data{};
                const int result = adapter.Smbus(addr, true, 0, I2C_SMBUS_BYTE, data);
                good.at(i) += (result == 0 || result == -ENODEV) && data.byte == addr ? 1 : 0;
                good.at(i) -= adapter.DriverOf(addr).empty() ? 0 : 1;
            }
        });
    }
    start.Open();
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, (std::array{ROUNDS, ROUNDS}));
}

}  // namespace
