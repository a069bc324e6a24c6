// The processor's MDIO bus, through the Linux driver's character device. Children: the
// value "driver", the device's path, and the commands "init", "write" and "read".
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_device.h"
#include "framework/diag_value.h"

class CDiagMdioBus : public CDiagDevice {
  public:
    // Not operational until Init.
    CDiagMdioBus(const std::string& n, const std::string& d);
    ~CDiagMdioBus() override;
    CDiagMdioBus(const CDiagMdioBus&) = delete;
    CDiagMdioBus& operator=(const CDiagMdioBus&) = delete;

    // Whether the driver is open; logs that it is not, unless `quiet`.
    bool bOperational(bool quiet);
    // Closes the driver if it is open, and opens that one.
    bool Init(std::string& driver_name);
    // Clause 22: `offset` is one of the 32 registers of a PHY. Port and device are not
    // checked: they are packed into the driver's 16 bits as (port << 5) | device.
    bool Write(uint32_t port, uint32_t device, uint32_t offset, uint16_t data);
    bool Read(uint32_t port, uint32_t device, uint32_t offset, uint16_t& data);

    CDiagMemValue<std::string>& DriverName() const { return *m_driver_name; }

  private:
    void SysError();

    CDiagMemValue<std::string>* m_driver_name;  // owned by the tree
    int m_driver = -1;                          // its descriptor; -1 = closed
};
