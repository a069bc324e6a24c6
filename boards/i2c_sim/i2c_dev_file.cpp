#include "boards/i2c_sim/i2c_dev_file.h"

#include <linux/i2c-dev.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "boards/i2c_sim/smbus_data.h"
#include "boards/i2c_sim/smbus_emulation.h"

namespace {

constexpr uint8_t LAST_ADDR = 0x7F;
constexpr uint16_t LAST_TEN_BIT_ADDR = 0x3FF;

// How i2c-dev marks memory of its own, which means nothing to an adapter.
constexpr uint16_t OWN_FLAGS = I2C_M_RD | I2C_M_DMA_SAFE;

// 0, or why a message of an I2C_RDWR is refused, as a negated errno.
int Refusal(const sim_message_t& message) {
    if (message.size > MAX_MESSAGE_SIZE) {
        return -EINVAL;
    }
    if ((message.flags & I2C_M_RECV_LEN) != 0 &&
        ((message.flags & I2C_M_RD) == 0 || message.size == 0)) {
        return -EINVAL;
    }
    return (message.flags & ~OWN_FLAGS) == 0 ? 0 : -EOPNOTSUPP;
}

}  // namespace

std::vector<uint8_t> CI2cDevFile::Answer(std::span<const uint8_t> packet) {
    CPacketReader reader(packet);
    const auto request = reader.Take<sim_request_t>();
    m_tail.clear();
    m_value = 0;
    const int64_t result = Handle(request, reader);
    std::vector<uint8_t> answer;
    answer.reserve(sizeof(sim_answer_t) + m_tail.size());
    Append(answer, sim_answer_t{request.id, result, m_value});
    if (result >= 0) {
        answer.insert(answer.end(), m_tail.begin(), m_tail.end());
    }
    return answer;
}

int64_t CI2cDevFile::Handle(const sim_request_t& request, CPacketReader& rest) {
    switch (request.code) {
        case I2C_RDWR:
            return Transfer(request.messages, rest);
        case I2C_SMBUS:
            return Smbus(rest);
        case SIM_READ:
            return ReadPlain(request.argument);
        case SIM_WRITE:
            return WritePlain(rest.TakeRest());
        case I2C_FUNCS:
            m_value = m_adapter.Functions();
            return 0;
        case I2C_SLAVE:
        case I2C_SLAVE_FORCE:
            return SelectSlave(request.argument, request.code == I2C_SLAVE_FORCE);
        case I2C_TENBIT:
            m_ten_bits = request.argument != 0;
            return 0;
        case I2C_PEC:
            m_pec = request.argument != 0;
            return 0;
        case I2C_RETRIES:
        case I2C_TIMEOUT:
            // Nothing here is lost to another master, and nothing takes long.
            return request.argument > INT_MAX ? -EINVAL : 0;
        default:
            return -ENOTTY;
    }
}

int64_t CI2cDevFile::SelectSlave(uint64_t addr, bool force) {
    if (addr > (m_ten_bits ? LAST_TEN_BIT_ADDR : LAST_ADDR)) {
        return -EINVAL;
    }
    const auto wanted = static_cast<uint8_t>(addr & LAST_ADDR);
    if (!force && !m_ten_bits && m_is_owned(m_adapter, wanted)) {
        return -EBUSY;
    }
    m_addr = wanted;
    return 0;
}

int64_t CI2cDevFile::Transfer(uint32_t count, CPacketReader& rest) {
    if (count == 0 || count > MAX_MESSAGES) {
        throw CPacketFault();
    }
    std::array<sim_message_t, MAX_MESSAGES> messages;
    size_t size = 0;
    for (size_t i = 0; i < count; ++i) {
        messages[i] = rest.Take<sim_message_t>();
        if (const int refusal = Refusal(messages[i])) {
            return refusal;
        }
        size += messages[i].size;
    }
    if (!m_adapter.Has(I2C_FUNC_I2C)) {
        return -EOPNOTSUPP;
    }
    m_bytes.resize(size);
    std::span<uint8_t> room = m_bytes;
    std::array<CI2cMsg, MAX_MESSAGES> msgs;
    for (size_t i = 0; i < count; ++i) {
        const sim_message_t& message = messages[i];
        msgs[i] = {static_cast<uint8_t>(message.addr & LAST_ADDR), (message.flags & I2C_M_RD) != 0,
                   room.first(message.size)};
        room = room.subspan(message.size);
        if (!msgs[i].read) {
            std::ranges::copy(rest.Take(message.size), msgs[i].data.begin());
        }
    }
    rest.End();
    const int result = m_adapter.Transfer(std::span(msgs).first(count));
    for (size_t i = 0; i < count; ++i) {
        if (msgs[i].read) {
            m_tail.insert(m_tail.end(), msgs[i].data.begin(), msgs[i].data.end());
        }
    }
    return result;
}

int64_t CI2cDevFile::Smbus(CPacketReader& rest) {
    const auto request = rest.Take<sim_smbus_t>();
    rest.End();
    if (request.size > I2C_SMBUS_I2C_BLOCK_DATA || request.read_write > I2C_SMBUS_READ) {
        return -EINVAL;
    }
    const bool read = request.read_write == I2C_SMBUS_READ;
    if (request.has_data == 0 && HasSmbusData(request.size, request.read_write)) {
        return -EINVAL;
    }
    if (m_ten_bits) {
        return -EOPNOTSUPP;
    }
    i2c_smbus_data data = request.data;
    smbus_operation_t operation = {m_addr, m_pec, read, request.command, request.size};
    // The older form, in which a read does not say how many bytes.
    if (request.size == I2C_SMBUS_I2C_BLOCK_BROKEN) {
        operation.size = I2C_SMBUS_I2C_BLOCK_DATA;
        data.block[0] = read ? I2C_SMBUS_BLOCK_MAX : data.block[0];
    }
    const int result = SmbusTransfer(m_adapter, operation, data);
    Append(m_tail, data);
    return result;
}

int64_t CI2cDevFile::ReadPlain(uint64_t size) {
    m_tail.resize(std::min<uint64_t>(size, MAX_MESSAGE_SIZE));
    return MovePlain({m_addr, true, m_tail});
}

int64_t CI2cDevFile::WritePlain(std::span<const uint8_t> bytes) {
    if (bytes.size() > MAX_MESSAGE_SIZE) {
        throw CPacketFault();
    }
    m_bytes.assign(bytes.begin(), bytes.end());
    return MovePlain({m_addr, false, m_bytes});
}

// The bytes of the one message, or what became of it.
int64_t CI2cDevFile::MovePlain(const CI2cMsg& msg) {
    if (m_ten_bits || !m_adapter.Has(I2C_FUNC_I2C)) {
        return -EOPNOTSUPP;
    }
    const int result = m_adapter.Transfer({&msg, 1});
    return result == 1 ? static_cast<int64_t>(msg.data.size()) : result;
}
