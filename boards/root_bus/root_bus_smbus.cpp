// The SMBus operations of a root bus.
#include <algorithm>
#include <array>

#include "boards/root_bus/root_bus.h"

namespace {

CI2cXfrReq Request(uint8_t addr, bool read) {
    CI2cXfrReq req;
    req.saddr = addr;
    req.dir = read ? 1 : 0;
    req.switch_ch = -1;
    return req;
}

CI2cXfrReq CommandRequest(uint8_t addr, bool read, uint8_t cmd) {
    CI2cXfrReq req = Request(addr, read);
    req.cmd_sel = 1;
    req.cmd = cmd;
    return req;
}

// Command and byte count travel as two command bytes, so that the block itself
// goes out of the caller's buffer and errors count its bytes.
CI2cXfrReq BlockRequest(uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) {
    CI2cXfrReq req = Request(addr, false);
    req.cmd_sel = 2;
    req.cmd = static_cast<uint16_t>(((len & 0xFFU) << 8) | cmd);
    req.data = buf;
    req.tsize = static_cast<byte_t>(len);
    return req;
}

}  // namespace

bool CRootBus::smb_write_quick(int8_t, uint8_t addr) {
    CI2cXfrReq req = Request(addr, false);
    return Run("smb_write_quick", req);
}

bool CRootBus::smb_read_quick(int8_t, uint8_t addr) {
    CI2cXfrReq req = Request(addr, true);
    return Run("smb_read_quick", req);
}

bool CRootBus::smb_send_byte(int8_t, uint8_t addr, uint8_t data) {
    CI2cXfrReq req = Request(addr, false);
    req.data = &data;
    req.tsize = 1;
    return Run("smb_send_byte", req);
}

bool CRootBus::smb_receive_byte(int8_t, uint8_t addr, uint8_t* data) {
    CI2cXfrReq req = Request(addr, true);
    req.data = data;
    req.tsize = 1;
    return Run("smb_receive_byte", req);
}

bool CRootBus::smb_write_byte(int8_t, uint8_t addr, uint8_t cmd, uint8_t data) {
    CI2cXfrReq req = CommandRequest(addr, false, cmd);
    req.data = &data;
    req.tsize = 1;
    return Run("smb_write_byte", req);
}

bool CRootBus::smb_read_byte(int8_t, uint8_t addr, uint8_t cmd, uint8_t* data) {
    CI2cXfrReq req = CommandRequest(addr, true, cmd);
    req.data = data;
    req.tsize = 1;
    return Run("smb_read_byte", req);
}

bool CRootBus::smb_write_word(int8_t, uint8_t addr, uint8_t cmd, uint16_t data) {
    std::array<uint8_t, 2> bytes{static_cast<uint8_t>(data), static_cast<uint8_t>(data >> 8)};
    CI2cXfrReq req = CommandRequest(addr, false, cmd);
    req.data = bytes.data();
    req.tsize = bytes.size();
    return Run("smb_write_word", req);
}

bool CRootBus::smb_read_word(int8_t, uint8_t addr, uint8_t cmd, uint16_t* data) {
    std::array<uint8_t, 2> bytes{};
    CI2cXfrReq req = CommandRequest(addr, true, cmd);
    req.data = data != nullptr ? bytes.data() : nullptr;
    req.tsize = bytes.size();
    if (!Run("smb_read_word", req) || data == nullptr) {
        return false;
    }
    *data = static_cast<uint16_t>((bytes[1] << 8) | bytes[0]);
    return true;
}

bool CRootBus::smb_block_write(int8_t, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) {
    constexpr const char* OPERATION = "smb_block_write";
    CI2cXfrReq req = BlockRequest(addr, cmd, len, buf);
    return AcceptBlock(OPERATION, req, len) && End(OPERATION, req, Carry(req));
}

bool CRootBus::smb_block_read(int8_t, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) {
    constexpr const char* OPERATION = "smb_block_read";
    CI2cXfrReq req = CommandRequest(addr, true, cmd);
    req.data = buf;
    req.tsize = static_cast<byte_t>(len);
    return AcceptBlock(OPERATION, req, len) && ReadBlock(OPERATION, req, std::span(&cmd, 1));
}

bool CRootBus::smb_block_process_call(int8_t, uint8_t addr, uint8_t cmd, uint32_t len,
                                      uint8_t* buf) {
    constexpr const char* OPERATION = "smb_block_process_call";
    CI2cXfrReq req = BlockRequest(addr, cmd, len, buf);
    if (!AcceptBlock(OPERATION, req, len)) {
        return false;
    }
    std::array<uint8_t, 2 + SMBUS_BLOCK_MAX> out{cmd, static_cast<uint8_t>(len)};
    std::copy_n(buf, len, out.begin() + 2);
    return ReadBlock(OPERATION, req, std::span(out).first(2 + len));
}

bool CRootBus::AcceptBlock(const char* operation, CI2cXfrReq& req, uint32_t len) {
    if (len < 1 || len > SMBUS_BLOCK_MAX) {
        return Fail(operation, req, "bad block length %u: a block is 1 to %u bytes", len,
                    SMBUS_BLOCK_MAX);
    }
    return Accept(operation, req);
}

// Writes `out`, and reads the block that the request has a buffer for.
bool CRootBus::ReadBlock(const char* operation, CI2cXfrReq& req, std::span<uint8_t> out) {
    std::array<uint8_t, 1 + SMBUS_BLOCK_MAX> in{};
    const std::span<uint8_t> counted = std::span(in).first(size_t{1} + req.tsize);
    const std::array<CI2cMsg, 2> msgs{CI2cMsg{req.saddr, false, out},
                                      CI2cMsg{req.saddr, true, counted, true}};
    if (const CFault fault = Exchange(req, msgs, false)) {
        return End(operation, req, fault);
    }
    if (in[0] != req.tsize) {
        return Fail(operation, req, "0x%02x announced a block of %u bytes, not of %u", req.saddr,
                    in[0], req.tsize);
    }
    std::copy_n(in.begin() + 1, req.tsize, req.data);
    return Succeed(req);
}
