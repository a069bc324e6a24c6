// morva-mdio-sim: runs a command for which, and for all that it starts, the driver of the
// processor's MDIO bus is simulated. The PHYs come up as the command starts and are gone
// when it ends.
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "boards/mdio_sim/phy_bus.h"
#include "boards/mdio_sim/sim_environment.h"
#include "boards/preload/preloading.h"

namespace {

constexpr const char* USAGE =
    "usage: morva-mdio-sim COMMAND [ARG...]\n"
    "Runs COMMAND with the driver /dev/fsl-fman_xmdio_us simulated.\n";

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
    ::setenv(BUS_VARIABLE, NameOfDescriptor(fd).c_str(), 1);
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
        return SWITCH_FAILED;
    }
    if (!IsFaultRight(OPEN_FAULT_VARIABLE) || !IsFaultRight(ACCESS_FAULT_VARIABLE)) {
        return SWITCH_FAILED;
    }
    CreateBus();
    Preload("libmorva-mdio-sim.so");
    ::execvp(*command, command);
    const int error = errno;
    std::fprintf(stderr, "morva-mdio-sim: cannot run %s: %s\n", *command, std::strerror(error));
    return error == ENOENT ? SWITCH_NOT_FOUND : SWITCH_CANNOT_RUN;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "morva-mdio-sim: %s\n", fault.what());
        return SWITCH_FAILED;
    }
}
