#include "tests/support/fake_switch.h"

namespace {

template <class... Args>
std::string CallText(const char* operation, Args... args) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + std::to_string(args)), ...);
    return std::string(operation) + "(" + list + ")";
}

}  // namespace

CFakeSwitch::CFakeSwitch(CJournal& journal, const std::string& name, uint8_t addr)
    : CDiagI2cSwitch(name, "fake switch"), m_journal(journal), m_addr(addr) {}

bool CFakeSwitch::Note(const std::string& call) {
    m_journal.Note(std::string(GetName()) + ": " + call);
    if (m_hook) {
        m_hook();
    }
    return m_ok;
}

bool CFakeSwitch::I2cTrans(CI2cXfrReq& req) {
    return Note(CallText("I2cTrans", req.saddr));
}
bool CFakeSwitch::DirectI2cTrans(CI2cXfrReq& req) {
    return Note(CallText("DirectI2cTrans", req.saddr));
}
bool CFakeSwitch::probe(int level) {
    return Note(CallText("probe", level));
}
bool CFakeSwitch::DisableAllSwitches() {
    return Note(CallText("DisableAllSwitches"));
}

bool CFakeSwitch::smb_write_quick(int8_t ch, uint8_t addr) {
    return Note(CallText("smb_write_quick", ch, addr));
}
bool CFakeSwitch::smb_read_quick(int8_t ch, uint8_t addr) {
    return Note(CallText("smb_read_quick", ch, addr));
}
bool CFakeSwitch::smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) {
    return Note(CallText("smb_send_byte", ch, addr, data));
}
bool CFakeSwitch::smb_receive_byte(int8_t ch, uint8_t addr, uint8_t*) {
    return Note(CallText("smb_receive_byte", ch, addr));
}
bool CFakeSwitch::smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) {
    return Note(CallText("smb_write_byte", ch, addr, cmd, data));
}
bool CFakeSwitch::smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t*) {
    return Note(CallText("smb_read_byte", ch, addr, cmd));
}
bool CFakeSwitch::smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) {
    return Note(CallText("smb_write_word", ch, addr, cmd, data));
}
bool CFakeSwitch::smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t*) {
    return Note(CallText("smb_read_word", ch, addr, cmd));
}
bool CFakeSwitch::smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t*) {
    return Note(CallText("smb_block_write", ch, addr, cmd, len));
}
bool CFakeSwitch::smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t*) {
    return Note(CallText("smb_block_read", ch, addr, cmd, len));
}
bool CFakeSwitch::smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                         uint8_t*) {
    return Note(CallText("smb_block_process_call", ch, addr, cmd, len));
}

void CFakeSwitch::SetSwMode(uint8_t mode) {
    Note(CallText("SetSwMode", mode));
}
void CFakeSwitch::ShowSwMode() {
    Note(CallText("ShowSwMode"));
}

int CFakeSwitch::getNumberofChannels() {
    Note(CallText("getNumberofChannels"));
    return 0;
}
int CFakeSwitch::ShowChannels() {
    return Note(CallText("ShowChannels"));
}
int CFakeSwitch::SetChannel(uint8_t ch) {
    return Note(CallText("SetChannel", ch));
}
int CFakeSwitch::ClearChannel(uint8_t ch) {
    return Note(CallText("ClearChannel", ch));
}
int CFakeSwitch::SetChannels(uint32_t mask) {
    return Note(CallText("SetChannels", mask));
}
int CFakeSwitch::ClearChannels(uint32_t mask) {
    return Note(CallText("ClearChannels", mask));
}
int CFakeSwitch::SelChannel(uint8_t ch) {
    return Note(CallText("SelChannel", ch));
}
int CFakeSwitch::DisableChannels() {
    return Note(CallText("DisableChannels"));
}
CDiagMenu* CFakeSwitch::getChannelMenu(int ch) {
    Note(CallText("getChannelMenu", ch));
    return nullptr;
}
uint8_t CFakeSwitch::getI2cAddr() {
    ++m_addr_reads;
    if (m_journal_addr) {
        Note(CallText("getI2cAddr"));
    }
    return m_addr;
}

void CFakeSwitch::ClearAllDeviceAddrList() {
    Note(CallText("ClearAllDeviceAddrList"));
}
std::list<uint8_t> CFakeSwitch::GetMyDeviceAddrList(uint8_t ch) {
    Note(CallText("GetMyDeviceAddrList", ch));
    return {};
}
void CFakeSwitch::ShowMyDeviceAddrList(uint8_t ch) {
    Note(CallText("ShowMyDeviceAddrList", ch));
}
void CFakeSwitch::AddMyDeviceAddr(uint8_t ch, uint8_t addr) {
    Note(CallText("AddMyDeviceAddr", ch, addr));
}
void CFakeSwitch::ClearMyDeviceAddrList() {
    Note(CallText("ClearMyDeviceAddrList"));
}
