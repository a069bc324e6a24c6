#include "boards/i2c_sim/adapter_options.h"

#include <linux/i2c.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace {

constexpr uint32_t ALL_OF_SMBUS = I2C_FUNC_SMBUS_EMUL_ALL;

struct named_functions_t {
    std::string_view name;
    uint32_t functions;
};
constexpr std::array<named_functions_t, 10> FUNCTIONS{{
    {"i2c", I2C_FUNC_I2C},
    {"smbus", ALL_OF_SMBUS},
    {"quick", I2C_FUNC_SMBUS_QUICK},
    {"byte", I2C_FUNC_SMBUS_BYTE},
    {"byte-data", I2C_FUNC_SMBUS_BYTE_DATA},
    {"word-data", I2C_FUNC_SMBUS_WORD_DATA},
    {"proc-call", I2C_FUNC_SMBUS_PROC_CALL},
    {"block-data", I2C_FUNC_SMBUS_BLOCK_DATA | I2C_FUNC_SMBUS_BLOCK_PROC_CALL},
    {"i2c-block", I2C_FUNC_SMBUS_I2C_BLOCK},
    {"pec", I2C_FUNC_SMBUS_PEC},
}};

struct named_no_ack_t {
    std::string_view name;
    no_ack_t no_ack;
};
constexpr std::array<named_no_ack_t, 5> NO_ACKS{{
    {"enxio", {.error = ENXIO}},
    {"eremoteio", {.error = EREMOTEIO}},
    {"etimedout", {.error = ETIMEDOUT}},
    {"eio", {.error = EIO}},
    {"short", {.short_count = true}},
}};

template <class Table>
std::string NamesOf(const Table& table) {
    std::string names;
    for (const auto& entry : table) {
        names += (names.empty() ? "" : ", ") + std::string(entry.name);
    }
    return names;
}

template <class Table>
const auto& Find(const Table& table, const std::string& name) {
    const auto* found =
        std::ranges::find_if(table, [&](const auto& entry) { return entry.name == name; });
    if (found == table.end()) {
        throw std::invalid_argument("'" + name + "' is none of " + NamesOf(table));
    }
    return *found;
}

}  // namespace

uint32_t FunctionsFrom(const std::string& list) {
    uint32_t functions = 0;
    std::istringstream names(list);
    for (std::string name; std::getline(names, name, ',');) {
        functions |= Find(FUNCTIONS, name).functions;
    }
    return functions;
}

no_ack_t NoAckFrom(const std::string& name) {
    return Find(NO_ACKS, name).no_ack;
}

std::string FunctionNames() {
    return NamesOf(FUNCTIONS);
}

std::string NoAckNames() {
    return NamesOf(NO_ACKS);
}
