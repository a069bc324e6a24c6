#include "tests/support/journal_switch.h"

namespace {

// Its bit in a mask of channels; none for a channel that no mask has.
uint32_t Bit(uint8_t ch) {
    return ch < 32 ? uint32_t{1} << ch : 0;
}

}  // namespace

CJournalSwitch::CJournalSwitch(CJournal& journal, const std::string& name, uint32_t devId,
                               uint8_t addr, int channels)
    : CDiagI2cSwitch(name, "test switch", devId),
      m_journal(journal),
      m_addr(addr),
      m_channels(channels) {
    AddChannelMenus();
}

CJournalSwitch::CJournalSwitch(CJournal& journal, const std::string& name, uint32_t devId,
                               uint8_t addr, int channels, int8_t upstream_ch)
    : CDiagI2cSwitch(name, "test switch", devId, upstream_ch),
      m_journal(journal),
      m_addr(addr),
      m_channels(channels) {
    AddChannelMenus();
}

void CJournalSwitch::AddChannelMenus() {
    for (int ch = 0; ch < m_channels; ++ch) {
        AddChild(new CDiagMenu(TMENU, "ch" + std::to_string(ch), "a channel"), NO_SORT);
    }
}

int CJournalSwitch::Open(bool ok, uint32_t channels) {
    if (ok) {
        m_open = channels;
    }
    return ok;
}

int CJournalSwitch::ShowChannels() {
    return Note("ShowChannels");
}
int CJournalSwitch::SetChannel(uint8_t ch) {
    return Open(Note("SetChannel", ch), m_open | Bit(ch));
}
int CJournalSwitch::ClearChannel(uint8_t ch) {
    return Open(Note("ClearChannel", ch), m_open & ~(Bit(ch)));
}
int CJournalSwitch::SetChannels(uint32_t mask) {
    return Open(Note("SetChannels", mask), m_open | mask);
}
int CJournalSwitch::ClearChannels(uint32_t mask) {
    return Open(Note("ClearChannels", mask), m_open & ~mask);
}
int CJournalSwitch::SelChannel(uint8_t ch) {
    return Open(Note("SelChannel", ch), Bit(ch));
}
int CJournalSwitch::DisableChannels() {
    return Open(Note("DisableChannels"), 0);
}

CDiagMenu* CJournalSwitch::getChannelMenu(int ch) {
    return dynamic_cast<CDiagMenu*>(FindChild("ch" + std::to_string(ch)));
}

std::list<uint8_t> CJournalSwitch::GetMyDeviceAddrList(uint8_t ch) {
    return m_found[ch];
}
void CJournalSwitch::ShowMyDeviceAddrList(uint8_t ch) {
    Note("ShowMyDeviceAddrList", ch);
}
void CJournalSwitch::AddMyDeviceAddr(uint8_t ch, uint8_t addr) {
    Note("AddMyDeviceAddr", ch, addr);
    m_found[ch].push_back(addr);
}
void CJournalSwitch::ClearMyDeviceAddrList() {
    Note("ClearMyDeviceAddrList");
    m_found.clear();
}
