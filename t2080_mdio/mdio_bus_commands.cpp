#include "t2080_mdio/mdio_bus_commands.h"

#include "framework/diag_command.h"
#include "framework/diag_param.h"
#include "t2080_mdio/diag_mdio_bus.h"

namespace {

// Where a register is: both commands begin with it.
void AddRegisterParams(CDiagFunc& command) {
    command.AddChild(new CDiagParam(VT_UINT32, "port", "port on MDIO bus", PT_IN),
                     CDiagObj::NO_SORT);
    command.AddChild(new CDiagParam(VT_UINT32, "device", "device on the MDIO port", PT_IN),
                     CDiagObj::NO_SORT);
    command.AddChild(new CDiagParam(VT_UINT16, "offset", "register of device", PT_IN),
                     CDiagObj::NO_SORT);
}

}  // namespace

CMdioBusInit::CMdioBusInit(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, 0) {
    AddChild(new CDiagParam(VT_STRING, "driver_name", "Name of MDIO driver", PT_IN | PT_OPTIONAL),
             NO_SORT);
}

void CMdioBusInit::Invoke(CInMsg& in, COutMsg& out) {
    auto& papa = ParentDeviceOf<CDiagMdioBus>(*this);
    if (in.GetLen() != 0) {
        std::string str;
        in >> str;
        papa.DriverName().Set(str);
    }
    std::string driver_name = papa.DriverName().Get();
    AnswerResult(out, papa.Init(driver_name));
}

CMdioBusWrite::CMdioBusWrite(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, 0) {
    AddRegisterParams(*this);
    AddChild(new CDiagParam(VT_UINT16, "data", "data to write", PT_IN), NO_SORT);
}

void CMdioBusWrite::Invoke(CInMsg& in, COutMsg& out) {
    auto& papa = ParentDeviceOf<CDiagMdioBus>(*this);
    uint32_t port = 0;
    uint32_t device = 0;
    uint16_t offset = 0;
    uint16_t data = 0;
    in >> port >> device >> offset >> data;
    AnswerResult(out, papa.Write(port, device, offset, data));
}

CMdioBusRead::CMdioBusRead(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, 0) {
    AddRegisterParams(*this);
    AddChild(new CDiagParam(VT_UINT16 | VF_HEX, "data", "data to write", PT_OUT), NO_SORT);
}

void CMdioBusRead::Invoke(CInMsg& in, COutMsg& out) {
    auto& papa = ParentDeviceOf<CDiagMdioBus>(*this);
    uint32_t port = 0;
    uint32_t device = 0;
    uint16_t offset = 0;
    uint16_t data = 0;
    in >> port >> device >> offset;
    AnswerResult(out, papa.Read(port, device, offset, data));
    out << data;
}
