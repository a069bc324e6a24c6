#include "io/diag_i2c_io_device.h"

#include "framework/diag_command.h"
#include "i2c/told_path.h"
#include "io/io_port_params.h"

CDiagI2cIoDevice::CDiagI2cIoDevice(const std::string& n, const std::string& d,
                                   diag_regtable_st* regt, CI2cDevice* i2cDev)
    : CDiagI2cSlaveRegisterDevice(n, d, regt, i2cDev) {
    AddChild(new CI2cReadPortCmd("read-port", "Read I/O port"), NO_SORT);
    AddChild(new CI2cWritePortCmd("write-port", "Write I/O port"), NO_SORT);
}

CI2cReadPortCmd::CI2cReadPortCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {
    AddReadPortParams(*this);
}

void CI2cReadPortCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& pDev = ParentDeviceOf<CDiagI2cIoDevice>(*this);
    uint8_t port_id = 0;
    in >> port_id;
    if (!OpenPathOrTell(*this, pDev)) {
        AnswerResult(out, false);
        return;
    }
    uint8_t val = 0;
    const bool read = pDev.ReadIoPort(port_id, &val) != 0;
    if (!read) {
        SendLog(LW_ERR_SYS, "ERROR: Read Port %d error!\n", port_id);
    }
    const bool closed = ClosePathOrTell(*this, pDev);
    AnswerResult(out, read && closed);
    if (read && closed) {
        out << val;
    }
}

CI2cWritePortCmd::CI2cWritePortCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {
    AddWritePortParams(*this);
}

void CI2cWritePortCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& pDev = ParentDeviceOf<CDiagI2cIoDevice>(*this);
    uint8_t port_id = 0;
    uint8_t val = 0;
    uint8_t msk = 0;
    in >> port_id >> val >> msk;
    if (!OpenPathOrTell(*this, pDev)) {
        AnswerResult(out, false);
        return;
    }
    const bool written = pDev.WriteIoPort(port_id, val, msk) != 0;
    if (!written) {
        SendLog(LW_ERR_SYS, "ERROR: Write I/O Port %d error (%s)!\n", port_id, __func__);
    }
    const bool closed = ClosePathOrTell(*this, pDev);
    AnswerResult(out, written && closed);
}
