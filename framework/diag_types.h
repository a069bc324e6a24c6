// The enumerations and scalar types of the contract between the host, the
// library and board code. The values are part of the message encoding.
#pragma once

#include <cstdint>

using byte_t = uint8_t;
using msTime_t = uint32_t;        // a duration in milliseconds
using diag_regdata_t = uint64_t;  // register data of any width

enum ENodeType : uint32_t {
    TNULL = 0,
    TDMP = 1,
    TSLOT = 2,
    TMENU = 3,
    TDEVICE = 4,
    TVALUE = 5,
    TARRAY_I = 6,  // array by index
    TARRAY_A = 7,  // array by address
    TFUNC = 8,
    TPROC = 9,
    TPARAM = 10,
    TSCRIPT = 11,
};

enum EParamType : uint32_t {
    PT_IN = 0,
    PT_OUT = 1,
};

// Added to EParamType in a parameter-type byte: the argument may be left out.
inline constexpr uint8_t PT_OPTIONAL = 0x10;

enum EValueType : uint32_t {
    VT_INT8 = 0,
    VT_UINT8 = 1,
    VT_INT16 = 2,
    VT_UINT16 = 3,
    VT_INT32 = 4,
    VT_UINT32 = 5,
    VT_INT64 = 6,
    VT_UINT64 = 7,
    VT_STRING = 8,
    VT_ENUM = 9,
    VT_USERDEF = 10,
};

// A value-type byte holds an EValueType in its low nibble and these flags above it.
// VF_HEX is also what toString() takes for base 16.
inline constexpr uint8_t VF_TYPE_MASK = 0x0F;
inline constexpr uint8_t VF_HEX = 0x10;     // shown in hexadecimal
inline constexpr uint8_t VF_PAD = 0x20;     // shown with all digits of its width
inline constexpr uint8_t VF_TRACED = 0x80;  // every peek and poke is logged

enum ETestStatus : uint32_t {
    DS_UNTESTED = 0,
    DS_DEVACC = 1,  // waiting for the devices it needs
    DS_SETUP = 2,
    DS_PROGRESS = 3,
    DS_PASSED = 4,
    DS_FAILED = 5,
    DS_FAILED_NCUP = 6,  // failed, and the clean-up failed too
    DS_ABORTED = 7,
    DS_SKIPPED = 8,
};

// MSG_SKIPPED lies outside MSG_RC_FIRST..MSG_RC_LAST.
enum EResCode : int32_t {
    MSG_SUCCESS = 0,
    MSG_ERR_NORESP = 1,
    MSG_ERR_FAIL = 2,
    MSG_ERR_DEST = 3,
    MSG_ERR_MSGTYPE = 4,
    MSG_ERR_MSGLEN = 5,
    MSG_ERR_READONLY = 6,
    MSG_ERR_PARAM = 7,
    MSG_ERR_ISRUN = 8,
    MSG_ERR_NOTRUN = 9,
    MSG_ERR_ABORTED = 10,
    MSG_ERR_CANCELED = 11,
    MSG_ERR_SLOTDOWN = 12,
    MSG_SKIPPED = 13,
    MSG_RC_FIRST = 0,
    MSG_RC_LAST = 12,
};

enum EMsgType : uint32_t {
    MSG_NULL = 0,
    MSG_REGSLOT = 1,
    MSG_REGDONE = 2,
    MSG_DISC = 3,
    MSG_QUERY = 4,
    MSG_PEEKV = 5,
    MSG_POKEV = 6,
    MSG_CALL = 7,
    MSG_START = 8,
    MSG_STOP = 9,
    MSG_STARTED = 10,
    MSG_PULSE = 11,
    MSG_DONE = 12,
    MSG_LOG = 13,
    MSG_MAIL_SUBS = 14,
    MSG_MAIL = 15,
    MSG_REGCLONE = 16,
    MSG_CLONE = 17,
};

// The two top bits of a message header's type field are routing flags.
inline constexpr uint16_t MSG_TYPE_MASK = 0x3FFF;

enum EDevLockType : uint32_t {
    DEV_LOCK_PROTECT = 0,  // shared: keeps the device from being taken exclusively
    DEV_LOCK_ACCESS = 1,   // exclusive use
};

enum diag_regacc_et : uint32_t {
    DIAG_REGACC_NONE = 0,
    DIAG_REGACC_RW = 1,
    DIAG_REGACC_RO = 2,
    DIAG_REGACC_WO = 3,
    DIAG_REGACC_RC = 4,   // reading clears it
    DIAG_REGACC_W1C = 5,  // writing a one clears the bit
    DIAG_REGACC_W1T = 6,  // writing a one toggles the bit
    DIAG_REGACC_W1S = 7,  // writing a one sets the bit
    DIAG_REGACC_DA = 8,   // read destructively, as a FIFO is
};
