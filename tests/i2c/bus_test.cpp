#include "tests/i2c/bus_test.h"

#include <regex>
#include <sstream>

std::string Describe(const CI2cXfrReq& req) {
    std::ostringstream text;
    text << "saddr=0x" << std::hex << unsigned{req.saddr} << " esaddr=" << unsigned{req.esaddr}
         << " cmd_sel=" << unsigned{req.cmd_sel} << " baddr_sel=" << unsigned{req.baddr_sel}
         << " cmd=0x" << req.cmd << " baddr=" << req.baddr << std::dec
         << " data=" << (req.data == nullptr ? "null" : "set") << " tsize=" << unsigned{req.tsize}
         << " dir=" << unsigned{req.dir} << " xfer=" << unsigned{req.xfer}
         << " rpec_en=" << unsigned{req.rpec_en} << " wpec_en=" << unsigned{req.wpec_en}
         << " switch_ch=" << int{req.switch_ch} << " errmsg='" << req.errmsg << "'";
    return text.str();
}

testing::AssertionResult IsMissingDeviceText(const std::string& text) {
    static const std::regex expected(
        R"(i2c/[a-z0-9_]+\.cpp:[1-9][0-9]* Assert failed \(pDev != NULL\))");
    if (std::regex_match(text, expected)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "not the text of a missing device: \"" << text << "\"";
}
