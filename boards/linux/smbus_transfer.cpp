#include "boards/linux/smbus_transfer.h"

#include <algorithm>

#include "boards/linux/smbus_operations.h"
#include "boards/linux/transfer_result.h"

namespace {

// What the operation has to be given besides the command byte.
i2c_smbus_data DataOf(const smbus_operation_t& operation, const CSmbusShape& shape) {
    i2c_smbus_data data = {};
    const std::span<const uint8_t> behind =
        shape.out && !shape.out->empty() ? shape.out->subspan(1) : std::span<const uint8_t>();
    switch (operation.size) {
        case I2C_SMBUS_BYTE_DATA:
            data.byte = behind.empty() ? uint8_t{0} : behind[0];
            break;
        case I2C_SMBUS_WORD_DATA:
        case I2C_SMBUS_PROC_CALL:
            if (!behind.empty()) {
                data.word = static_cast<uint16_t>((behind[1] << 8) | behind[0]);
            }
            break;
        case I2C_SMBUS_BLOCK_DATA:
        case I2C_SMBUS_BLOCK_PROC_CALL:
            std::ranges::copy(behind, std::begin(data.block));
            break;
        case I2C_SMBUS_I2C_BLOCK_DATA:
            data.block[0] = static_cast<uint8_t>(shape.in ? shape.in->size() : behind.size());
            std::ranges::copy(behind, &data.block[1]);
            break;
        default:
            break;
    }
    return data;
}

// Hands out what was read.
void Deliver(uint32_t size, const i2c_smbus_data& data, std::span<uint8_t> to) {
    switch (size) {
        case I2C_SMBUS_BYTE:
        case I2C_SMBUS_BYTE_DATA:
            to[0] = data.byte;
            break;
        case I2C_SMBUS_WORD_DATA:
        case I2C_SMBUS_PROC_CALL:
            to[0] = static_cast<uint8_t>(data.word);
            to[1] = static_cast<uint8_t>(data.word >> 8);
            break;
        case I2C_SMBUS_BLOCK_DATA:
        case I2C_SMBUS_BLOCK_PROC_CALL:
            std::copy_n(std::begin(data.block), std::min(to.size(), size_t{1} + data.block[0]),
                        to.begin());
            break;
        case I2C_SMBUS_I2C_BLOCK_DATA:
            std::copy_n(&data.block[1], to.size(), to.begin());
            break;
        default:
            break;
    }
}

CI2cResult Refused(const CI2cAdapter& adapter, std::span<const CI2cMsg> msgs,
                   const smbus_operation_t* first) {
    return CI2cResult::Other(adapter.Description() + " has " +
                             (first != nullptr
                                  ? "neither I2C_FUNC_I2C nor " + std::string(first->function_name)
                                  : std::string("no I2C_FUNC_I2C")) +
                             ": it cannot " + TransferText(msgs));
}

CI2cResult Run(CI2cAdapter& adapter, const smbus_operation_t& operation, const CSmbusShape& shape,
               std::span<const CI2cMsg> msgs, const std::string& bus) {
    i2c_smbus_data data = DataOf(operation, shape);
    const uint8_t command = shape.out && !shape.out->empty() ? shape.out->front() : uint8_t{0};
    const int result =
        adapter.Smbus(msgs.front().addr, operation.read, command, operation.size, data);
    if (result < 0) {
        return ResultOf(result, msgs, bus);
    }
    if (!shape.in) {
        return CI2cResult::Ok();
    }
    if (operation.size == I2C_SMBUS_I2C_BLOCK_DATA && data.block[0] != shape.in->size()) {
        return FailedResult(msgs, bus, std::to_string(data.block[0]) + " bytes came");
    }
    Deliver(operation.size, data, *shape.in);
    return CI2cResult::Ok();
}

}  // namespace

CI2cResult SmbusTransfer(CI2cAdapter& adapter, std::span<const CI2cMsg> msgs,
                         const std::string& bus) {
    const smbus_operation_t* first = nullptr;  // that would do, were it there
    if (const auto shape = CSmbusShape::Of(msgs)) {
        for (const smbus_operation_t& operation : SmbusOperations()) {
            if (!operation.is(*shape)) {
                continue;
            }
            if (adapter.Has(operation.function)) {
                return Run(adapter, operation, *shape, msgs, bus);
            }
            first = first != nullptr ? first : &operation;
        }
    }
    return Refused(adapter, msgs, first);
}

uint32_t MaxSmbusData(const CI2cAdapter& adapter) {
    uint32_t most = 0;
    for (const smbus_operation_t& operation : SmbusOperations()) {
        if (adapter.Has(operation.function)) {
            most = std::max(most, operation.max_data);
        }
    }
    return most;
}
