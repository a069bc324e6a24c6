#include "boards/i2c_sim/smbus_emulation.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>

#include "boards/root_bus/smbus_pec.h"

namespace {

// The longest message: a command, a count, a block and a packet error code.
constexpr size_t LONGEST = I2C_SMBUS_BLOCK_MAX + 3;

// One operation on its way over the wire: what is written, then what is read.
struct CExchange {
    std::array<uint8_t, LONGEST> out = {};
    std::array<uint8_t, LONGEST> in = {};
    size_t out_size = 0;
    size_t in_size = 0;
    bool writes = true;  // whether there is a message that writes
    bool reads = false;
    bool counted = false;  // the first byte read says how many follow

    void Put(uint8_t byte) { out[out_size++] = byte; }
    void PutWord(uint16_t word) {
        Put(static_cast<uint8_t>(word));
        Put(static_cast<uint8_t>(word >> 8));
    }
    void Get(size_t count) {
        reads = true;
        in_size = count;
    }
    // Nobody knows how long the block will be: the longest is read, of which what is
    // behind its end counts for nothing.
    void GetBlock() {
        Get(1 + I2C_SMBUS_BLOCK_MAX);
        counted = true;
    }
};

// What the adapter must be able to.
uint32_t FunctionOf(const smbus_operation_t& operation) {
    switch (operation.size) {
        case I2C_SMBUS_QUICK:
            return I2C_FUNC_SMBUS_QUICK;
        case I2C_SMBUS_BYTE:
            return operation.read ? I2C_FUNC_SMBUS_READ_BYTE : I2C_FUNC_SMBUS_WRITE_BYTE;
        case I2C_SMBUS_BYTE_DATA:
            return operation.read ? I2C_FUNC_SMBUS_READ_BYTE_DATA : I2C_FUNC_SMBUS_WRITE_BYTE_DATA;
        case I2C_SMBUS_WORD_DATA:
            return operation.read ? I2C_FUNC_SMBUS_READ_WORD_DATA : I2C_FUNC_SMBUS_WRITE_WORD_DATA;
        case I2C_SMBUS_PROC_CALL:
            return I2C_FUNC_SMBUS_PROC_CALL;
        case I2C_SMBUS_BLOCK_DATA:
            return operation.read ? I2C_FUNC_SMBUS_READ_BLOCK_DATA
                                  : I2C_FUNC_SMBUS_WRITE_BLOCK_DATA;
        case I2C_SMBUS_BLOCK_PROC_CALL:
            return I2C_FUNC_SMBUS_BLOCK_PROC_CALL;
        default:
            return operation.read ? I2C_FUNC_SMBUS_READ_I2C_BLOCK : I2C_FUNC_SMBUS_WRITE_I2C_BLOCK;
    }
}

// The block of `data`, with its count where that goes over the wire; false when it is too long.
bool PutBlock(CExchange& exchange, const i2c_smbus_data& data, bool with_count) {
    const size_t count = data.block[0];
    if (count > I2C_SMBUS_BLOCK_MAX) {
        return false;
    }
    for (size_t i = with_count ? 0 : 1; i <= count; ++i) {
        exchange.Put(data.block[i]);
    }
    return true;
}

// Nothing when the data cannot be sent.
std::optional<CExchange> ExchangeOf(const smbus_operation_t& operation,
                                    const i2c_smbus_data& data) {
    CExchange exchange;
    bool right = true;
    if (operation.size == I2C_SMBUS_QUICK) {
        exchange.writes = !operation.read;
        exchange.reads = operation.read;
        return exchange;
    }
    if (operation.size == I2C_SMBUS_BYTE && operation.read) {
        exchange.writes = false;
        exchange.Get(1);
        return exchange;
    }
    exchange.Put(operation.command);
    switch (operation.size) {
        case I2C_SMBUS_BYTE:
            break;
        case I2C_SMBUS_BYTE_DATA:
            operation.read ? exchange.Get(1) : exchange.Put(data.byte);
            break;
        case I2C_SMBUS_WORD_DATA:
            operation.read ? exchange.Get(2) : exchange.PutWord(data.word);
            break;
        case I2C_SMBUS_PROC_CALL:
            exchange.PutWord(data.word);
            exchange.Get(2);
            break;
        case I2C_SMBUS_BLOCK_DATA:
            if (operation.read) {
                exchange.GetBlock();
            } else {
                right = PutBlock(exchange, data, true);
            }
            break;
        case I2C_SMBUS_BLOCK_PROC_CALL:
            right = PutBlock(exchange, data, true);
            exchange.GetBlock();
            break;
        default:
            right = data.block[0] <= I2C_SMBUS_BLOCK_MAX;
            if (right && operation.read) {
                exchange.Get(data.block[0]);
            } else if (right) {
                PutBlock(exchange, data, false);
            }
    }
    return right ? std::optional(exchange) : std::nullopt;
}

// Cuts a block to what its first byte says; false when no block is that long.
bool CutBlock(CExchange& exchange) {
    const size_t count = exchange.in[0];
    exchange.in_size = 1 + count;
    return count >= 1 && count <= I2C_SMBUS_BLOCK_MAX;
}

void Deliver(const smbus_operation_t& operation, const CExchange& exchange, i2c_smbus_data& data) {
    switch (operation.size) {
        case I2C_SMBUS_QUICK:
            break;
        case I2C_SMBUS_BYTE:
        case I2C_SMBUS_BYTE_DATA:
            data.byte = exchange.in[0];
            break;
        case I2C_SMBUS_WORD_DATA:
        case I2C_SMBUS_PROC_CALL:
            data.word = static_cast<uint16_t>(exchange.in[1] << 8 | exchange.in[0]);
            break;
        case I2C_SMBUS_I2C_BLOCK_DATA:
            std::copy_n(exchange.in.begin(), exchange.in_size, &data.block[1]);
            break;
        default:
            std::copy_n(exchange.in.begin(), exchange.in_size, &data.block[0]);
    }
}

// Over all that was written, and the address of what is read.
CSmbusPec PecOf(const smbus_operation_t& operation, const CExchange& exchange) {
    CSmbusPec pec;
    if (exchange.writes) {
        pec.AddAddress(operation.addr, false).Add(std::span(exchange.out).first(exchange.out_size));
    }
    if (exchange.reads) {
        pec.AddAddress(operation.addr, true);
    }
    return pec;
}

bool HasPec(const smbus_operation_t& operation) {
    return operation.pec && operation.size != I2C_SMBUS_QUICK &&
           operation.size != I2C_SMBUS_I2C_BLOCK_DATA;
}

// Makes room for the packet error code: it comes last, whoever sends.
void AddPec(const smbus_operation_t& operation, CExchange& exchange) {
    if (exchange.reads) {
        ++exchange.in_size;
    } else {
        exchange.Put(PecOf(operation, exchange).Get());
    }
}

// Whether the byte behind what was read is its packet error code.
bool IsPecRight(const smbus_operation_t& operation, const CExchange& exchange) {
    const std::span<const uint8_t> bytes = std::span(exchange.in).first(exchange.in_size);
    return PecOf(operation, exchange).Add(bytes).Get() == exchange.in[exchange.in_size];
}

// 0, or a negated errno.
int Move(CAdapter& adapter, uint8_t addr, CExchange& exchange) {
    std::array<CI2cMsg, 2> msgs;
    size_t count = 0;
    if (exchange.writes) {
        msgs[count++] = {addr, false, std::span(exchange.out).first(exchange.out_size)};
    }
    if (exchange.reads) {
        msgs[count++] = {addr, true, std::span(exchange.in).first(exchange.in_size)};
    }
    const int moved = adapter.Transfer(std::span(msgs).first(count));
    if (moved < 0) {
        return moved;
    }
    return static_cast<size_t>(moved) == count ? 0 : -EIO;
}

}  // namespace

int SmbusTransfer(CAdapter& adapter, const smbus_operation_t& operation, i2c_smbus_data& data) {
    if (!adapter.Has(FunctionOf(operation))) {
        return -EOPNOTSUPP;
    }
    std::optional<CExchange> exchange = ExchangeOf(operation, data);
    if (!exchange) {
        return -EINVAL;
    }
    const bool has_pec = HasPec(operation);
    if (has_pec) {
        AddPec(operation, *exchange);
    }
    if (const int error = Move(adapter, operation.addr, *exchange)) {
        return error;
    }
    if (!exchange->reads) {
        return 0;
    }
    if (exchange->counted) {
        if (!CutBlock(*exchange)) {
            return -EPROTO;
        }
    } else if (has_pec) {
        --exchange->in_size;
    }
    if (has_pec && !IsPecRight(operation, *exchange)) {
        return -EBADMSG;
    }
    Deliver(operation, *exchange, data);
    return 0;
}
