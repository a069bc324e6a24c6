// A shell on buses that can be scanned.
//
//   /bus/               a bus
//     mux/              its multiplexer
//       ch0/            a channel
//       ch1/
//         low/          a multiplexer behind that
//           ch0/
//   /menu/other/        another bus
#pragma once

#include <csignal>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "framework/bus_scan.h"
#include "framework/diag_exception.h"
#include "framework/shared_path.h"
#include "host/diag_clock.h"
#include "tests/host/shell/run_report.h"
#include "tests/host/shell/shell_tree.h"

// What goes on with all buses together: "open /bus", "08 quick", "close".
using CScanJournal = std::vector<std::string>;

class CFakeBus : public CDiagDevice, public IBusScan, public ISharedPath {
  public:
    CFakeBus(const std::string& name, CScanJournal& journal)
        : CDiagDevice(name, "a bus", TDEVICE), m_journal(journal) {}

    std::vector<const CDiagMenu*> GetWires() const override { return {this}; }
    void OpenWire(size_t) override { m_journal.emplace_back(std::string("open ") + GetName()); }
    bool CloseWay() override {
        m_journal.emplace_back(std::string("close ") + GetName());
        return true;
    }
    bool CanAsk(EScanAccess access) override { return !lacking.contains(access); }
    CScanAnswer Ask(uint8_t addr, EScanAccess access) override {
        asked[addr] = access;
        if (addr == interrupted_at) {
            std::raise(SIGINT);
        }
        if (const auto failure = failing.find(addr); failure != failing.end()) {
            GetDiagClock().SleepMs(failing_takes_ms);
            return {CScanAnswer::FAILED, failure->second};
        }
        const bool answers =
            answering.contains(addr) || (behind != nullptr && behind->contains(addr));
        return {answers ? CScanAnswer::ACKNOWLEDGED : CScanAnswer::SILENT, {}};
    }
    std::string OwnerOf(uint8_t addr) override {
        const auto owner = owners.find(addr);
        return owner != owners.end() ? owner->second : "";
    }
    bool HasOwned(uint8_t addr) override { return !elsewhere.contains(addr); }
    std::string NameAt(size_t, uint8_t addr) const override {
        const auto name = names.find(addr);
        return name != names.end() ? name->second : "";
    }
    const CDiagDevice* PathTo(const CDiagDevice& target) const override {
        return &target == this ? this : nullptr;
    }

    std::set<uint8_t> answering;
    const std::set<uint8_t>* behind = nullptr;  // what the open channel adds
    std::map<uint8_t, std::string> failing;
    unsigned int failing_takes_ms = 0;
    std::map<uint8_t, std::string> owners;
    std::set<uint8_t> elsewhere;  // what an owner has on another bus
    std::map<uint8_t, std::string> names;
    std::set<EScanAccess> lacking;
    unsigned int interrupted_at = 0x100;
    std::map<uint8_t, EScanAccess> asked;  // in the last scan of a wire or before

  private:
    CScanJournal& m_journal;
};

class CFakeMux : public CDiagDevice, public IBusScan {
  public:
    CFakeMux(const std::string& name, unsigned int channels, CFakeBus& bus, CScanJournal& journal)
        : CDiagDevice(name, "a multiplexer", TDEVICE), m_bus(bus), m_journal(journal) {
        for (unsigned int ch = 0; ch < channels; ++ch) {
            m_channels.push_back(new CDiagMenu(TMENU, "ch" + std::to_string(ch), "a channel"));
            AddChild(m_channels.back(), NO_SORT);
        }
        answering.resize(channels);
    }
    CDiagMenu& Channel(size_t ch) { return *m_channels.at(ch); }

    std::vector<const CDiagMenu*> GetWires() const override {
        return {m_channels.begin(), m_channels.end()};
    }
    void OpenWire(size_t wire) override {
        m_journal.emplace_back("open " + Place(wire));
        if (!opens) {
            throw CDiagException("the I2C path could not be opened");
        }
        m_bus.behind = &answering.at(wire);
    }
    bool CloseWay() override {
        m_journal.emplace_back(std::string("close ") + GetName());
        m_bus.behind = nullptr;
        return closes;
    }
    bool CanAsk(EScanAccess access) override { return m_bus.CanAsk(access); }
    CScanAnswer Ask(uint8_t addr, EScanAccess access) override { return m_bus.Ask(addr, access); }
    std::string OwnerOf(uint8_t addr) override { return m_bus.OwnerOf(addr); }
    bool HasOwned(uint8_t addr) override { return m_bus.HasOwned(addr); }
    std::string NameAt(size_t wire, uint8_t addr) const override {
        const auto name = names.find({wire, addr});
        return name != names.end() ? name->second : "";
    }

    std::vector<std::set<uint8_t>> answering;  // on each channel
    std::map<std::pair<size_t, uint8_t>, std::string> names;
    bool opens = true;
    bool closes = true;

  private:
    std::string Place(size_t wire) const {
        return std::string(GetName()) + "/ch" + std::to_string(wire);
    }

    CFakeBus& m_bus;
    CScanJournal& m_journal;
    std::vector<CDiagMenu*> m_channels;
};

class ScanTest : public ShellTest {
  protected:
    ScanTest() {
        m_root.AddChild(m_bus, CDiagObj::NO_SORT);
        m_bus->AddChild(m_mux, CDiagObj::NO_SORT);
        m_mux->Channel(1).AddChild(m_low, CDiagObj::NO_SORT);
        auto* menu = new CDiagMenu(TMENU, "menu", "a menu");
        m_root.AddChild(menu, CDiagObj::NO_SORT);
        menu->AddChild(m_other, CDiagObj::NO_SORT);
        m_shell.Recorder().AddObserver(m_kept);
    }

    // The wires of the last scan that ended.
    const std::vector<CScannedWire>& Wires() const { return m_kept.records.back().scan; }
    // The lines of the picture from `path` on, up to the next empty one.
    std::string PictureOf(const std::string& path) const {
        const size_t begin = printed.find(path + "\n");
        return begin == std::string::npos
                   ? "(no picture of " + path + ")"
                   : printed.substr(begin, printed.find("\n\n", begin) - begin);
    }

    CScanJournal m_journal;
    CFakeBus* m_bus = new CFakeBus("bus", m_journal);  // all the tree's
    CFakeMux* m_mux = new CFakeMux("mux", 2, *m_bus, m_journal);
    CFakeMux* m_low = new CFakeMux("low", 1, *m_bus, m_journal);
    CFakeBus* m_other = new CFakeBus("other", m_journal);
    CKeptRecords m_kept;
};
