#include "i2c/i2c_trans_cmd.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

#include "framework/diag_command.h"
#include "framework/diag_param.h"
#include "i2c/diag_i2c_device.h"

namespace {

// The most bytes that a write takes and that a read shows.
constexpr unsigned int MAX_DATA = 32;
constexpr unsigned int ROW = 16;

// The list goes from data9 to data11: operators' scripts know the names so.
constexpr std::array DATA_PARAMS = {
    "data1",  "data2",  "data3",  "data4",  "data5",  "data6",  "data7",  "data8",  "data9",
    "data11", "data12", "data13", "data14", "data15", "data16", "data17", "data18", "data19",
    "data20", "data21", "data22", "data23", "data24", "data25", "data26", "data27", "data28",
    "data29", "data30", "data31", "data32", "data33", "data34"};

}  // namespace

struct CI2cTransCmd::CArguments {
    bool read = false;
    uint8_t addr = 0;
    uint8_t cmd_size = 0;
    std::array<uint8_t, 2> cmd{};
    uint8_t data_size = 0;
    // A read may ask for more than is shown, so there is room for every data size.
    std::array<uint8_t, std::numeric_limits<uint8_t>::max()> data{};
};

CI2cTransCmd::CI2cTransCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {
    const auto add = [this](uint8_t vt, const std::string& param, const std::string& desc,
                            uint8_t pt) { AddChild(new CDiagParam(vt, param, desc, pt), NO_SORT); };
    constexpr uint8_t OPTIONAL_IN = PT_IN | PT_OPTIONAL;
    add(VT_STRING, "rdwr", "rd/wr", PT_IN);
    add(VT_UINT8, "addr", "address", PT_IN);
    add(VT_UINT8, "cmd-size", "command size", PT_IN);
    add(VT_UINT8, "cmd|data-size", "command or data_size", OPTIONAL_IN);
    add(VT_UINT8, "cmd|data-size|data", "command or data_size or data", OPTIONAL_IN);
    add(VT_UINT8, "data_size|data", "data_size/data", OPTIONAL_IN);
    for (const char* data : DATA_PARAMS) {
        add(VT_UINT8, data, data, OPTIONAL_IN);
    }
}

void CI2cTransCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& bus = ParentDeviceOf<CI2cDevice>(*this);
    AnswerWorkOf(*this, out, [&] {
        CArguments args;
        if (!ReadArguments(in, args)) {
            return false;
        }
        CI2cXfrReq req;
        req.saddr = args.addr;
        req.dir = args.read ? 1 : 0;
        req.cmd_sel = args.cmd_size;
        req.cmd = args.cmd[0];
        if (args.cmd_size == 2) {
            req.cmd = static_cast<uint16_t>((args.cmd[1] << 8) | args.cmd[0]);
            std::printf("(%s:%s): cmd[0] = 0x%x cmd[1] = 0x%x 16-command = 0x%x\n", GetName(),
                        "Invoke", args.cmd[0], args.cmd[1], req.cmd);
        }
        req.tsize = args.data_size;
        req.data = args.data.data();
        req.switch_ch = -1;
        SendLog(LW_PRINT, "(%s:%s): transfer  dev addr = 0x%x\n", GetName(), "Invoke", args.addr);
        if (!bus.I2cTrans(req)) {
            return false;
        }
        if (args.read) {
            PrintData(args);
        }
        return true;
    });
}

bool CI2cTransCmd::ReadArguments(CInMsg& in, CArguments& args) const {
    std::string rdwr;
    in >> rdwr;
    SendLog(LW_PRINT, "I2C: trans type = %s\n", rdwr.c_str());
    if (in.GetLen() == 0) {
        SendLog(LW_ERR_SW, "ERROR: Must be provide slave address!\n");
        return false;
    }
    in >> args.addr;
    SendLog(LW_PRINT, "I2C: dev addr = 0x%x\n", args.addr);
    args.read = rdwr == "rd";
    if (!args.read && rdwr != "wr") {
        SendLog(LW_ERR_SW, "ERROR: rd_wr arg must be \"rd\" or \"wr\"!\n");
        return false;
    }
    return ReadCommandBytes(in, args) && ReadData(in, args);
}

// Ends behind the data size, which is left 0 when the input ends before it.
bool CI2cTransCmd::ReadCommandBytes(CInMsg& in, CArguments& args) const {
    if (in.GetLen() != 0) {
        in >> args.cmd_size;
        SendLog(LW_PRINT, "I2C: cmd size = %d\n", args.cmd_size);
    }
    if (args.cmd_size == 0) {
        SendLog(LW_PRINT, "I2C: no command(s)\n");
    } else {
        if (in.GetLen() != 0) {
            in >> args.cmd[0];
            SendLog(LW_PRINT, "I2C: cmd[0] = 0x%x\n", args.cmd[0]);
        }
        if (args.cmd_size == 2) {
            if (in.GetLen() == 0) {
                return true;
            }
            in >> args.cmd[1];
            SendLog(LW_PRINT, "I2C: cmd[1] = 0x%x\n", args.cmd[1]);
        }
        if (args.cmd_size > 2) {
            SendLog(LW_ERR_SW, "ERROR: cmd_size arg must be less than 0!\n");
            return false;
        }
    }
    if (in.GetLen() != 0) {
        in >> args.data_size;
        SendLog(LW_PRINT, "I2C: data size = %d\n", args.data_size);
    }
    return true;
}

bool CI2cTransCmd::ReadData(CInMsg& in, CArguments& args) const {
    if (args.read) {
        return true;
    }
    unsigned int i = 0;
    for (; i < args.data_size && i < MAX_DATA && in.GetLen() != 0; ++i) {
        in >> args.data[i];
        SendLog(LW_PRINT, "I2C: data[%d] = 0x%x\n", i, args.data[i]);
    }
    if (i < args.data_size) {
        SendLog(LW_ERR_SW, "ERROR: data_size and # of data mismatched!\n");
        return false;
    }
    return true;
}

void CI2cTransCmd::PrintData(const CArguments& args) const {
    SendLog(LW_PRINT, "----------- 00 01 02 03 04 05 06 07   08 09 0A 0B 0C 0D 0E 0F\n");
    SendLog(LW_PRINT, "data 0-15: ");
    PrintRow(args, 0);
    if (args.data_size > ROW) {
        SendLog(LW_PRINT, "data 16-31:");
        PrintRow(args, ROW);
    }
}

void CI2cTransCmd::PrintRow(const CArguments& args, unsigned int first) const {
    const unsigned int end = std::min({unsigned{args.data_size}, first + ROW, MAX_DATA});
    for (unsigned int i = first; i < end; ++i) {
        SendLog(LW_PRINT, " %2x", args.data[i]);
        if (i % ROW == 7) {
            SendLog(LW_PRINT, "  ");
        }
    }
    SendLog(LW_PRINT, " \n");
}
