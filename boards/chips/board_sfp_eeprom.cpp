#include "boards/chips/board_sfp_eeprom.h"

#include <memory>

#include "boards/chips/decode_cmd.h"

namespace {

// Of each of the two addresses.
constexpr size_t PAGE = 256;

// Diagnostic Monitoring Type: they are implemented, and have an address of their own.
constexpr uint8_t IMPLEMENTED = 0x40;
constexpr uint8_t ADDRESS_CHANGE = 0x04;

class CDecodeSfpCmd : public CDecodeCmd {
  public:
    CDecodeSfpCmd(CDiagI2cEepromDevice& module, CDiagI2cEepromDevice& diagnostics,
                  const CDecoder& decoder)
        : CDecodeCmd(module, decoder), m_diagnostics(diagnostics) {}

  protected:
    bool ReadImage(std::vector<byte_t>& image) override {
        if (!CDecodeCmd::ReadImage(image)) {
            return false;
        }
        if (!HasDiagnostics(image)) {
            return true;
        }
        std::vector<byte_t> diagnostics(PAGE);
        if (!m_diagnostics.ReadMemory(0, diagnostics.data(), PAGE)) {
            return false;
        }
        image.resize(PAGE);
        image.insert(image.end(), diagnostics.begin(), diagnostics.end());
        return true;
    }

  private:
    static bool HasDiagnostics(const std::vector<byte_t>& image) {
        const uint8_t type = image[offsetof(sfp_serial_id_t, Diagnostic_Monitoring_Type)];
        return (type & (IMPLEMENTED | ADDRESS_CHANGE)) == IMPLEMENTED;
    }

    CDiagI2cEepromDevice& m_diagnostics;
};

}  // namespace

CBoardSfpEeprom::CBoardSfpEeprom(const std::string& name, const std::string& description,
                                 const board_place_t& place, const i2c_eeprom_attr_t& attr,
                                 bool read_only, const CDecoder& decoder)
    : CBoardEepromOf(name, description, place, attr, read_only) {
    board_place_t second = place;
    ++second.addr;
    auto diagnostics = std::make_unique<CBoardEeprom>(
        DIAGNOSTICS, "values and limits of a module that measures itself", second, attr, read_only);
    AddChild(new CDecodeSfpCmd(*this, *diagnostics, decoder), NO_SORT);
    AddChild(diagnostics.release(), NO_SORT);
}
