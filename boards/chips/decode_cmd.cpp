#include "boards/chips/decode_cmd.h"

#include "framework/diag_command.h"
#include "i2c/told_path.h"

CDecodeCmd::CDecodeCmd(CDiagI2cEepromDevice& eeprom, const CDecoder& decoder)
    : CDiagFunc("decode", "Tell in words what the EEPROM holds", 0),
      m_eeprom(eeprom),
      m_decoder(decoder) {}

void CDecodeCmd::Invoke(CInMsg&, COutMsg& out) {
    if (!OpenPathOrTell(*this, m_eeprom)) {
        AnswerResult(out, false);
        return;
    }
    std::vector<byte_t> image;
    const bool read = ReadImage(image);
    const bool closed = ClosePathOrTell(*this, m_eeprom);
    AnswerResult(out, (image.empty() || Tell(image)) && read && closed);
}

// Whether the record is sound.
bool CDecodeCmd::Tell(const std::vector<byte_t>& image) const {
    const CDecodedRecord decoded = m_decoder.decode(image);
    for (const std::string& line : LinesOf(decoded)) {
        SendLog(LW_PRINT, "%s", line.c_str());
    }
    return decoded.checks_hold;
}

bool CDecodeCmd::ReadImage(std::vector<byte_t>& image) {
    image.resize(m_decoder.size);
    const bool read = m_eeprom.ReadMemory(0, image.data(), static_cast<uint16_t>(image.size()));
    if (!read) {
        image.clear();
    }
    return read;
}
