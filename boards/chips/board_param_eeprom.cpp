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
        // Which table an operator gets who names none shall not be guessed.
        std::error_code unknown;
        const bool installed = std::filesystem::exists(this->DEFAULT_FILE, unknown);
        const bool beside = std::filesystem::exists(m_table, unknown);
        if (!installed && !beside) {
            this->SendLog(LW_INFO, "there is no default table, neither installed nor as %s\n",
                          m_table.c_str());
            Command::getDefDimmTable();
            return;
        }
        const std::filesystem::path table = installed ? this->DEFAULT_FILE : m_table;
        this->SendLog(LW_INFO, "DIMM table: %s\n", table.c_str());
        this->getDimmTableFrom(table);
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
