// The parameters of the port commands.
#pragma once

#include "framework/diag_func.h"
#include "framework/diag_param.h"

inline void AddReadPortParams(CDiagFunc& command) {
    command.AddChild(new CDiagParam(VT_UINT8, "port", "port number", PT_IN), CDiagObj::NO_SORT);
    command.AddChild(new CDiagParam(VT_UINT8, "port", "Port value", PT_OUT), CDiagObj::NO_SORT);
}

inline void AddWritePortParams(CDiagFunc& command) {
    command.AddChild(new CDiagParam(VT_UINT8, "port", "port number", PT_IN), CDiagObj::NO_SORT);
    command.AddChild(new CDiagParam(VT_UINT8, "val", "value", PT_IN), CDiagObj::NO_SORT);
    command.AddChild(new CDiagParam(VT_UINT8, "msk", "mask", PT_IN), CDiagObj::NO_SORT);
}
