#include "boards/chips/board_sfp_eeprom.h"

#include <memory>

#include "boards/chips/decode_cmd.h"
#include "decode/decode_sfp.h"

namespace {

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
        if (!HasSfpDiagnostics(image)) {
            return true;
        }
        std::vector<byte_t> diagnostics(SFP_PAGE_SIZE);
        if (!m_diagnostics.ReadMemory(0, diagnostics.data(), SFP_PAGE_SIZE)) {
            return false;
        }
        image.resize(SFP_PAGE_SIZE);
        image.insert(image.end(), diagnostics.begin(), diagnostics.end());
        return true;
    }

  private:
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
