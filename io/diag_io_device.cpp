#include "io/diag_io_device.h"

#include "framework/diag_command.h"
#include "io/io_port_params.h"

CDiagIoDevice::CDiagIoDevice(const std::string& n, const std::string& d, diag_regtable_st* regt)
    : CDiagRegisterDevice(n, d, regt) {
    AddChild(new CReadPortCmd("read-port", "Read I/O port"), NO_SORT);
    AddChild(new CWritePortCmd("write-port", "Write I/O port"), NO_SORT);
}

CReadPortCmd::CReadPortCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {
    AddReadPortParams(*this);
}

void CReadPortCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& pDev = ParentDeviceOf<CDiagIoDevice>(*this);
    uint8_t port_id = 0;
    in >> port_id;
    uint8_t val = 0;
    if (pDev.ReadIoPort(port_id, &val) == 0) {
        SendLog(LW_ERR_SYS, "ERROR: Read Port %d error!\n", port_id);
        AnswerResult(out, false);
        return;
    }
    AnswerResult(out, true);
    out << val;
}

CWritePortCmd::CWritePortCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {
    AddWritePortParams(*this);
}

void CWritePortCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& pDev = ParentDeviceOf<CDiagIoDevice>(*this);
    uint8_t port_id = 0;
    uint8_t val = 0;
    uint8_t msk = 0;
    in >> port_id >> val >> msk;
    const bool ok = pDev.WriteIoPort(port_id, val, msk) != 0;
    if (!ok) {
        SendLog(LW_ERR_SYS, "ERROR: Write I/O Port %d error (%s)!\n", port_id, __func__);
    }
    AnswerResult(out, ok);
}
