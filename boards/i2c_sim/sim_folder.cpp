#include "boards/i2c_sim/sim_folder.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <string>
#include <system_error>

#include "boards/i2c_sim/sim_protocol.h"
#include "boards/preload/preloading.h"
#include "framework/file_descriptor.h"

namespace {

constexpr size_t LONGEST_NUMBER = 10;

}  // namespace

CSimFolder::CSimFolder() {
    std::string name =
        (std::filesystem::absolute(std::filesystem::temp_directory_path()) / "morva-i2c-sim-XXXXXX")
            .string();
    if (name.size() + std::string(SIM_SOCKETS).size() + LONGEST_NUMBER >=
        sizeof(sockaddr_un::sun_path)) {
        throw std::runtime_error(name + ": is too long a name for a socket's folder, set TMPDIR");
    }
    if (::mkdtemp(name.data()) == nullptr) {
        throw SystemError(name);
    }
    m_path = name;
    std::filesystem::create_directory(m_path / "dev");
    MakeTurns();
}

CSimFolder::~CSimFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void CSimFolder::MakeTurns() const {
    const std::string name = m_path.string() + SIM_TURNS;
    const CFileDescriptor file(::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.IsOpen() || ::ftruncate(file.Get(), sizeof(sim_turns_t)) != 0) {
        throw SystemError(name);
    }
    void* memory =
        ::mmap(nullptr, sizeof(sim_turns_t), PROT_READ | PROT_WRITE, MAP_SHARED, file.Get(), 0);
    if (memory == MAP_FAILED) {
        throw SystemError(name);
    }
    auto& turns = *new (memory) sim_turns_t;
    pthread_mutexattr_t kind;
    pthread_mutexattr_init(&kind);
    pthread_mutexattr_setpshared(&kind, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&kind, PTHREAD_MUTEX_ROBUST);
    // A signal's handler that calls where its own thread is in a call is to fail.
    pthread_mutexattr_settype(&kind, PTHREAD_MUTEX_ERRORCHECK);
    for (sim_turn_t& turn : turns.turns) {
        pthread_mutex_init(&turn.lock, &kind);
        turn.last_id = 0;
    }
    pthread_mutexattr_destroy(&kind);
    ::munmap(memory, sizeof(sim_turns_t));
}
