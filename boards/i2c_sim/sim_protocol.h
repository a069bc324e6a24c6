// What the object that morva-i2c-sim preloads and the process that holds the simulated
// adapters say to each other. An open /dev/i2c-N is a connection to the socket of the same
// name in a folder of theirs; each request on it is one packet, and so is its answer.
#pragma once

#include <linux/i2c.h>
#include <pthread.h>

#include <array>
#include <cstddef>
#include <cstdint>

// The folder: "dev/i2c-N" are the sockets, "sys" is what SYSFS_PATH names, and "turns"
// holds a sim_turns_t.
inline constexpr const char* SIM_FOLDER_VARIABLE = "MORVA_I2C_SIM_FOLDER";
inline constexpr const char* SIM_SOCKETS = "/dev/i2c-";
inline constexpr const char* SIM_TURNS = "/turns";

// What i2c-dev accepts at most in one I2C_RDWR.
inline constexpr size_t MAX_MESSAGE_SIZE = 8192;
inline constexpr size_t MAX_MESSAGES = 42;

// A plain read() or write() on the descriptor, beside the requests of linux/i2c-dev.h.
inline constexpr uint32_t SIM_READ = 1;
inline constexpr uint32_t SIM_WRITE = 2;

struct sim_request_t {
    uint64_t id;        // comes back in the answer
    uint32_t code;      // of linux/i2c-dev.h, or SIM_READ or SIM_WRITE
    uint32_t messages;  // of I2C_RDWR
    uint64_t argument;  // the number that a request takes; of a plain read how many bytes
};
// Behind the request of an I2C_RDWR stands one for each message, and then the bytes of those
// that write. Behind that of a plain write stand its bytes.
struct sim_message_t {
    uint16_t addr;
    uint16_t flags;  // I2C_M_*
    uint16_t size;
};
// Behind the request of an I2C_SMBUS.
struct sim_smbus_t {
    uint32_t size;  // I2C_SMBUS_*
    uint8_t read_write;
    uint8_t command;
    uint8_t has_data;
    i2c_smbus_data data;
};

// Behind the answer to an I2C_RDWR that did not fail stand the bytes of all messages that
// read, behind that to an I2C_SMBUS an i2c_smbus_data, behind that to a plain read its bytes.
struct sim_answer_t {
    uint64_t id;
    int64_t result;  // what the ioctl returns, or a negated errno
    uint64_t value;  // what I2C_FUNCS asks for
};

inline constexpr size_t MAX_REQUEST_SIZE =
    sizeof(sim_request_t) + MAX_MESSAGES * (sizeof(sim_message_t) + MAX_MESSAGE_SIZE);

// Whoever shares a connection, as after a fork, would get each other's answers: they take
// turns, in memory that all processes share. Adapters with the same remainder share one.
struct sim_turn_t {
    pthread_mutex_t lock;
    uint64_t last_id;
};
struct sim_turns_t {
    std::array<sim_turn_t, 64> turns;
};
