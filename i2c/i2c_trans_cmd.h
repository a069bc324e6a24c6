// The bus command "trans": one raw transfer from the command line.
//
//   trans rd <addr> [<cmd-size> [<cmd0> [<cmd1>]]] [<data-size>]
//   trans wr <addr> [<cmd-size> [<cmd0> [<cmd1>]]] [<data-size> <d0> <d1> ...]
#pragma once

#include <string>

#include "framework/diag_func.h"

class CI2cTransCmd : public CDiagFunc {
  public:
    CI2cTransCmd(const std::string& name, const std::string& description);

    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    struct CArguments;

    // Prints each argument as it is read; false when they do not make a transfer.
    bool ReadArguments(CInMsg& in, CArguments& args) const;
    bool ReadCommandBytes(CInMsg& in, CArguments& args) const;
    bool ReadData(CInMsg& in, CArguments& args) const;
    void PrintData(const CArguments& args) const;
    void PrintRow(const CArguments& args, unsigned int first) const;
};
