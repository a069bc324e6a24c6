#include "host/shell/value_type.h"

#include <array>
#include <charconv>
#include <limits>

#include "framework/diag_functions.h"
#include "host/integer_type.h"
#include "host/shell/printable.h"
#include "host/shell/usage_error.h"

namespace {

constexpr std::array<const char*, VT_USERDEF + 1> TYPE_NAMES = {
    "int8",  "uint8",  "int16",  "uint16", "int32",       "uint32",
    "int64", "uint64", "string", "enum",   "user-defined"};

uint64_t LargestOf(EValueType type) {
    const uint64_t all = std::numeric_limits<uint64_t>::max();
    return all >> (64U - BitsOfType(type) + (IsSignedType(type) ? 1U : 0U));
}

// The digits of a number; false when there are none, others, or too many.
bool ParseDigits(std::string_view digits, uint64_t& value) {
    int base = 10;
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        base = 16;
        digits.remove_prefix(2);
    }
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    if (error == std::errc::result_out_of_range) {
        throw std::out_of_range("number");
    }
    return error == std::errc() && stop == end;
}

// A number and whether it is negative.
struct CNumber {
    uint64_t magnitude = 0;
    bool negative = false;
};

CNumber ParseNumber(const std::string& word, const std::string& range) {
    CNumber number;
    number.negative = !word.empty() && word.front() == '-';
    try {
        if (ParseDigits(std::string_view(word).substr(number.negative ? 1 : 0), number.magnitude)) {
            return number;
        }
    } catch (const std::out_of_range&) {
        throw CUsageError(Printable(word) + " is out of range, " + range + " fits");
    }
    throw CUsageError("\"" + Printable(word) + "\" is not a number; decimal or 0x hexadecimal, " +
                      range + ", fits");
}

void PackInteger(COutMsg& request, uint64_t value, unsigned int bits) {
    switch (bits) {
        case 8:
            request << static_cast<uint8_t>(value);
            break;
        case 16:
            request << static_cast<uint16_t>(value);
            break;
        case 32:
            request << static_cast<uint32_t>(value);
            break;
        default:
            request << value;
    }
}

template <class T>
uint64_t Read(CInMsg& response) {
    T value{};
    response >> value;
    return value;
}

uint64_t UnpackInteger(CInMsg& response, unsigned int bits) {
    switch (bits) {
        case 8:
            return Read<uint8_t>(response);
        case 16:
            return Read<uint16_t>(response);
        case 32:
            return Read<uint32_t>(response);
        default:
            return Read<uint64_t>(response);
    }
}

EValueType TypeOf(uint8_t vt) {
    return static_cast<EValueType>(vt & VF_TYPE_MASK);
}

}  // namespace

bool CValueType::IsText() const {
    return TypeOf(m_vt) == VT_STRING;
}

std::string CValueType::Name() const {
    const EValueType type = TypeOf(m_vt);
    return type < TYPE_NAMES.size() ? TYPE_NAMES[type] : "type " + std::to_string(type);
}

std::string CValueType::Range() const {
    const EValueType type = TypeOf(m_vt);
    if (!IsIntegerType(type)) {
        return IsText() ? "text" : Name();
    }
    const std::string lowest =
        IsSignedType(type) ? "-" + toString(LargestOf(type) + 1, 0) : std::string("0");
    return lowest + " to " + toString(LargestOf(type), 0);
}

void CValueType::Pack(COutMsg& request, const std::string& word) const {
    const EValueType type = TypeOf(m_vt);
    if (IsText()) {
        request << word;
        return;
    }
    if (!IsIntegerType(type)) {
        throw CUsageError("values of type " + Name() + " cannot be typed");
    }
    const CNumber number = ParseNumber(word, Range());
    const uint64_t lowest = IsSignedType(type) ? LargestOf(type) + 1 : 0;
    if (number.magnitude > (number.negative ? lowest : LargestOf(type))) {
        throw CUsageError(word + " is out of range, " + Range() + " fits");
    }
    PackInteger(request, number.negative ? 0 - number.magnitude : number.magnitude,
                BitsOfType(type));
}

std::string CValueType::Unpack(CInMsg& response) const {
    const EValueType type = TypeOf(m_vt);
    std::string text;
    if (!IsIntegerType(type)) {
        response >> text;
        return Printable(text);
    }
    uint64_t value = UnpackInteger(response, BitsOfType(type));
    reg_data_to_string(text, &value, type, m_vt);
    return text;
}

uint64_t ParseUnsigned(const std::string& word, uint64_t max, const std::string& range) {
    const CNumber number = ParseNumber(word, range);
    if (number.magnitude > max || (number.negative && number.magnitude != 0)) {
        throw CUsageError(word + " is out of range, " + range + " fits");
    }
    return number.magnitude;
}
