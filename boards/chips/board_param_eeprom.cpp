#include "boards/chips/board_param_eeprom.h"

#include <memory>
#include <system_error>

#include "boards/chips/replace_child.h"
#include "i2c/param_eeprom_check_cmd.h"
#include "i2c/param_eeprom_program_cmd.h"

namespace {

// A command of the parameter EEPROM that knows of another default table.
template <class Command>
class CWithBoardTable : public Command {
  public:
    CWithBoardTable(const CDiagObj& replaced, CDiagParamEepromDevice* dev,
                    std::filesystem::path table)
        : CParamEepromCmd(replaced.GetName(), replaced.GetDescription(), false, dev),
          Command(replaced.GetName(), replaced.GetDescription(), false, dev),
          m_table(std::move(table)) {}

  protected:
    void getDefDimmTable() override {
        std::error_code unknown;
        if (!std::filesystem::exists(this->DEFAULT_FILE, unknown) &&
            std::filesystem::exists(m_table, unknown)) {
            this->getDimmTableFrom(m_table);
        } else {
            Command::getDefDimmTable();
        }
    }

  private:
    const std::filesystem::path m_table;
};

template <class Command>
void GiveTable(CDiagParamEepromDevice& eeprom, const char* command,
               const std::filesystem::path& table) {
    ReplaceChild(eeprom, std::make_unique<CWithBoardTable<Command>>(*eeprom.FindChild(command),
                                                                    &eeprom, table));
}

}  // namespace

CBoardParamEeprom::CBoardParamEeprom(const std::string& name, const std::string& description,
                                     const board_place_t& place, i2c_eeprom_attr_t attr,
                                     bool read_only, const std::filesystem::path& table)
    : CBoardEepromOf(name, description, place, attr, read_only) {
    GiveTable<CParamEepromCmdWrite>(*this, "prog-param-eeprom", table);
    GiveTable<CParamEepromCmdCheck>(*this, "check-param-eeprom", table);
    if (read_only) {
        RemoveChildren(*this, {"prog-param-eeprom", "erase-param-eeprom"});
    }
}
