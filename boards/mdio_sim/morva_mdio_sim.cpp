// morva-mdio-sim: runs a command for which, and for all that it starts, the driver of the
// processor's MDIO bus is simulated. The PHYs come up as the command starts and are gone
// when it ends.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

#include "boards/mdio_sim/phy_bus.h"
#include "boards/mdio_sim/sim_environment.h"

namespace {

// As env and its kind have them.
constexpr int FAILED = 125;
constexpr int CANNOT_BE_RUN = 126;
constexpr int NOT_FOUND = 127;

constexpr const char* USAGE =
    "usage: morva-mdio-sim COMMAND [ARG...]\n"
    "Runs COMMAND with the driver /dev/fsl-fman_xmdio_us simulated.\n";

std::runtime_error SystemError(const std::string& what) {
    return std::runtime_error(what + ": " + std::strerror(errno));
}

// Scripts open the low numbers and shells take those up to 255 for their own: what COMMAND
// has to keep open lies above, as far as its limit allows.
int KeepOutOfTheWay(int fd) {
    constexpr rlim_t OUT_OF_THE_WAY = 512;
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return -1;
    }
    const int kept =
        ::fcntl(fd, F_DUPFD, static_cast<int>(std::min(OUT_OF_THE_WAY, limit.rlim_cur / 2)));
    const int error = errno;
    ::close(fd);
    errno = error;
    return kept;
}

// A name of a descriptor that serves all processes while this one keeps it open: as this
// one becomes COMMAND, for as long as that runs.
std::string NameOf(int fd) {
    return "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(fd);
}

// The same way from the program as in the build tree where it is installed.
std::string Object() {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    const std::filesystem::path folder = program.parent_path() / MORVA_LIBRARIES_FROM_PROGRAM;
    return (folder / "libmorva-mdio-sim.so").lexically_normal().string();
}

void Preload(const std::string& object) {
    int fd = ::open(object.c_str(), O_RDONLY);
    if (fd < 0) {
        throw SystemError("cannot preload " + object);
    }
    // The loader takes blanks and colons to separate names.
    std::string objects = object;
    if (object.find_first_of(" \t\n:") == std::string::npos) {
        ::close(fd);
    } else {
        fd = KeepOutOfTheWay(fd);
        if (fd < 0) {
            throw SystemError("cannot preload " + object);
        }
        objects = NameOf(fd);
    }
    if (const char* others = std::getenv("LD_PRELOAD")) {
        objects += std::string(":") + others;
    }
    ::setenv("LD_PRELOAD", objects.c_str(), 1);
}

void CreateBus() {
    int fd = ::memfd_create(BUS_NAME, 0);
    fd = fd < 0 ? fd : KeepOutOfTheWay(fd);
    if (fd < 0 || ::ftruncate(fd, sizeof(CPhyBus)) != 0) {
        throw SystemError("cannot make the simulated bus");
    }
    void* memory = ::mmap(nullptr, sizeof(CPhyBus), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED) {
        throw SystemError("cannot make the simulated bus");
    }
    new (memory) CPhyBus;  // lasts as long as the memory
    ::munmap(memory, sizeof(CPhyBus));
    ::setenv(BUS_VARIABLE, NameOf(fd).c_str(), 1);
}

bool IsFaultRight(const char* variable) {
    const bool right = FaultFrom(variable).has_value();
    if (!right) {
        TellWrongFault(variable);
    }
    return right;
}

int Run(int argc, char** argv) {
    const std::string first = argc > 1 ? argv[1] : "";
    if (first == "-h" || first == "--help") {
        std::fputs(USAGE, stdout);
        return 0;
    }
    const bool is_option = !first.empty() && first.front() == '-';
    char** command = argv + (first == "--" ? 2 : 1);
    if ((is_option && first != "--") || *command == nullptr || **command == '\0') {
        std::fputs(USAGE, stderr);
        return FAILED;
    }
    if (!IsFaultRight(OPEN_FAULT_VARIABLE) || !IsFaultRight(ACCESS_FAULT_VARIABLE)) {
        return FAILED;
    }
    CreateBus();
    Preload(Object());
    ::execvp(*command, command);
    const int error = errno;
    std::fprintf(stderr, "morva-mdio-sim: cannot run %s: %s\n", *command, std::strerror(error));
    return error == ENOENT ? NOT_FOUND : CANNOT_BE_RUN;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "morva-mdio-sim: %s\n", fault.what());
        return FAILED;
    }
}
