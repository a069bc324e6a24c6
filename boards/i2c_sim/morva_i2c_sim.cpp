// morva-i2c-sim: runs a command for which, and for all that it starts, the I2C adapters of a
// board are simulated as /dev/i2c-N. This process holds the chips, and ends with the command.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "boards/devicetree/file_bytes.h"
#include "boards/i2c_sim/adapter_server.h"
#include "boards/i2c_sim/board_adapters.h"
#include "boards/i2c_sim/sim_folder.h"
#include "boards/i2c_sim/sim_options.h"
#include "boards/i2c_sim/sim_sysfs.h"
#include "boards/preload/preloading.h"
#include "framework/diag_exception.h"
#include "host/diag_log.h"

namespace {

// What mounting the board has to say, as the other errors of this program.
class CErrorLog : public ILogSink {
  public:
    bool Takes(unsigned int logword) const override { return LogTypeOf(logword) <= LOG_LT_WARN; }
    void Write(const CLogRecord& record) override {
        std::fprintf(stderr, "morva-i2c-sim: %s", record.text.c_str());
    }
};

// A channel of a multiplexer and what it hangs on are one wire while it is open: an address
// is owned where it is on any of them (i2c-dev of the kernel asks in the same way).
bool IsBelow(const CAdapter* adapter, const CAdapter& above) {
    while (adapter != nullptr && adapter != &above) {
        adapter = adapter->Parent();
    }
    return adapter != nullptr;
}

bool IsOwned(const CSimSysfs& sysfs, const CBoardAdapters& adapters, const CAdapter& adapter,
             uint8_t addr) {
    return std::ranges::any_of(adapters.Entries(), [&](const CBoardAdapters::CEntry& entry) {
        const CAdapter& other = *entry.adapter;
        return (IsBelow(&adapter, other) || IsBelow(&other, adapter)) &&
               sysfs.HasDriver(other.Number(), addr);
    });
}

int RunCommand(const CSimOptions& options, CCommandProcess& command) {
    CErrorLog log;
    const CLogSinkScope sink(log);
    const std::vector<uint8_t> bytes = ReadFileBytes(options.blob, CDeviceTree::MAX_SIZE);
    const CBoardAdapters adapters(CDeviceTree(options.blob, bytes), options.blob, options.state,
                                  options.traits, options.kernel_mux);
    const CSimFolder folder;
    CSimSysfs sysfs(folder.Sysfs(), bytes);
    CAdapterServer server(folder.Path(), [&](const CAdapter& adapter, uint8_t addr) {
        return IsOwned(sysfs, adapters, adapter, addr);
    });
    for (const CBoardAdapters::CEntry& entry : adapters.Entries()) {
        sysfs.AddAdapter(*entry.adapter, entry.node);
        server.Add(*entry.adapter);
    }
    for (const driven_mux_t& mux : adapters.Muxes()) {
        sysfs.AddMux(*mux.adapter, mux.addr, mux.chip, mux.channels);
    }
    ::setenv(SIM_FOLDER_VARIABLE, folder.Path().c_str(), 1);
    ::setenv("SYSFS_PATH", folder.Sysfs().c_str(), 1);
    Preload("libmorva-i2c-sim.so");
    std::vector<char*> words;
    for (const std::string& word : options.command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    if (const int error = command.Start(words.data())) {
        std::fprintf(stderr, "morva-i2c-sim: cannot run %s: %s\n", words[0],
                     std::generic_category().message(error).c_str());
        return error == ENOENT ? SWITCH_NOT_FOUND : SWITCH_CANNOT_RUN;
    }
    server.ServeWhile(command);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        int status = 0;
        const std::optional<CSimOptions> options = ReadSimOptions(argc, argv, status);
        if (!options) {
            return status;
        }
        CCommandProcess command;
        status = RunCommand(*options, command);
        return status != 0 ? status : command.PassOnStatus();
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "morva-i2c-sim: %s\n", fault.what());
    } catch (const CDiagException& fault) {
        std::fprintf(stderr, "morva-i2c-sim: %s\n", fault.what());
    }
    return SWITCH_FAILED;
}
