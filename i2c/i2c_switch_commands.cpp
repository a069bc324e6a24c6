#include "i2c/i2c_switch_commands.h"

#include <cstdint>
#include <string>

#include "framework/diag_command.h"
#include "framework/diag_func.h"
#include "framework/diag_param.h"
#include "i2c/diag_i2c_switch.h"

namespace {

// A command on the switch itself.
class CSwitchCmd : public CDiagFunc {
  public:
    CSwitchCmd(const std::string& name, const std::string& description)
        : CDiagFunc(name, description, SHARES_DEVICE) {}

    void Invoke(CInMsg& in, COutMsg& out) override {
        auto& i2c_switch = ParentDeviceOf<CDiagI2cSwitch>(*this);
        AnswerWorkOf(*this, out, [&] { return Work(i2c_switch, in); });
    }

  private:
    virtual bool Work(CDiagI2cSwitch& i2c_switch, CInMsg& in) = 0;
};

// Value-type byte of an argument of type T.
template <class T>
constexpr uint8_t VALUE_TYPE = sizeof(T) == 1 ? VT_UINT8 : VT_UINT32;

// The same with one argument: a channel number or a mask.
template <class T>
class CSwitchArgumentCmd : public CSwitchCmd {
  public:
    CSwitchArgumentCmd(const std::string& name, const std::string& description,
                       const std::string& param, const std::string& param_description)
        : CSwitchCmd(name, description) {
        AddChild(new CDiagParam(VALUE_TYPE<T>, param, param_description, PT_IN), NO_SORT);
    }

  private:
    bool Work(CDiagI2cSwitch& i2c_switch, CInMsg& in) override {
        T argument = 0;
        in >> argument;
        return WorkOn(i2c_switch, argument);
    }
    virtual bool WorkOn(CDiagI2cSwitch& i2c_switch, T argument) = 0;
};

class CShowChannelsCmd : public CSwitchCmd {
  public:
    using CSwitchCmd::CSwitchCmd;

  private:
    bool Work(CDiagI2cSwitch& i2c_switch, CInMsg&) override {
        if (i2c_switch.ShowChannels() == 0) {
            SendLog(LW_PRINT, "   Show Channels error!\n");
            return false;
        }
        return true;
    }
};

class CSetChannelCmd : public CSwitchArgumentCmd<uint8_t> {
  public:
    CSetChannelCmd(const std::string& name, const std::string& description)
        : CSwitchArgumentCmd(name, description, "ch", "channel number") {}

  private:
    bool WorkOn(CDiagI2cSwitch& i2c_switch, uint8_t ch) override {
        if (i2c_switch.SetChannel(ch) == 0) {
            SendLog(LW_PRINT, "   Enable Channel %d error!\n", ch);
            return false;
        }
        return true;
    }
};

class CClearChannelCmd : public CSwitchArgumentCmd<uint8_t> {
  public:
    CClearChannelCmd(const std::string& name, const std::string& description)
        : CSwitchArgumentCmd(name, description, "ch", "channel number") {}

  private:
    bool WorkOn(CDiagI2cSwitch& i2c_switch, uint8_t ch) override {
        if (i2c_switch.ClearChannel(ch) == 0) {
            SendLog(LW_PRINT, "   Clear Channel %d error!\n", ch);
            return false;
        }
        return true;
    }
};

class CSetChannelsCmd : public CSwitchArgumentCmd<uint32_t> {
  public:
    CSetChannelsCmd(const std::string& name, const std::string& description)
        : CSwitchArgumentCmd(name, description, "mask", "mask") {}

  private:
    bool WorkOn(CDiagI2cSwitch& i2c_switch, uint32_t mask) override {
        if (i2c_switch.SetChannels(mask) == 0) {
            SendLog(LW_PRINT, "   Set Channels 0x%x error!\n", mask);
            return false;
        }
        return true;
    }
};

class CClearChannelsCmd : public CSwitchArgumentCmd<uint32_t> {
  public:
    CClearChannelsCmd(const std::string& name, const std::string& description)
        : CSwitchArgumentCmd(name, description, "mask", "mask") {}

  private:
    bool WorkOn(CDiagI2cSwitch& i2c_switch, uint32_t mask) override {
        if (i2c_switch.ClearChannels(mask) == 0) {
            SendLog(LW_PRINT, "   Clear Channels 0x%x error!\n", mask);
            return false;
        }
        return true;
    }
};

class CSelChannelCmd : public CSwitchArgumentCmd<uint8_t> {
  public:
    CSelChannelCmd(const std::string& name, const std::string& description)
        : CSwitchArgumentCmd(name, description, "ch", "port number") {}

  private:
    bool WorkOn(CDiagI2cSwitch& i2c_switch, uint8_t ch) override {
        if (i2c_switch.SelChannel(ch) == 0) {
            SendLog(LW_PRINT, "   Select Channel %d error!\n", ch);
            return false;
        }
        return true;
    }
};

class CDisableChannelsCmd : public CSwitchCmd {
  public:
    using CSwitchCmd::CSwitchCmd;

  private:
    bool Work(CDiagI2cSwitch& i2c_switch, CInMsg&) override {
        if (i2c_switch.DisableChannels() == 0) {
            SendLog(LW_PRINT, "   Disable Channels error!\n");
            return false;
        }
        return true;
    }
};

}  // namespace

void AddI2cSwitchCommands(CDiagI2cSwitch& i2c_switch) {
    const auto add = [&i2c_switch](CDiagFunc* command) {
        i2c_switch.AddChild(command, CDiagObj::NO_SORT);
    };
    add(new CShowChannelsCmd("show-channels", "show channels"));
    add(new CSetChannelCmd("set-channel", "enable a channel"));
    add(new CClearChannelCmd("clear-channel", "disable a channel"));
    add(new CSetChannelsCmd("set-channels", "enable a subset of channels"));
    add(new CClearChannelsCmd("clear-channels", "disable a subset of channels"));
    add(new CSelChannelCmd("sel-channel", "select a channel"));
    add(new CDisableChannelsCmd("disable-channels", "disable all channels"));
}
