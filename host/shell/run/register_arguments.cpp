#include "host/shell/run/register_arguments.h"

#include <algorithm>
#include <bit>
#include <cctype>

#include "framework/diag_functions.h"
#include "framework/diag_register_device.h"
#include "host/integer_type.h"
#include "host/register_names.h"
#include "host/shell/near_names.h"
#include "host/shell/number.h"
#include "host/shell/run/signature.h"
#include "host/usage_error.h"

namespace {

using CWords = std::vector<std::string>;

constexpr const char* REGISTER = "regname";
constexpr const char* VALUE = "regvalue";
constexpr const char* PATTERN = "pattern";

CDiagRegisterDevice* RegisterDeviceOf(const CDiagObj& command) {
    const auto* menu = dynamic_cast<const CDiagMenu*>(&command);
    return menu == nullptr ? nullptr : dynamic_cast<CDiagRegisterDevice*>(menu->GetParentDevice());
}

// The word for the input of that name; null where there is none.
const std::string* WordOf(const CSignature& signature, const CWords& words, const char* name) {
    for (size_t i = 0; i < std::min(words.size(), signature.inputs.size()); ++i) {
        if (signature.inputs[i].name == name) {
            return &words[i];
        }
    }
    return nullptr;
}

bool HasInput(const CSignature& signature, const char* name) {
    return std::ranges::any_of(signature.inputs,
                               [name](const CParamInfo& input) { return input.name == name; });
}

// "ctrl[0] to ctrl[3]"
std::string ElementsText(const diag_reg_st& reg) {
    return ElementName(reg, 0) + " to " + ElementName(reg, ElementCount(reg) - 1);
}

// The entry that a NAME or NAME[INDEX] is about, or null.
const diag_reg_st* EntryOf(CDiagRegisterDevice& device, const std::string& text) {
    std::string name;
    unsigned int index = 0;
    diag_crack_regname_index(name, index, text);
    return device.getRegEntry(name);
}

std::string DidYouMeanRegister(CDiagRegisterDevice& device, const std::string& text) {
    // What stands in the brackets may be no index.
    const std::string name = text.substr(0, text.find('['));
    const diag_reg_st* reg = device.getRegEntry(name);
    if (reg != nullptr && ElementCount(*reg) > 1) {
        return "did you mean " + ElementsText(*reg) + "?";
    }
    std::vector<std::string> names;
    for (const diag_reg_st& entry : device.Registers()) {
        names.emplace_back(entry.name);
    }
    return DidYouMean(name, names);
}

// Whether it stands for bits rather than for a number with its sign.
bool HasBase(const std::string& word) {
    return word.size() > 2 && word[0] == '0' && std::isalpha(static_cast<unsigned char>(word[1]));
}

// A value for a register of a signed type as a 64-bit number, its sign extended.
std::string SignExtended(const std::string& word, EValueType type) {
    const CNumber number = ParseNumber(word, "");
    const unsigned int unused = 64 - BitsOfType(type);
    if (number.negative && number.magnitude <= uint64_t{1} << 63U) {
        return std::to_string(0 - number.magnitude);
    }
    if (!number.negative && HasBase(word) &&
        std::countl_zero(number.magnitude) >= static_cast<int>(unused)) {
        const auto bits = static_cast<int64_t>(number.magnitude << unused) >> unused;
        return std::to_string(static_cast<uint64_t>(bits));
    }
    return word;
}

}  // namespace

CRegisterArguments::CRegisterArguments(const CDiagObj& command, const CSignature& signature)
    : m_signature(signature) {
    if (HasInput(signature, REGISTER) || HasInput(signature, PATTERN)) {
        m_device = RegisterDeviceOf(command);
    }
}

bool CRegisterArguments::IsRegister(const std::string& param) const {
    return m_device != nullptr && param == REGISTER;
}

bool CRegisterArguments::IsPattern(const std::string& param) const {
    return m_device != nullptr && param == PATTERN;
}

bool CRegisterArguments::TakesWholeArrays() const {
    // What is given besides is for one element.
    return m_signature.inputs.size() == 1;
}

CWords CRegisterArguments::AsBits(CWords words) const {
    const std::string* name = WordOf(m_signature, words, REGISTER);
    const std::string* value = WordOf(m_signature, words, VALUE);
    if (m_device == nullptr || name == nullptr || value == nullptr) {
        return words;
    }
    const diag_reg_st* reg = EntryOf(*m_device, *name);
    if (reg == nullptr || !IsIntegerType(reg->dtype) || !IsSignedType(reg->dtype)) {
        return words;
    }
    try {
        words[static_cast<size_t>(value - words.data())] = SignExtended(*value, reg->dtype);
    } catch (const CUsageError&) {
        // No number; who packs it says so.
    }
    return words;
}

std::string CRegisterArguments::NearRegisters(const CWords& words) const {
    if (m_device == nullptr) {
        return "";
    }
    const std::string* name = WordOf(m_signature, words, REGISTER);
    const std::string* text = name != nullptr ? name : WordOf(m_signature, words, PATTERN);
    if (text == nullptr || (name != nullptr && EntryOf(*m_device, *name) != nullptr)) {
        return "";
    }
    // What stands for several fails for another reason than its name.
    const bool may_be_several = name == nullptr || TakesWholeArrays();
    const auto matches = [text](const diag_reg_st& reg) {
        return MatchRegister(*text, reg).match != EMatch::NONE;
    };
    if (may_be_several && std::ranges::any_of(m_device->Registers(), matches)) {
        return "";
    }
    return DidYouMeanRegister(*m_device, *text);
}

std::string CRegisterArguments::Help() const {
    if (m_device == nullptr) {
        return "";
    }
    if (!HasInput(m_signature, REGISTER)) {
        return "pattern is the beginning of names, or has wildcards: *, ? or [...].\n";
    }
    std::string text =
        "A register is named as regtable lists it, an element of an array as NAME[INDEX]";
    const auto array = std::ranges::find_if(
        m_device->Registers(), [](const diag_reg_st& reg) { return ElementCount(reg) > 1; });
    text +=
        array == m_device->Registers().end() ? ".\n" : ",\nhere " + ElementsText(*array) + ".\n";
    if (TakesWholeArrays()) {
        text +=
            "An array without an index is read whole. What names no register reads all that\n"
            "begin so, or that fit the wildcards *, ? and [...] in it.\n";
    }
    return text;
}
