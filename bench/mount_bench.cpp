// What building the tree of a board costs: time and memory per device, which
// must not grow with the board.
#include <malloc.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/bench_main.h"
#include "bench/bench_report.h"
#include "boards/devicetree/board_mount.h"
#include "boards/devicetree/sim_hardware.h"
#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/temp_folder.h"

namespace {

// Per device, a board of 10,000 against one of 100: the caches of the machine
// have their part in it.
constexpr double MOST = 3.0;

constexpr uint32_t FIRST_ADDR = 0x08;
constexpr uint32_t DEVICES_PER_CHANNEL = 50;
constexpr uint32_t CHANNELS = 8;

// Buses with a multiplexer each, and on its channels devices of one kind.
std::vector<uint8_t> Describe(int64_t devices, const std::string& compatible) {
    CBlobBuilder builder(size_t{8} << 20);
    int64_t left = devices;
    for (int bus = 0; left > 0; ++bus) {
        builder.Begin("i2c@" + std::to_string(100 + bus)).Text("compatible", "fsl-i2c");
        builder.Device("mux@70", "nxp,pca9548", 0x70);
        for (uint32_t ch = 0; ch < CHANNELS && left > 0; ++ch) {
            builder.Begin("i2c@" + std::to_string(ch)).Cells("reg", {ch});
            for (uint32_t i = 0; i < DEVICES_PER_CHANNEL && left > 0; ++i, --left) {
                builder.Device("chip@" + std::to_string(i), compatible, FIRST_ADDR + i).End();
            }
            builder.End();
        }
        builder.End().End();
    }
    return builder.Finish();
}

// How many nodes below `node` stand for one of the devices.
int64_t CountDevices(const CDiagObj& node) {
    int64_t count = 0;
    for (const CDiagObj* child : node.GetChildren()) {
        count += std::string_view(child->GetName()).starts_with("chip") ? 1 : CountDevices(*child);
    }
    return count;
}

size_t HeapBytes() {
    return ::mallinfo2().uordblks;
}

void Mount(benchmark::State& state, const std::string& compatible) {
    const int64_t devices = state.range(0);
    static const CTempFolder folder;
    const std::filesystem::path state_folder = folder / (compatible + std::to_string(devices));
    const std::vector<uint8_t> blob = Describe(devices, compatible);
    const CDeviceTree tree("bench.dtb", blob);
    const auto mount = [&] {
        CSimHardware hardware(folder / "images", state_folder);
        return MountBoard(tree, folder / "xml", hardware);
    };
    // The first start of a board makes the files of its memories; later ones are
    // measured.
    if (CountDevices(*mount()) != devices) {
        state.SkipWithError("devices are missing");
        return;
    }
    size_t bytes = 0;
    for ([[maybe_unused]] auto _ : state) {
        const size_t before = HeapBytes();
        std::unique_ptr<CDiagMenu> root = mount();
        bytes = HeapBytes() - before;
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    state.counters["bytes/device"] = static_cast<double>(bytes) / static_cast<double>(devices);
    state.counters["s/device"] = benchmark::Counter(
        static_cast<double>(devices),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
// Chips without a driver, and memories with all that hangs below them.
BENCHMARK_CAPTURE(Mount, chips, "maker,chip")
    ->Arg(100)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Mount, eeproms, "atmel,24c02")
    ->Arg(100)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond);

int Run(int argc, char** argv) {
    CBenchReport report;
    if (!report.RunAll(argc, argv)) {
        return 1;
    }
    bool ok = true;
    for (const std::string kind : {"Mount/chips", "Mount/eeproms"}) {
        for (const char* counter : {"s/device", "bytes/device"}) {
            const double few = report.Counter(kind + "/100", counter);
            const double many = report.Counter(kind + "/10000", counter);
            ok = CBenchReport::Judge(kind + ", " + counter + ", 10,000 against 100", many / few,
                                     MOST) &&
                 ok;
        }
    }
    return ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    return BenchMain([&] { return Run(argc, argv); });
}
