// How much of the time on the wire is not the chip's own: its slave address,
// memory address and data bytes with their acknowledges. The rest selects
// channels, begins and ends transfers, or asks a busy chip again. The simulated
// wire counts bits, so the figures are the same on every machine.
#include <cstdio>
#include <functional>

#include "bench/bench_main.h"
#include "bench/eeprom_board.h"
#include "tests/support/request.h"

namespace {

constexpr uint64_t NS_PER_BIT = 1'000'000'000 / CEepromBoard::BUS_HZ;

struct CUse {
    const char* name;
    uint8_t addr;  // of the chip
    std::function<bool(CEepromBoard&)> run;
};

template <class... Args>
bool Call(CEepromBoard& board, const char* child, const Args&... args) {
    return Send(NodeAt(board.Eeprom(), child), MSG_CALL, args...).Code() == MSG_SUCCESS;
}

bool AccessRegister(CEepromBoard& board, bool write) {
    CDiagI2cSlaveAccess& registers = board.Registers();
    uint8_t value = 0;
    return registers.EnablePath() &&
           (write ? registers.WriteReg(3, value) : registers.ReadReg(3, &value)) &&
           registers.ClearPath();
}

const CUse USES[] = {
    {"read 8 KiB", CEepromBoard::EEPROM_ADDR,
     [](CEepromBoard& board) { return Call(board, "read", uint32_t{0}, uint32_t{8192}); }},
    {"read 16 bytes", CEepromBoard::EEPROM_ADDR,
     [](CEepromBoard& board) { return Call(board, "read", uint32_t{0}, uint32_t{16}); }},
    {"rw-test of 8 KiB", CEepromBoard::EEPROM_ADDR,
     [](CEepromBoard& board) { return Call(board, "rw-test"); }},
    {"rw-test of 1 to 128", CEepromBoard::EEPROM_ADDR,
     [](CEepromBoard& board) { return Call(board, "rw-test", uint16_t{1}, uint16_t{128}); }},
    {"register read", CEepromBoard::REGISTER_ADDR,
     [](CEepromBoard& board) { return AccessRegister(board, false); }},
    {"register write", CEepromBoard::REGISTER_ADDR,
     [](CEepromBoard& board) { return AccessRegister(board, true); }},
};

bool Measure(const CUse& use, uint8_t mode) {
    CEepromBoard board;
    CBenchBus& bus = board.Bus();
    bus.SetSwMode(mode);
    // The first run finds the path closed, whatever the mode.
    if (!use.run(board)) {
        return false;
    }
    bus.WaitMs(10);  // no write cycle is left over
    const uint64_t wire_before = bus.GetWireNs();
    const uint64_t transfers_before = bus.GetTransfers();
    const uint64_t polls_before = bus.GetPolls();
    bus.Watch(use.addr);
    if (!use.run(board)) {
        return false;
    }
    const auto wire_ns = static_cast<double>(bus.GetWireNs() - wire_before);
    const auto own_ns = static_cast<double>(bus.GetChipBits() * NS_PER_BIT);
    std::printf("%-20s %4u %10llu %7llu %12.2f %12.2f %9.1f %%\n", use.name, unsigned{mode},
                static_cast<unsigned long long>(bus.GetTransfers() - transfers_before),
                static_cast<unsigned long long>(bus.GetPolls() - polls_before), wire_ns / 1e6,
                own_ns / 1e6, 100 * (wire_ns - own_ns) / wire_ns);
    return true;
}

int Run() {
    std::printf("behind two multiplexers, at %u Hz\n", CEepromBoard::BUS_HZ);
    std::printf("%-20s %4s %10s %7s %12s %12s %11s\n", "", "mode", "transfers", "polls", "wire ms",
                "chip's ms", "the rest");
    for (const CUse& use : USES) {
        for (const uint8_t mode : {uint8_t{1}, uint8_t{2}}) {
            if (!Measure(use, mode)) {
                std::fprintf(stderr, "%s failed in mode %u\n", use.name, unsigned{mode});
                return 1;
            }
        }
    }
    return 0;
}

}  // namespace

int main() {
    return BenchMain(Run);
}
