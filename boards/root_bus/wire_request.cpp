#include "boards/root_bus/wire_request.h"

#include <algorithm>

#include "boards/root_bus/smbus_pec.h"

CWireRequest::CWireRequest(const CI2cXfrReq& req) : m_req(req) {
    const bool read = req.dir != 0;
    const std::span<uint8_t> out(m_out);
    size_t length = 0;
    for (; length < req.cmd_sel; ++length) {
        out[length] = static_cast<uint8_t>(req.cmd >> (8 * length));
    }
    if (!read) {
        if (req.tsize > 0) {
            std::copy_n(req.data, req.tsize, out.begin() + static_cast<std::ptrdiff_t>(length));
            length += req.tsize;
        }
        // A quick command has no room for a packet error code.
        if (req.wpec_en != 0 && length > 0) {
            out[length] = CSmbusPec().AddAddress(req.saddr, false).Add(out.first(length)).Get();
            ++length;
        }
    }
    if (!read || length > 0) {
        AddMsg(false, out.first(length));
    }
    if (read && (req.tsize > 0 || length == 0)) {
        AddMsg(true, std::span(m_in).first(size_t{req.tsize} + (ReadsWithPec() ? 1 : 0)));
    }
}

void CWireRequest::AddMsg(bool read, std::span<uint8_t> data) {
    m_msgs[m_count++] = {m_req.saddr, read, data};
}

CWireRequest::CPec CWireRequest::CheckPec() const {
    if (!ReadsWithPec()) {
        return {0, 0};
    }
    CSmbusPec pec;
    for (const CI2cMsg& msg : Messages()) {
        pec.AddAddress(msg.addr, msg.read).Add(msg.read ? msg.data.first(m_req.tsize) : msg.data);
    }
    return {pec.Get(), m_in[m_req.tsize]};
}

void CWireRequest::Deliver() const {
    if (m_req.dir != 0 && m_req.tsize > 0) {
        std::copy_n(m_in.begin(), m_req.tsize, m_req.data);
    }
}
