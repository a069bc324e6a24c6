#include "boards/linux/smbus_operations.h"

namespace {

constexpr size_t BLOCK_MAX = I2C_SMBUS_BLOCK_MAX;

constexpr std::array OPERATIONS = {
    smbus_operation_t{I2C_SMBUS_QUICK, false, I2C_FUNC_SMBUS_QUICK, "I2C_FUNC_SMBUS_QUICK",
                      [](const CSmbusShape& shape) { return shape.Writes(0, 0); }, 0},
    smbus_operation_t{I2C_SMBUS_QUICK, true, I2C_FUNC_SMBUS_QUICK, "I2C_FUNC_SMBUS_QUICK",
                      [](const CSmbusShape& shape) { return shape.Reads(0, 0); }, 0},
    smbus_operation_t{I2C_SMBUS_BYTE, false, I2C_FUNC_SMBUS_WRITE_BYTE, "I2C_FUNC_SMBUS_WRITE_BYTE",
                      [](const CSmbusShape& shape) { return shape.Writes(1, 1); }, 0},
    smbus_operation_t{I2C_SMBUS_BYTE, true, I2C_FUNC_SMBUS_READ_BYTE, "I2C_FUNC_SMBUS_READ_BYTE",
                      [](const CSmbusShape& shape) { return shape.Reads(1, 1); }, 1},
    smbus_operation_t{I2C_SMBUS_BYTE_DATA, false, I2C_FUNC_SMBUS_WRITE_BYTE_DATA,
                      "I2C_FUNC_SMBUS_WRITE_BYTE_DATA",
                      [](const CSmbusShape& shape) { return shape.Writes(2, 2); }, 1},
    smbus_operation_t{I2C_SMBUS_BYTE_DATA, true, I2C_FUNC_SMBUS_READ_BYTE_DATA,
                      "I2C_FUNC_SMBUS_READ_BYTE_DATA",
                      [](const CSmbusShape& shape) { return shape.Exchanges(1, 1, 1); }, 1},
    smbus_operation_t{I2C_SMBUS_WORD_DATA, false, I2C_FUNC_SMBUS_WRITE_WORD_DATA,
                      "I2C_FUNC_SMBUS_WRITE_WORD_DATA",
                      [](const CSmbusShape& shape) { return shape.Writes(3, 3); }, 2},
    smbus_operation_t{I2C_SMBUS_BLOCK_DATA, true, I2C_FUNC_SMBUS_READ_BLOCK_DATA,
                      "I2C_FUNC_SMBUS_READ_BLOCK_DATA",
                      [](const CSmbusShape& shape) {
                          return shape.counted && shape.Exchanges(1, 2, 1 + BLOCK_MAX);
                      },
                      BLOCK_MAX},
    smbus_operation_t{I2C_SMBUS_WORD_DATA, true, I2C_FUNC_SMBUS_READ_WORD_DATA,
                      "I2C_FUNC_SMBUS_READ_WORD_DATA",
                      [](const CSmbusShape& shape) { return shape.Exchanges(1, 2, 2); }, 2},
    // To the kernel both process calls are writes: there is something to be sent.
    smbus_operation_t{I2C_SMBUS_BLOCK_PROC_CALL, false, I2C_FUNC_SMBUS_BLOCK_PROC_CALL,
                      "I2C_FUNC_SMBUS_BLOCK_PROC_CALL",
                      [](const CSmbusShape& shape) {
                          return shape.counted && shape.WritesBlock() &&
                                 shape.Exchanges(shape.out->size(), 2, 1 + BLOCK_MAX);
                      },
                      BLOCK_MAX},
    smbus_operation_t{I2C_SMBUS_PROC_CALL, false, I2C_FUNC_SMBUS_PROC_CALL,
                      "I2C_FUNC_SMBUS_PROC_CALL",
                      [](const CSmbusShape& shape) { return shape.Exchanges(3, 2, 2); }, 2},
    smbus_operation_t{I2C_SMBUS_I2C_BLOCK_DATA, false, I2C_FUNC_SMBUS_WRITE_I2C_BLOCK,
                      "I2C_FUNC_SMBUS_WRITE_I2C_BLOCK",
                      [](const CSmbusShape& shape) { return shape.Writes(2, 1 + BLOCK_MAX); },
                      BLOCK_MAX},
    smbus_operation_t{I2C_SMBUS_BLOCK_DATA, false, I2C_FUNC_SMBUS_WRITE_BLOCK_DATA,
                      "I2C_FUNC_SMBUS_WRITE_BLOCK_DATA",
                      [](const CSmbusShape& shape) {
                          return shape.WritesBlock() && shape.Writes(3, 2 + BLOCK_MAX);
                      },
                      BLOCK_MAX},
    smbus_operation_t{I2C_SMBUS_I2C_BLOCK_DATA, true, I2C_FUNC_SMBUS_READ_I2C_BLOCK,
                      "I2C_FUNC_SMBUS_READ_I2C_BLOCK",
                      [](const CSmbusShape& shape) { return shape.Exchanges(1, 1, BLOCK_MAX); },
                      BLOCK_MAX},
};

template <typename BYTES>
bool IsLong(const std::optional<BYTES>& bytes, size_t least, size_t most) {
    return bytes && bytes->size() >= least && bytes->size() <= most;
}

}  // namespace

std::optional<CSmbusShape> CSmbusShape::Of(std::span<const CI2cMsg> msgs) {
    CSmbusShape shape;
    for (const CI2cMsg& msg : msgs) {
        if (shape.in || (shape.out && !msg.read)) {
            return std::nullopt;
        }
        if (msg.read) {
            shape.in = msg.data;
            shape.counted = msg.counted;
        } else {
            shape.out = msg.data;
        }
    }
    return shape;
}

bool CSmbusShape::Writes(size_t least, size_t most) const {
    return !in && IsLong(out, least, most);
}

bool CSmbusShape::Reads(size_t least, size_t most) const {
    return !out && IsLong(in, least, most);
}

bool CSmbusShape::Exchanges(size_t written, size_t least, size_t most) const {
    return IsLong(out, written, written) && IsLong(in, least, most);
}

bool CSmbusShape::WritesBlock() const {
    return IsLong(out, 3, 2 + BLOCK_MAX) && (*out)[1] == out->size() - 2;
}

std::span<const smbus_operation_t> SmbusOperations() {
    return OPERATIONS;
}
