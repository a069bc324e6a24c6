// What every root bus shares, on one primitive, "do these messages in one go":
// the transfer record, the SMBus operations, packet error checking, the pages
// and the write cycle of an EEPROM, and the error texts.
//
// A record becomes a write of its command bytes (low byte of `cmd` first)
// followed by its data, or a write of the command bytes and a repeated-start
// read. Without command bytes a read is a plain read; with neither command
// bytes nor data it is an empty message in the direction given.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "boards/root_bus/eeprom_table.h"
#include "boards/root_bus/i2c_msg.h"
#include "framework/bus_scan.h"
#include "framework/diag_mutex.h"
#include "framework/diag_value.h"
#include "framework/shared_path.h"
#include "i2c/diag_i2c_device.h"

class CRootBus : public CI2cDevice, public ISharedPath, public IBusScan {
  public:
    // How long after a write a slave that answers nothing is asked again, every
    // millisecond.
    static constexpr uint64_t WRITE_CYCLE_MS = 25;
    // The longest block of the SMBus block operations.
    static constexpr uint32_t SMBUS_BLOCK_MAX = 32;

    CRootBus(const std::string& name, const std::string& description);

    // To be called before the first transfer. From then on a record whose command
    // bytes are the part's memory address goes to the slave address of its place,
    // and a write that crosses the end of a page goes out in pieces. Throws
    // CDiagException for a part that cannot be.
    void DeclareEeprom(const eeprom_geometry_t& part) { m_eeproms.Declare(part); }

    // Several threads may call this at once. After a failure errmsg, the
    // "last-error" node and a hardware debug line tell what happened.
    bool I2cTrans(CI2cXfrReq& req) override;
    // A root bus has no switch path to leave out.
    bool DirectI2cTrans(CI2cXfrReq& req) override { return I2cTrans(req); }

    // `ch` is ignored: there is no switch. The block operations move 1 to 32
    // bytes; the slave must announce exactly `len` of them.
    bool smb_write_quick(int8_t ch, uint8_t addr) override;
    bool smb_read_quick(int8_t ch, uint8_t addr) override;
    bool smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) override;
    bool smb_receive_byte(int8_t ch, uint8_t addr, uint8_t* data) override;
    bool smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) override;
    bool smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t* data) override;
    bool smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) override;
    bool smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t* data) override;
    bool smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) override;
    bool smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) override;
    bool smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                uint8_t* buf) override;

    // Commands of the bus itself drive its multiplexers; its direct slaves need
    // none of them.
    const CDiagDevice* PathTo(const CDiagDevice& target) const override {
        return &target == this ? this : nullptr;
    }

    // Scanning: the bus is one wire, and its multiplexers are closed meanwhile.
    std::vector<const CDiagMenu*> GetWires() const override { return {this}; }
    void OpenWire(size_t wire) override;
    bool CloseWay() override { return true; }
    // For a controller that cannot do all that it is asked, and for a bus that the
    // kernel's drivers use too.
    bool CanAsk(EScanAccess) override { return true; }
    std::string OwnerOf(uint8_t) override { return {}; }
    bool HasOwned(uint8_t) override { return false; }
    CScanAnswer Ask(uint8_t addr, EScanAccess access) override;
    std::string NameAt(size_t wire, uint8_t addr) const override;
    // Says what hangs directly on the bus at an address.
    void SetNameAt(uint8_t addr, const std::string& name) { m_names[addr] = name; }

    // What went wrong in the last transfer; empty when it succeeded.
    std::string GetLastError() const { return m_last_error->Get(); }

  protected:
    // Why the messages must not be moved, if they must not. Asked before the first try, by
    // several threads at once: the wire is free for others while an operator is asked.
    virtual std::optional<CI2cResult> Objection(std::span<const CI2cMsg>) { return {}; }
    // Moves the messages with a repeated start between them and a stop at the
    // end, also after a failure. Called by one thread at a time. `again` tells
    // that a slave is asked again because its write cycle may run.
    virtual CI2cResult Transfer(std::span<const CI2cMsg> msgs, bool again) = 0;
    // What cannot move more than GetMaxTransSize, as the subject of a sentence.
    virtual std::string Carrier() const { return "this bus"; }
    // The time that the slaves of this bus live in, in milliseconds.
    virtual uint64_t NowMs();
    virtual void WaitMs(unsigned int ms);

  private:
    // What went wrong; nothing when nothing did.
    using CFault = std::optional<std::string>;

    static std::string FailureText(const CI2cResult& result, const CI2cXfrReq& req,
                                   unsigned int polls);
    // `operation` is what the operator sees in the debug line.
    bool Run(const char* operation, CI2cXfrReq& req);
    bool RunPages(const char* operation, CI2cXfrReq& req, const eeprom_geometry_t& part);
    bool Accept(const char* operation, CI2cXfrReq& req);
    bool End(const char* operation, CI2cXfrReq& req, const CFault& fault);
    CFault Carry(const CI2cXfrReq& req);
    CFault Exchange(const CI2cXfrReq& req, std::span<const CI2cMsg> msgs, bool writes_data);
    CI2cResult Move(std::span<const CI2cMsg> msgs, bool writes_data, unsigned int& polls);
    bool Succeed(CI2cXfrReq& req);
    bool Fail(const char* operation, CI2cXfrReq& req, const char* fmt, ...)
        __attribute__((format(printf, 4, 5)));
    bool AcceptBlock(const char* operation, CI2cXfrReq& req, uint32_t len);
    bool ReadBlock(const char* operation, CI2cXfrReq& req, std::span<uint8_t> out);

    CDiagMemValue<std::string>* m_last_error;  // a child node
    // Taken for each transfer, not while waiting between two. Not m_lock: the
    // slaves of this bus hold that one around I2cTrans, those behind its
    // switches hold another.
    CMutex m_wire_lock;
    CEepromTable m_eeproms;
    std::map<uint8_t, std::string> m_names;  // by address
    // When data was last written, for addresses that share a write cycle at the
    // first of them.
    std::array<std::optional<uint64_t>, 128> m_written_ms{};
};
