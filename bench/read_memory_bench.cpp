// What the library costs: reading 8 KiB behind two multiplexers, against the
// bare loop of the same transfers on the same bus.
#include <cstdio>
#include <vector>

#include "bench/bench_main.h"
#include "bench/bench_report.h"
#include "bench/eeprom_board.h"
#include "tests/support/request.h"

namespace {

constexpr double MOST = 2.0;

using enum CEepromBoard::EMemory;

// With a chip that costs nothing the library's part shows; with the simulated
// EEPROM it is what an operator waits for.
template <CEepromBoard::EMemory MEMORY>
CEepromBoard& Board() {
    static CEepromBoard board(MEMORY);
    return board;
}

// Requests for the transfers of one reading, the selecting of channels
// included, built once.
class CBareReading {
  public:
    explicit CBareReading(CEepromBoard& board) : m_bus(board.Bus()) {
        std::vector<byte_t> bytes(CEepromBoard::SIZE);
        m_bus.Record(&m_transfers);
        m_ok = board.ReadMemory(bytes.data());
        m_bus.Record(nullptr);
        for (CBenchBus::CRecorded& transfer : m_transfers) {
            transfer.req.data = transfer.data.data();
        }
    }
    CBareReading(const CBareReading&) = delete;
    CBareReading& operator=(const CBareReading&) = delete;

    size_t Count() const { return m_transfers.size(); }
    bool Run() {
        bool ok = m_ok;
        for (CBenchBus::CRecorded& transfer : m_transfers) {
            ok = m_bus.I2cTrans(transfer.req) && ok;
        }
        return ok;
    }

  private:
    CBenchBus& m_bus;
    std::vector<CBenchBus::CRecorded> m_transfers;
    bool m_ok = false;
};

template <CEepromBoard::EMemory MEMORY>
void BareTransfers(benchmark::State& state) {
    CBareReading reading(Board<MEMORY>());
    bool ok = true;
    for ([[maybe_unused]] auto _ : state) {
        ok = reading.Run() && ok;
    }
    if (!ok) {
        state.SkipWithError("a transfer failed");
    }
    state.counters["transfers"] = static_cast<double>(reading.Count());
}
BENCHMARK(BareTransfers<QUICK>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BareTransfers<SIMULATED>)->Unit(benchmark::kMicrosecond);

void ReadMemory(benchmark::State& state) {
    std::vector<byte_t> bytes(CEepromBoard::SIZE);
    bool ok = true;
    for ([[maybe_unused]] auto _ : state) {
        ok = Board<QUICK>().ReadMemory(bytes.data()) && ok;
    }
    if (!ok) {
        state.SkipWithError("a reading failed");
    }
}
BENCHMARK(ReadMemory)->Unit(benchmark::kMicrosecond);

void ReadCommand(benchmark::State& state) {
    CDiagMenu& command = NodeAt(Board<SIMULATED>().Eeprom(), "read");
    bool ok = true;
    for ([[maybe_unused]] auto _ : state) {
        ok = Send(command, MSG_CALL, uint32_t{0}, uint32_t{CEepromBoard::SIZE}).Code() ==
                 MSG_SUCCESS &&
             ok;
    }
    if (!ok) {
        state.SkipWithError("a command failed");
    }
}
BENCHMARK(ReadCommand)->Unit(benchmark::kMicrosecond);

int Run(int argc, char** argv) {
    CBenchReport report;
    if (!report.RunAll(argc, argv)) {
        return 1;
    }
    const double bare = report.MedianNs("BareTransfers<QUICK>");
    const double memory = report.MedianNs("ReadMemory");
    const double transfers = report.Counter("BareTransfers<QUICK>", "transfers");
    std::printf("ReadMemory adds %.0f ns to each of %.0f transfers\n", (memory - bare) / transfers,
                transfers);
    const bool memory_ok =
        CBenchReport::Judge("ReadMemory / the bare transfers", memory / bare, MOST);
    const double command =
        report.MedianNs("ReadCommand") / report.MedianNs("BareTransfers<SIMULATED>");
    const bool command_ok =
        CBenchReport::Judge("the command \"read\" / the bare transfers", command, MOST);
    return memory_ok && command_ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    return BenchMain([&] { return Run(argc, argv); });
}
