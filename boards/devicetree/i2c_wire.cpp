#include "boards/devicetree/i2c_wire.h"

#include "framework/diag_exception.h"

void CI2cWire::Claim(uint8_t addr, const std::string& path) {
    const auto [claim, fresh] = m_claims.emplace(addr, path);
    if (!fresh) {
        throw CDiagException("%s: address 0x%02x is already taken by %s", path.c_str(),
                             unsigned{addr}, claim->second.c_str());
    }
}
