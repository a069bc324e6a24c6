// Several threads on one simulated bus.
#include <atomic>
#include <thread>

#include "boards/sim/sim_device.h"
#include "tests/boards/sim/sim_test.h"
#include "tests/support/request.h"

namespace {

class SimThreads : public CSimTest {
  protected:
    static constexpr int ROUNDS = 200;
};

bool WriteAndReadBack(CSimBus& bus, uint8_t addr, uint8_t position, uint8_t value) {
    uint8_t back = 0;
    return bus.smb_write_byte(-1, addr, position, value) &&
           bus.smb_read_byte(-1, addr, position, &back) && back == value;
}

// Both threads wait for write cycles most of the time, each while the other
// uses the bus.
TEST_F(SimThreads, WriteTwoChipsOfOneBusAtOnce) {
    AddAt24("24c02", 0x50);
    AddAt24("24c02", 0x51);
    std::atomic<int> failures{0};
    const auto work = [&](uint8_t addr) {
        for (int i = 0; i < ROUNDS; ++i) {
            const auto value = static_cast<uint8_t>(addr + i);
            if (!WriteAndReadBack(m_bus, addr, static_cast<uint8_t>(i), value)) {
                ++failures;
            }
        }
    };
    std::thread one(work, uint8_t{0x50});
    std::thread two(work, uint8_t{0x51});
    one.join();
    two.join();
    EXPECT_EQ(failures, 0);
    EXPECT_GE(m_bus.GetTransfers(), uint64_t{2 * 2 * ROUNDS});
}

TEST_F(SimThreads, WriteOneChipAtOnce) {
    CSimAt24& chip = AddAt24("24c02", 0x50);
    std::atomic<int> failures{0};
    const auto work = [&](uint8_t first) {
        for (int i = 0; i < ROUNDS; ++i) {
            const auto position = static_cast<uint8_t>(first + 2 * (i % 128));
            const auto value = static_cast<uint8_t>(first + i);
            if (!WriteAndReadBack(m_bus, 0x50, position, value)) {
                ++failures;
            }
        }
    };
    std::thread one(work, uint8_t{0});
    std::thread two(work, uint8_t{1});
    one.join();
    two.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(BytesOf(chip.Memory().Path())[1], static_cast<uint8_t>(1 + 128));
}

TEST_F(SimThreads, InjectFaultsAndShowThemWhileTheBusWorks) {
    AddAt24("24c02", 0x50, Counting(256));
    CSimDevice sim;
    sim.AddBus(m_bus);
    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    std::thread reader([&] {
        for (int i = 0; i < ROUNDS; ++i) {
            const auto position = static_cast<uint8_t>(i);
            uint8_t byte = 0;
            if (m_bus.smb_read_byte(-1, 0x50, position, &byte) && byte != position) {
                ++wrong;
            }
        }
        done = true;
    });
    do {
        Send(NodeAt(sim, "nack"), MSG_CALL, std::string("i2c-0"), uint8_t{0x50});
        EXPECT_EQ(Send(NodeAt(sim, "show"), MSG_CALL).Code(), 0);
        EXPECT_EQ(Send(NodeAt(sim, "clear"), MSG_CALL).Code(), 0);
    } while (!done);
    reader.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(m_bus.GetTransfers(), uint64_t{ROUNDS});
    uint8_t byte = 0;
    EXPECT_TRUE(m_bus.smb_read_byte(-1, 0x50, 0x42, &byte));
    EXPECT_EQ(byte, 0x42);
}

}  // namespace
