#include "host/shell/value_type.h"

#include <array>
#include <limits>

#include "framework/diag_functions.h"
#include "host/integer_type.h"
#include "host/printable.h"
#include "host/shell/number.h"
#include "host/usage_error.h"

namespace {

constexpr std::array<const char*, VT_USERDEF + 1> TYPE_NAMES = {
    "int8",  "uint8",  "int16",  "uint16", "int32",       "uint32",
    "int64", "uint64", "string", "enum",   "user-defined"};

uint64_t LargestOf(EValueType type) {
    const uint64_t all = std::numeric_limits<uint64_t>::max();
    return all >> (64U - BitsOfType(type) + (IsSignedType(type) ? 1U : 0U));
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

CValue CValueType::Unpack(CInMsg& response) const {
    const EValueType type = TypeOf(m_vt);
    if (!IsIntegerType(type)) {
        std::string text;
        response >> text;
        return {Printable(text), text};
    }
    uint64_t bits = UnpackInteger(response, BitsOfType(type));
    CValue value;
    reg_data_to_string(value.text, &bits, type, m_vt);
    if (IsSignedType(type)) {
        // Brings the sign of a narrow type to the top and down again.
        const unsigned int above = 64U - BitsOfType(type);
        value.data = static_cast<int64_t>(bits << above) >> above;
    } else {
        value.data = bits;
    }
    return value;
}
