#include "boards/linux/transfer_result.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "framework/diag_functions.h"
#include "framework/fmt_output.h"

namespace {

// What an error number means of an I2C adapter, where the system's text does not say it.
const char* Meaning(int error) {
    switch (error) {
        case EBADMSG:
            return ", bad packet error code";
        case EBUSY:
            return ", the bus does not become free";
        case EINTR:
            return ", by signals again and again";
        case ENODEV:
            return ", the adapter is gone";
        case EOPNOTSUPP:
            return " by the adapter";
        case EPROTO:
            return ", the slave does not answer as SMBus has it";
        case ESHUTDOWN:
            return ", the adapter is suspended";
        case ETIMEDOUT:
            return ", or the clock is held low";
        default:
            return "";
    }
}

bool IsEmptyRead(std::span<const CI2cMsg> msgs) {
    return msgs.size() == 1 && msgs.front().read && msgs.front().data.empty();
}

std::string Detail(std::span<const CI2cMsg> msgs, const std::string& bus,
                   const std::string& reason) {
    return TransferText(msgs) + " on " + bus + ": " + reason;
}

// For outcomes whose text does not name the address.
std::string AddressedDetail(std::span<const CI2cMsg> msgs, const std::string& bus,
                            const std::string& reason) {
    CFmtString addr;
    addr.printf("0x%02x: ", msgs.front().addr);
    return addr.c_str() + Detail(msgs, bus, reason);
}

std::string Reason(int error, std::span<const CI2cMsg> msgs) {
    std::string reason = ErrorText(error) + Meaning(error);
    if (error == EOPNOTSUPP && IsEmptyRead(msgs)) {
        reason += ", many cannot read without data";
    }
    return reason;
}

CI2cResult WithText(CI2cResult result, std::string text) {
    result.text = std::move(text);
    return result;
}

CI2cResult ErrorResult(int error, std::span<const CI2cMsg> msgs, const std::string& bus) {
    const std::string reason = Reason(error, msgs);
    switch (error) {
        case ENXIO:
        case EREMOTEIO:
        case ETIMEDOUT:
            return WithText(CI2cResult::NoAddrAck(0), Detail(msgs, bus, reason));
        case EAGAIN:
            return WithText(CI2cResult::ArbLost(), AddressedDetail(msgs, bus, reason));
        case EBUSY:
            return WithText(CI2cResult::BusStuck(), AddressedDetail(msgs, bus, reason));
        default:
            return FailedResult(msgs, bus, reason);
    }
}

}  // namespace

std::string ErrorText(int error) {
    const char* const name = ::strerrorname_np(error);
    CFmtString text;
    text.printf("%s (%s)", name != nullptr ? name : std::to_string(error).c_str(),
                GetErrorStr(error).c_str());
    return text.c_str();
}

std::string TransferText(std::span<const CI2cMsg> msgs) {
    CFmtString text;
    for (const CI2cMsg& msg : msgs) {
        text.printf("%s", text.empty() ? "" : ", ");
        const char* const verb = msg.read ? "read" : "write";
        if (msg.data.empty()) {
            text.printf("quick %s", verb);
        } else {
            text.printf("%s %zu byte%s", verb, msg.data.size(), msg.data.size() == 1 ? "" : "s");
        }
    }
    return text.c_str();
}

CI2cResult FailedResult(std::span<const CI2cMsg> msgs, const std::string& bus,
                        const std::string& reason) {
    return CI2cResult::Other(AddressedDetail(msgs, bus, reason));
}

CI2cResult ResultOf(int moved, std::span<const CI2cMsg> msgs, const std::string& bus) {
    if (moved < 0) {
        return ErrorResult(-moved, msgs, bus);
    }
    const auto count = static_cast<size_t>(moved);
    if (count == msgs.size()) {
        return CI2cResult::Ok();
    }
    CFmtString reason;
    reason.printf("%zu of %zu message%s moved", count, msgs.size(), msgs.size() == 1 ? "" : "s");
    return count < msgs.size()
               ? WithText(CI2cResult::NoAddrAck(count), Detail(msgs, bus, reason.c_str()))
               : FailedResult(msgs, bus, reason.c_str());
}
