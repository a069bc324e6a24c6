#include "tests/support/fake_switch.h"

CFakeSwitch::CFakeSwitch(CJournal& journal, const std::string& name, uint8_t addr)
    : CJournalSwitch(journal, name, 0, addr, 0) {}

bool CFakeSwitch::I2cTrans(CI2cXfrReq& req) {
    return Note("I2cTrans", req.saddr);
}
bool CFakeSwitch::DirectI2cTrans(CI2cXfrReq& req) {
    return Note("DirectI2cTrans", req.saddr);
}
bool CFakeSwitch::probe(int level) {
    return Note("probe", level);
}
bool CFakeSwitch::DisableAllSwitches() {
    return Note("DisableAllSwitches");
}

bool CFakeSwitch::smb_write_quick(int8_t ch, uint8_t addr) {
    return Note("smb_write_quick", ch, addr);
}
bool CFakeSwitch::smb_read_quick(int8_t ch, uint8_t addr) {
    return Note("smb_read_quick", ch, addr);
}
bool CFakeSwitch::smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) {
    return Note("smb_send_byte", ch, addr, data);
}
bool CFakeSwitch::smb_receive_byte(int8_t ch, uint8_t addr, uint8_t*) {
    return Note("smb_receive_byte", ch, addr);
}
bool CFakeSwitch::smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) {
    return Note("smb_write_byte", ch, addr, cmd, data);
}
bool CFakeSwitch::smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t*) {
    return Note("smb_read_byte", ch, addr, cmd);
}
bool CFakeSwitch::smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) {
    return Note("smb_write_word", ch, addr, cmd, data);
}
bool CFakeSwitch::smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t*) {
    return Note("smb_read_word", ch, addr, cmd);
}
bool CFakeSwitch::smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t*) {
    return Note("smb_block_write", ch, addr, cmd, len);
}
bool CFakeSwitch::smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t*) {
    return Note("smb_block_read", ch, addr, cmd, len);
}
bool CFakeSwitch::smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                         uint8_t*) {
    return Note("smb_block_process_call", ch, addr, cmd, len);
}

void CFakeSwitch::SetSwMode(uint8_t mode) {
    Note("SetSwMode", mode);
}
void CFakeSwitch::ShowSwMode() {
    Note("ShowSwMode");
}
uint8_t CFakeSwitch::getI2cAddr() {
    ++m_addr_reads;
    if (m_journal_addr) {
        Note("getI2cAddr");
    }
    return CJournalSwitch::getI2cAddr();
}
void CFakeSwitch::ClearAllDeviceAddrList() {
    Note("ClearAllDeviceAddrList");
}
