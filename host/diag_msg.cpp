#include "framework/diag_msg.h"

#include <algorithm>
#include <array>

#include "framework/diag_exception.h"

namespace {

constexpr size_t TEXT_LENGTH_WIDTH = sizeof(uint16_t);

}  // namespace

struct CDiagMsg::Buffer {
    CMsgHdr hdr;
    std::array<uint8_t, PAYLOAD_SIZE> payload;
};

CDiagMsg::CDiagMsg(EMsgType type, uint32_t to, uint32_t from) : m_buf(std::make_shared<Buffer>()) {
    m_buf->hdr.from = from;
    m_buf->hdr.to = to;
    m_buf->hdr.type = static_cast<uint16_t>(type);
}

const CMsgHdr& CDiagMsg::GetHeader() const {
    return m_buf->hdr;
}

EMsgType CDiagMsg::GetType() const {
    return static_cast<EMsgType>(m_buf->hdr.type & MSG_TYPE_MASK);
}

const uint8_t* CDiagMsg::GetPayload() const {
    return m_buf->payload.data();
}

CInMsg::CInMsg(const CDiagMsg& msg) : CDiagMsg(msg), m_left(GetHeader().len) {}

uint64_t CInMsg::Peek(size_t width) const {
    if (m_left < width) {
        throw CDiagException("Argument missing: %zu bytes needed, %zu left", width, m_left);
    }
    uint64_t value = 0;
    for (size_t i = 0; i < width; ++i) {
        value = (value << 8) | m_buf->payload[m_pos + i];
    }
    return value;
}

template <class T>
CInMsg& CInMsg::ReadInteger(T& value) {
    value = static_cast<T>(Peek(sizeof(T)));
    m_pos += sizeof(T);
    m_left -= sizeof(T);
    return *this;
}

CInMsg& CInMsg::operator>>(uint8_t& value) {
    return ReadInteger(value);
}
CInMsg& CInMsg::operator>>(uint16_t& value) {
    return ReadInteger(value);
}
CInMsg& CInMsg::operator>>(uint32_t& value) {
    return ReadInteger(value);
}
CInMsg& CInMsg::operator>>(uint64_t& value) {
    return ReadInteger(value);
}

CInMsg& CInMsg::operator>>(std::string& value) {
    const auto length = static_cast<size_t>(Peek(TEXT_LENGTH_WIDTH));
    const size_t left = m_left - TEXT_LENGTH_WIDTH;
    if (length > left) {
        throw CDiagException("Text cut short: %zu bytes announced, %zu left", length, left);
    }
    const auto first = m_buf->payload.begin() + static_cast<ptrdiff_t>(m_pos + TEXT_LENGTH_WIDTH);
    value.assign(first, first + static_cast<ptrdiff_t>(length));
    m_pos += TEXT_LENGTH_WIDTH + length;
    m_left = left - length;
    return *this;
}

COutMsg::COutMsg(EMsgType type, uint32_t to, uint32_t from) : CDiagMsg(type, to, from) {}

void COutMsg::Reserve(size_t bytes) const {
    const size_t room = PAYLOAD_SIZE - m_buf->hdr.len;
    if (bytes > room) {
        throw CDiagException("Message full: %zu bytes to add, room for %zu", bytes, room);
    }
}

void COutMsg::WriteInteger(uint64_t value, size_t width) {
    Reserve(width);
    for (size_t shift = 8 * width; shift != 0; shift -= 8) {
        m_buf->payload[m_buf->hdr.len++] = static_cast<uint8_t>(value >> (shift - 8));
    }
}

void COutMsg::WriteText(const char* text, size_t length) {
    Reserve(TEXT_LENGTH_WIDTH + length);
    WriteInteger(length, TEXT_LENGTH_WIDTH);
    std::copy_n(text, length, m_buf->payload.begin() + m_buf->hdr.len);
    m_buf->hdr.len = static_cast<uint16_t>(m_buf->hdr.len + length);
}

COutMsg& COutMsg::operator<<(uint8_t value) {
    WriteInteger(value, sizeof value);
    return *this;
}
COutMsg& COutMsg::operator<<(uint16_t value) {
    WriteInteger(value, sizeof value);
    return *this;
}
COutMsg& COutMsg::operator<<(uint32_t value) {
    WriteInteger(value, sizeof value);
    return *this;
}
COutMsg& COutMsg::operator<<(uint64_t value) {
    WriteInteger(value, sizeof value);
    return *this;
}
COutMsg& COutMsg::operator<<(const char* text) {
    WriteText(text, std::char_traits<char>::length(text));
    return *this;
}
COutMsg& COutMsg::operator<<(const std::string& text) {
    WriteText(text.data(), text.size());
    return *this;
}

void COutMsg::Clear() {
    m_buf->hdr.len = 0;
}
