// What the bus on /dev/i2c-N costs: a reading of an EEPROM, 10,000 readings of a register
// and a scan, against a bare loop of the same requests, and against a process of i2c-tools
// for each. All of them run on the simulated adapters of morva-i2c-sim, which are a process
// of their own; its work, which stands for that of a controller, is not counted with theirs.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "bench/bare_adapter.h"
#include "bench/bench_main.h"
#include "bench/bench_report.h"
#include "bench/median.h"
#include "bench/program.h"
#include "boards/chips/board_eeprom.h"
#include "boards/linux/linux_bus.h"
#include "i2c/DiagI2cSlaveAccess.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr double MOST = 1.2;    // the bare loops
constexpr double LEAST = 100;   // reads for the cost of a process
constexpr int PROCESSES = 100;  // in a round
constexpr int ROUNDS = 5;

// Of the default board.
constexpr const char* DEVICE = "/dev/i2c-0";
constexpr uint8_t EEPROM = 0x50;
constexpr uint16_t SIZE = 8192;
constexpr uint8_t AT_ONCE = 32;
constexpr uint8_t SENSOR = 0x4C;
constexpr uint8_t REGISTER = 0xFE;
constexpr int READS = 10'000;
constexpr uint8_t FIRST_ADDR = 0x08;
constexpr uint8_t LAST_ADDR = 0x77;

bool IsAskedByReading(uint8_t addr) {
    return (addr >= 0x30 && addr <= 0x37) || (addr >= 0x50 && addr <= 0x5F);
}

class CBoard {
  public:
    CBoard() {
        i2c_eeprom_attr_t attr;
        attr.mem_size = SIZE;
        attr.xfer_size = AT_ONCE;
        m_eeprom =
            new CBoardEeprom("eeprom", "a 24C64", board_place_t{&m_bus, -1, EEPROM}, attr, false);
        m_bus.AddChild(m_eeprom, CDiagObj::NO_SORT);
        m_registers.Configure(-1, SENSOR);
    }

    bool ReadEeprom() {
        return m_eeprom->EnablePath() && m_eeprom->ReadMemory(0, m_bytes.data(), SIZE) &&
               m_eeprom->ClearPath();
    }
    bool ReadRegister() {
        uint8_t value = 0;
        return m_registers.ReadReg(REGISTER, &value);
    }
    // How many addresses answer.
    int Scan() {
        int found = 0;
        for (uint8_t addr = FIRST_ADDR; addr <= LAST_ADDR; ++addr) {
            const EScanAccess access =
                IsAskedByReading(addr) ? EScanAccess::RECEIVE_BYTE : EScanAccess::QUICK_WRITE;
            const bool answers = m_bus.OwnerOf(addr).empty() &&
                                 m_bus.Ask(addr, access).kind == CScanAnswer::ACKNOWLEDGED;
            found += answers ? 1 : 0;
        }
        return found;
    }

  private:
    CLinuxBus m_bus{"i2c-0", "adapter", DEVICE};
    CBoardEeprom* m_eeprom;  // a child
    CDiagI2cSlaveAccess m_registers{&m_bus, &m_bus};
    std::vector<byte_t> m_bytes = std::vector<byte_t>(SIZE);
};

class CBareBoard {
  public:
    bool ReadEeprom() {
        bool ok = true;
        for (uint16_t offset = 0; offset < SIZE; offset += AT_ONCE) {
            std::array<uint8_t, 2> at = {static_cast<uint8_t>(offset >> 8),
                                         static_cast<uint8_t>(offset)};
            ok = m_adapter.Read(EEPROM, at, std::span(m_bytes).subspan(offset, AT_ONCE)) && ok;
        }
        return ok;
    }
    bool ReadRegister() {
        std::array<uint8_t, 1> at = {REGISTER};
        return m_adapter.Read(SENSOR, at, std::span(m_bytes).first(1));
    }
    int Scan() {
        int found = 0;
        for (uint8_t addr = FIRST_ADDR; addr <= LAST_ADDR; ++addr) {
            const bool answers =
                m_adapter.Selects(addr) && m_adapter.Asks(addr, IsAskedByReading(addr));
            found += answers ? 1 : 0;
        }
        return found;
    }

  private:
    CBareAdapter m_adapter{DEVICE};
    std::vector<uint8_t> m_bytes = std::vector<uint8_t>(SIZE);
};

template <class Board>
Board& The() {
    static Board board;
    return board;
}

template <class Board>
void ReadEeprom(benchmark::State& state) {
    bool ok = true;
    for ([[maybe_unused]] auto _ : state) {
        ok = The<Board>().ReadEeprom() && ok;
    }
    if (!ok) {
        state.SkipWithError("a reading failed");
    }
}
BENCHMARK(ReadEeprom<CBareBoard>)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadEeprom<CBoard>)->Unit(benchmark::kMicrosecond);

template <class Board>
void ReadRegisters(benchmark::State& state) {
    bool ok = true;
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < READS; ++i) {
            ok = The<Board>().ReadRegister() && ok;
        }
    }
    if (!ok) {
        state.SkipWithError("a reading failed");
    }
}
BENCHMARK(ReadRegisters<CBareBoard>)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadRegisters<CBoard>)->Unit(benchmark::kMicrosecond);

template <class Board>
void Scan(benchmark::State& state) {
    int found = 0;
    for ([[maybe_unused]] auto _ : state) {
        found = The<Board>().Scan();
    }
    state.counters["found"] = found;
    if (found == 0) {
        state.SkipWithError("nobody answers");
    }
}
BENCHMARK(Scan<CBareBoard>)->Unit(benchmark::kMicrosecond);
BENCHMARK(Scan<CBoard>)->Unit(benchmark::kMicrosecond);

// What one such process costs, in nanoseconds of CPU time.
double ProcessNs(const std::vector<std::string>& words) {
    std::vector<double> rounds;
    for (int round = 0; round < ROUNDS; ++round) {
        double ms = 0;
        for (int i = 0; i < PROCESSES; ++i) {
            ms += RunProgram(words).cpu_ms;
        }
        rounds.push_back(ms * 1e6 / PROCESSES);
    }
    return Median(rounds);
}

// What the process with the adapters has cost so far.
double AdaptersNs() {
    clockid_t clock = 0;
    timespec time = {};
    ::clock_getcpuclockid(::getppid(), &clock);
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

bool JudgeProcess(const char* what, double read_ns, const std::vector<std::string>& words) {
    const double process_ns = ProcessNs(words);
    std::printf("%s: %.2f us, a process %.0f us: %.0f times as much\n", what, read_ns / 1e3,
                process_ns / 1e3, process_ns / read_ns);
    return CBenchReport::Judge(std::string("100 times ") + what + " / a process",
                               LEAST * read_ns / process_ns, 1.0);
}

int Run(int argc, char** argv) {
    CBenchReport report;
    if (!report.RunAll(argc, argv)) {
        return 1;
    }
    bool ok =
        report.Counter("Scan<CBoard>", "found") == report.Counter("Scan<CBareBoard>", "found");
    for (const std::string name : {"ReadEeprom", "ReadRegisters", "Scan"}) {
        const double bare = report.MedianNs(name + "<CBareBoard>");
        ok = CBenchReport::Judge(name + " / the bare loop",
                                 report.MedianNs(name + "<CBoard>") / bare, MOST) &&
             ok;
    }
    ok = JudgeProcess("a register read", report.MedianNs("ReadRegisters<CBoard>") / READS,
                      {I2CGET, "-y", "0", "0x4c", "0xfe"}) &&
         ok;
    ok = JudgeProcess("an EEPROM read of 32 bytes",
                      report.MedianNs("ReadEeprom<CBoard>") * AT_ONCE / SIZE,
                      {I2CTRANSFER, "-y", "0", "w2@0x50", "0", "0", "r32"}) &&
         ok;
    std::printf("a scan: %.0f us, i2cdetect %.0f us\n", report.MedianNs("Scan<CBoard>") / 1e3,
                ProcessNs({I2CDETECT, "-y", "0"}) / 1e3);
    const double before = AdaptersNs();
    for (int i = 0; i < READS; ++i) {
        The<CBoard>().ReadRegister();
    }
    std::printf("the simulated adapters take %.2f us for a register read besides\n",
                (AdaptersNs() - before) / READS / 1e3);
    return ok ? 0 : 1;
}

// This program again, on the adapters.
int RunSimulated(int argc, char** argv) {
    const CTempFolder state;
    const std::string folder = state.Path().string();
    std::vector<std::string> words = {MORVA_I2C_SIM, "--state", folder, QUILLBANK_DTB,
                                      std::filesystem::read_symlink("/proc/self/exe").string()};
    words.insert(words.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    pid_t pid = -1;
    int status = -1;
    if (::posix_spawn(&pid, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0 ||
        ::waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) {
        std::fprintf(stderr, "cannot run %s\n", pointers[0]);
        return 1;
    }
    return WEXITSTATUS(status);
}

}  // namespace

int main(int argc, char** argv) {
    const bool is_simulated = std::getenv("MORVA_I2C_SIM_FOLDER") != nullptr;
    return BenchMain([&] { return is_simulated ? Run(argc, argv) : RunSimulated(argc, argv); });
}
