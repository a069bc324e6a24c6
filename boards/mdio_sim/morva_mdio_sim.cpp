// morva-mdio-sim: runs a command for which, and for all that it starts, the driver of the
// processor's MDIO bus is simulated. The PHYs come up as the command starts and are gone
// when it ends.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

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
    const int fd = ::open(object.c_str(), O_RDONLY);  // stays open for COMMAND
    if (fd < 0) {
        throw SystemError("cannot preload " + object);
    }
    // The loader takes blanks and colons to separate names.
    const bool is_one_name = object.find_first_of(" \t\n:") == std::string::npos;
    std::string objects = is_one_name ? object : NameOf(fd);
    if (is_one_name) {
        ::close(fd);
    }
    if (const char* others = std::getenv("LD_PRELOAD")) {
        objects += std::string(":") + others;
    }
    ::setenv("LD_PRELOAD", objects.c_str(), 1);
}

void CreateBus() {
    const int fd = ::memfd_create(BUS_NAME, 0);  // stays open for COMMAND
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

void CheckFault(const char* variable) {
    if (!FaultFrom(variable)) {
        throw std::runtime_error(std::string(variable) + " is '" + std::getenv(variable) +
                                 "', should be an error number from 1 to " +
                                 std::to_string(LAST_ERRNO));
    }
}

int Run(int argc, char** argv) {
    const std::string first = argc > 1 ? argv[1] : "";
    if (first == "-h" || first == "--help") {
        std::fputs(USAGE, stdout);
        return 0;
    }
    if (first.empty() || first.front() == '-') {
        std::fputs(USAGE, stderr);
        return FAILED;
    }
    CheckFault(OPEN_FAULT_VARIABLE);
    CheckFault(ACCESS_FAULT_VARIABLE);
    CreateBus();
    Preload(Object());
    ::execvp(argv[1], argv + 1);
    const int error = errno;
    std::fprintf(stderr, "morva-mdio-sim: cannot run %s: %s\n", argv[1], std::strerror(error));
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
