#include "host/shell/run/signature.h"

#include <charconv>
#include <system_error>

#include "framework/diag_exception.h"
#include "host/printable.h"
#include "host/usage_error.h"

namespace {

constexpr uint8_t DIRECTION_MASK = 0x0F;
// From so many on, numbered arguments are shown as the first and the last.
constexpr size_t SHORTENED_FROM = 3;

// "data12" as "data" and 12; false for a name that ends in no plain number.
bool SplitNumber(const std::string& name, std::string& stem, uint64_t& number) {
    const size_t digits = name.find_last_not_of("0123456789") + 1;
    stem = name.substr(0, digits);
    const std::string tail = name.substr(digits);
    const auto parsed = std::from_chars(tail.data(), tail.data() + tail.size(), number);
    return parsed.ec == std::errc() && tail == std::to_string(number);
}

// The last of the optional inputs from `first` on that are numbered one by one,
// as in data0, data1, data2; `first` itself when it stands alone.
size_t LastOfNumbered(const std::vector<CParamInfo>& inputs, size_t first) {
    std::string stem;
    uint64_t number = 0;
    if (!inputs[first].optional || !SplitNumber(inputs[first].name, stem, number)) {
        return first;
    }
    size_t last = first;
    while (last + 1 < inputs.size() && inputs[last + 1].optional &&
           inputs[last + 1].name == stem + std::to_string(++number)) {
        ++last;
    }
    return last;
}

}  // namespace

CSignature CSignature::Of(CDiagObj& node) {
    CSignature signature;
    for (CDiagObj* child : node.GetChildren()) {
        if (child->GetNodeType() != TPARAM) {
            continue;
        }
        COutMsg answer;
        child->Query(answer);
        CInMsg fields(answer);
        uint8_t vt = 0;
        uint8_t pt = 0;
        fields >> vt >> pt;
        auto& side = (pt & DIRECTION_MASK) == PT_OUT ? signature.outputs : signature.inputs;
        side.push_back(
            {child->GetName(), child->GetDescription(), CValueType(vt), (pt & PT_OPTIONAL) != 0});
    }
    return signature;
}

std::string CSignature::Synopsis() const {
    std::string text;
    for (size_t i = 0; i < inputs.size(); ++i) {
        text += text.empty() ? "" : " ";
        const size_t last = LastOfNumbered(inputs, i);
        if (last + 1 - i >= SHORTENED_FROM) {
            text += "[" + inputs[i].name + " .. " + inputs[last].name + "]";
            i = last;
        } else {
            text += inputs[i].optional ? "[" + inputs[i].name + "]" : inputs[i].name;
        }
    }
    return text;
}

void CSignature::Pack(COutMsg& request, const std::vector<std::string>& words) const {
    for (size_t i = words.size(); i < inputs.size(); ++i) {
        if (!inputs[i].optional) {
            throw CUsageError("missing argument " + inputs[i].name + " (" + inputs[i].description +
                              ", " + inputs[i].type.Range() + ")");
        }
    }
    if (words.size() > inputs.size()) {
        throw CUsageError(
            "surplus argument \"" + Printable(words[inputs.size()]) + "\": " +
            (inputs.empty() ? "there are none" : std::to_string(inputs.size()) + " at the most"));
    }
    for (size_t i = 0; i < words.size(); ++i) {
        try {
            inputs[i].type.Pack(request, words[i]);
        } catch (const CUsageError& e) {
            throw CUsageError("argument " + inputs[i].name + ": " + e.what());
        } catch (const CDiagException&) {
            throw CUsageError("argument " + inputs[i].name +
                              ": too long, all arguments together must fit " +
                              std::to_string(CDiagMsg::PAYLOAD_SIZE) + " bytes");
        }
    }
}
