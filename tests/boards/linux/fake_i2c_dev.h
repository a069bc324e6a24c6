// The system calls of the Linux bus, noted as text and answered as a test wants it.
#pragma once

#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <deque>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "boards/linux/i2c_dev.h"
#include "framework/fmt_output.h"

// What an adapter for plain I2C offers, and what a controller for SMBus alone.
constexpr unsigned long I2C_FUNCTIONS = I2C_FUNC_I2C | I2C_FUNC_SMBUS_EMUL;
constexpr unsigned long SMBUS_FUNCTIONS = I2C_FUNC_SMBUS_QUICK | I2C_FUNC_SMBUS_BYTE |
                                          I2C_FUNC_SMBUS_BYTE_DATA | I2C_FUNC_SMBUS_WORD_DATA |
                                          I2C_FUNC_SMBUS_BLOCK_DATA | I2C_FUNC_SMBUS_I2C_BLOCK;

class CFakeI2cDev : public II2cDev {
  public:
    static constexpr int FD = 7;

    unsigned long functions = I2C_FUNCTIONS;
    std::deque<int> opens;  // results of the next calls, in order; then success
    std::deque<int> function_queries;
    std::deque<int> transfers;
    std::deque<int> selections;
    std::deque<int> operations;
    std::set<uint8_t> owned;         // addresses that cannot be selected without force
    std::vector<uint8_t> bytes;      // what is read, message by message
    std::vector<std::string> calls;  // all but opening and closing
    std::vector<std::string> files;  // "open PATH" and "close"
    std::function<void()> on_transfer = [] {};

    // The only call; empty when there was none or several.
    std::string Call() const { return calls.size() == 1 ? calls.front() : std::string(); }
    int OpenFiles() const { return m_open; }

    int Open(const std::string& path) override {
        files.push_back("open " + path);
        const int result = Next(opens, FD);
        m_open += result >= 0 ? 1 : 0;
        return result;
    }
    void Close(int fd) override {
        files.emplace_back(fd == FD ? "close" : "close of something else");
        --m_open;
    }
    int GetFunctions(int fd, unsigned long& to) override {
        const int result = Checked(fd, Next(function_queries, 0));
        if (result >= 0) {
            to = functions;
        }
        return result;
    }
    int Transfer(int fd, std::span<i2c_msg> msgs) override {
        CFmtString text;
        text.printf("rdwr");
        size_t at = 0;
        for (const i2c_msg& msg : msgs) {
            text.printf(" {addr 0x%02x flags 0x%x len %u", msg.addr, msg.flags, msg.len);
            const std::span<uint8_t> data(msg.buf, msg.len);
            if ((msg.flags & I2C_M_RD) == 0) {
                Append(text, data);
            } else {
                for (uint8_t& byte : data) {
                    byte = at < bytes.size() ? bytes[at++] : uint8_t{0};
                }
            }
            text.printf("}");
        }
        calls.emplace_back(text.c_str());
        on_transfer();
        return Checked(fd, Next(transfers, static_cast<int>(msgs.size())));
    }
    int SelectSlave(int fd, uint8_t addr, bool force) override {
        CFmtString text;
        text.printf("%s 0x%02x", force ? "slave-force" : "slave", addr);
        calls.emplace_back(text.c_str());
        return Checked(fd, Next(selections, !force && owned.contains(addr) ? -EBUSY : 0));
    }
    int Smbus(int fd, bool read, uint8_t command, uint32_t size, i2c_smbus_data* data) override {
        CFmtString text;
        text.printf("smbus %s command 0x%02x size %u", read ? "read" : "write", command, size);
        AppendData(text, size, *data);
        calls.emplace_back(text.c_str());
        const int result = Checked(fd, Next(operations, 0));
        if (result >= 0) {
            Answer(read, size, *data);
        }
        return result;
    }

  private:
    static int Next(std::deque<int>& results, int otherwise) {
        if (results.empty()) {
            return otherwise;
        }
        const int result = results.front();
        results.pop_front();
        return result;
    }
    int Checked(int fd, int result) const { return fd == FD && m_open == 1 ? result : -EBADF; }
    static void Append(CFmtString& text, std::span<const uint8_t> data) {
        for (const uint8_t byte : data) {
            text.printf(" %02x", byte);
        }
    }
    // What the kernel looks at of the data, whichever the direction.
    static void AppendData(CFmtString& text, uint32_t size, const i2c_smbus_data& data) {
        switch (size) {
            case I2C_SMBUS_BYTE_DATA:
                text.printf(" byte %02x", data.byte);
                break;
            case I2C_SMBUS_WORD_DATA:
            case I2C_SMBUS_PROC_CALL:
                text.printf(" word %04x", data.word);
                break;
            case I2C_SMBUS_BLOCK_DATA:
            case I2C_SMBUS_BLOCK_PROC_CALL:
            case I2C_SMBUS_I2C_BLOCK_DATA:
                text.printf(" block");
                Append(text, std::span(data.block)
                                 .first(std::min<size_t>(1U + data.block[0], sizeof data.block)));
                break;
            default:
                break;
        }
    }
    // Of a block, `bytes` has the count as its first byte.
    void Answer(bool read, uint32_t size, i2c_smbus_data& data) const {
        const bool call = size == I2C_SMBUS_PROC_CALL || size == I2C_SMBUS_BLOCK_PROC_CALL;
        if ((!read && !call) || bytes.empty()) {
            return;
        }
        if (size == I2C_SMBUS_WORD_DATA || size == I2C_SMBUS_PROC_CALL) {
            data.word = static_cast<uint16_t>((bytes.at(1) << 8) | bytes.at(0));
        } else {
            std::ranges::copy(bytes, data.block);  // a single byte is where a block begins
        }
    }

    int m_open = 0;
};
