#include "t2080_mdio/diag_mdio_bus.h"

#include <fcntl.h>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "t2080_mdio/mdio_bus_commands.h"

namespace {

mii_ioctl_data RecordOf(uint32_t port, uint32_t device, uint32_t offset, uint16_t data) {
    return {.phy_id = static_cast<uint16_t>((port << 5) | device),
            .reg_num = static_cast<uint16_t>(offset),
            .val_in = data,
            .val_out = 0};
}

}  // namespace

CDiagMdioBus::CDiagMdioBus(const std::string& n, const std::string& d)
    : CDiagDevice(n, d, TDEVICE),
      m_driver_name(new CDiagMemValue<std::string>("driver", "MDIO driver name", false, VT_STRING,
                                                   "/dev/fsl-fman_xmdio_us")) {
    AddChild(m_driver_name, NO_SORT);
    AddChild(new CMdioBusInit("init", "re-open mdio driver"), NO_SORT);
    AddChild(new CMdioBusWrite("write", "write to register"), NO_SORT);
    AddChild(new CMdioBusRead("read", "read a register"), NO_SORT);
    SetOperational(false);
}

CDiagMdioBus::~CDiagMdioBus() {
    if (bOperational(true)) {
        ::close(m_driver);
        m_driver = -1;
    }
}

bool CDiagMdioBus::bOperational(bool quiet) {
    const bool ok = CheckOperational();
    if (!ok && !quiet) {
        SendLog(LW_ERR_TEST, "MDIO Bus is not operational, run init");
    }
    return ok;
}

bool CDiagMdioBus::Init(std::string& driver_name) {
    if (bOperational(true)) {
        ::close(m_driver);
        m_driver = -1;
    }
    m_driver = ::open(driver_name.c_str(), O_RDONLY | O_SYNC | O_CLOEXEC);
    if (m_driver < 0) {
        // The log has errors of its own.
        const int err = errno;
        SendLog(LW_ERR_TEST, "Failed open MDIO driver %s", driver_name.c_str());
        SetOperational(false);
        errno = err;
        SysError();
    } else {
        SetOperational(true);
    }
    return m_driver >= 0;
}

bool CDiagMdioBus::Write(uint32_t port, uint32_t device, uint32_t offset, uint16_t data) {
    if (!bOperational(false)) {
        return false;
    }
    mii_ioctl_data record = RecordOf(port, device, offset, data);
    if (::ioctl(m_driver, SIOCSMIIREG, &record) < 0) {
        SysError();
        return false;
    }
    return true;
}

bool CDiagMdioBus::Read(uint32_t port, uint32_t device, uint32_t offset, uint16_t& data) {
    if (!bOperational(false)) {
        return false;
    }
    mii_ioctl_data record = RecordOf(port, device, offset, 0);
    if (::ioctl(m_driver, SIOCGMIIREG, &record) < 0) {
        SysError();
        return false;
    }
    data = record.val_out;
    return true;
}

void CDiagMdioBus::SysError() {
    const int err = GetLastOsErr();
    SendLog(LW_ERR_TEST, "System error: error %d(%s)", err, GetErrorStr(err).c_str());
}
