// The commands of the simulation device.
#pragma once

#include <string>

#include "boards/sim/sim_device.h"
#include "framework/diag_func.h"

// What the commands share: the device, the catching of bad arguments, the answer.
class CSimCmd : public CDiagFunc {
  public:
    CSimCmd(const std::string& name, const std::string& description);

    void Invoke(CInMsg& in, COutMsg& out) final;

  protected:
    // Reads the arguments and does the work; throws CDiagException to refuse.
    virtual void Run(CSimDevice& device, CInMsg& in) = 0;
};

// A command whose first argument is the name of a bus, and which puts a fault on it.
class CSimFaultCmd : public CSimCmd {
  public:
    CSimFaultCmd(const std::string& name, const std::string& description);

  protected:
    void Run(CSimDevice& device, CInMsg& in) final;
    // Reads the arguments after the bus.
    virtual void Inject(CSimFaults& faults, CInMsg& in) = 0;
};

class CSimNackCmd : public CSimFaultCmd {
  public:
    CSimNackCmd(const std::string& name, const std::string& description);

  protected:
    void Inject(CSimFaults& faults, CInMsg& in) override;
};

class CSimStickCmd : public CSimFaultCmd {
  public:
    using CSimFaultCmd::CSimFaultCmd;

  protected:
    void Inject(CSimFaults& faults, CInMsg& in) override;
};

class CSimFlipCmd : public CSimFaultCmd {
  public:
    CSimFlipCmd(const std::string& name, const std::string& description);

  protected:
    void Inject(CSimFaults& faults, CInMsg& in) override;
};

class CSimFailNthCmd : public CSimFaultCmd {
  public:
    CSimFailNthCmd(const std::string& name, const std::string& description);

  protected:
    void Inject(CSimFaults& faults, CInMsg& in) override;
};

// Takes all faults off all buses.
class CSimClearCmd : public CSimCmd {
  public:
    using CSimCmd::CSimCmd;

  protected:
    void Run(CSimDevice& device, CInMsg& in) override;
};

// Prints the faults and the counters of every bus.
class CSimShowCmd : public CSimCmd {
  public:
    using CSimCmd::CSimCmd;

  protected:
    void Run(CSimDevice& device, CInMsg& in) override;
};

// Sets the pace of every bus, if one is given, and prints it.
class CSimPaceCmd : public CSimCmd {
  public:
    CSimPaceCmd(const std::string& name, const std::string& description);

  protected:
    void Run(CSimDevice& device, CInMsg& in) override;
};
