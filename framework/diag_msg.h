// Messages between the shell and the nodes of the tree.
//
// The payload is a sequence of fields without type marks, big-endian whatever
// the machine: integers in their width, a text as a 16-bit length followed by
// that many bytes (so a text may be empty and may hold zero bytes).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "framework/diag_types.h"

struct CMsgHdr {
    uint32_t from = 0;   // object id of the sender, 0 for the shell
    uint32_t to = 0;     // object id of the addressee
    uint16_t type = 0;   // EMsgType, with routing flags above MSG_TYPE_MASK
    uint16_t len = 0;    // bytes of payload
    uint32_t clone = 0;  // which copy of a cloned node is meant
};

// A handle on a message buffer; copies of a handle share the buffer.
class CDiagMsg {
  public:
    // Bytes of payload that a buffer holds.
    static constexpr size_t PAYLOAD_SIZE = 1024;

    explicit CDiagMsg(EMsgType type = MSG_NULL, uint32_t to = 0, uint32_t from = 0);

    const CMsgHdr& GetHeader() const;
    // The message type without routing flags.
    EMsgType GetType() const;
    const uint8_t* GetPayload() const;

  protected:
    struct Buffer;
    std::shared_ptr<Buffer> m_buf;
};

// A request, read field by field. A read that asks for more than is left
// throws CDiagException and leaves the cursor where it was.
class CInMsg : public CDiagMsg {
  public:
    // Reads `msg` from its first byte on.
    explicit CInMsg(const CDiagMsg& msg);

    CInMsg& operator>>(uint8_t& value);
    CInMsg& operator>>(uint16_t& value);
    CInMsg& operator>>(uint32_t& value);
    CInMsg& operator>>(uint64_t& value);
    CInMsg& operator>>(std::string& value);

    // Number of unread bytes; 0 tells that no further argument was given.
    size_t GetLen() const { return m_left; }

  private:
    template <class T>
    CInMsg& ReadInteger(T& value);
    uint64_t Peek(size_t width) const;

    size_t m_pos = 0;
    size_t m_left = 0;
};

// A response (or a request on its way out), written field by field. A write
// that does not fit throws CDiagException and leaves the payload as it was.
class COutMsg : public CDiagMsg {
  public:
    explicit COutMsg(EMsgType type = MSG_NULL, uint32_t to = 0, uint32_t from = 0);

    COutMsg& operator<<(uint8_t value);
    COutMsg& operator<<(uint16_t value);
    COutMsg& operator<<(uint32_t value);
    COutMsg& operator<<(uint64_t value);
    COutMsg& operator<<(const char* text);
    COutMsg& operator<<(const std::string& text);

    void SetRespCode(EResCode code) { m_resp_code = code; }
    EResCode GetRespCode() const { return m_resp_code; }
    // Empties the payload; the response code stays.
    void Clear();

  private:
    void WriteInteger(uint64_t value, size_t width);
    void WriteText(const char* text, size_t length);
    void Reserve(size_t bytes) const;

    EResCode m_resp_code = MSG_SUCCESS;
};

// Sets the response code and appends it as the answer byte.
inline void AnswerCode(COutMsg& out, EResCode code) {
    out.SetRespCode(code);
    out << static_cast<uint8_t>(code);
}
