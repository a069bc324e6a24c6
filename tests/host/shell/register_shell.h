// A shell on a tree with a device of registers:
//
//   /cpld/    ctrl[0..3]  16 bits    status     8 bits, read-only
//             mode        32 bits    trim[0..1] 8 bits, signed
//             reset       write-only
#pragma once

#include <array>

#include "tests/host/register_device.h"
#include "tests/host/shell/shell_tree.h"

class CRegisterTable {
  protected:
    std::array<diag_reg_st, 5> m_regs{
        Reg("ctrl", "channel control", VT_UINT16, VF_HEX | VF_PAD, DIAG_REGACC_RW, 4),
        Reg("status", "link status", VT_UINT8, VF_HEX, DIAG_REGACC_RO),
        Reg("mode", "operating mode", VT_UINT32, VF_HEX, DIAG_REGACC_RW),
        Reg("trim", "offset", VT_INT8, 0, DIAG_REGACC_RW, 2),
        Reg("reset", "reset strobes", VT_UINT8, VF_HEX, DIAG_REGACC_WO),
    };
    diag_regtable_st m_table{m_regs.data(), 5};
};

// The table is there as long as the tree.
class RegisterShell : protected CRegisterTable, public ShellTest {
  protected:
    RegisterShell() : m_cpld(new CMemRegisterDevice(&m_table)) {
        m_root.AddChild(m_cpld, CDiagObj::NO_SORT);
    }

    CMemRegisterDevice* m_cpld;
};
