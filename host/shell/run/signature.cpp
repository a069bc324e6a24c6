#include "host/shell/run/signature.h"

#include "framework/diag_exception.h"
#include "host/shell/printable.h"
#include "host/shell/usage_error.h"

namespace {

constexpr uint8_t DIRECTION_MASK = 0x0F;

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
    for (const CParamInfo& input : inputs) {
        text += text.empty() ? "" : " ";
        text += input.optional ? "[" + input.name + "]" : input.name;
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
