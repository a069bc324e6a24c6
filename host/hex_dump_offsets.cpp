#include "host/hex_dump_offsets.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <span>
#include <utility>

#include "host/hex_dump.h"

namespace {

constexpr int HEXADECIMAL = 16;
constexpr std::array<int, 3> RADICES = {HEXADECIMAL, 8, 10};
// Octal and decimal ones have seven.
constexpr size_t OD_HEXADECIMAL_DIGITS = 6;

// Nothing when the digits are none of that radix; an offset that is too large for a
// number is beyond every image.
std::optional<size_t> OffsetOf(std::string_view digits, int radix) {
    size_t offset = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, offset, radix);
    if (stop != end) {
        return std::nullopt;
    }
    return error == std::errc() ? offset : MAX_IMAGE_SIZE + 1;
}

// As the dump would have it.
std::string Written(size_t offset, int radix, size_t digits) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), offset, radix).ptr;
    const std::string written(text.data(), end);
    return std::string(digits - std::min(digits, written.size()), '0') + written;
}

// Bytes of an address, behind which another one's dump may follow.
constexpr size_t ADDRESS_SIZE = 256;

// Puts rows together whose offsets are of one radix.
class CLayout {
  public:
    explicit CLayout(int radix) : m_radix(radix) {}

    std::vector<uint8_t> Of(const std::vector<CNumberedRow>& rows) {
        for (const CNumberedRow& row : rows) {
            // A * is never the first row: it shows no style.
            if (row.row.repeats) {
                m_repeat_line = row.line;
            } else {
                Add(row);
            }
        }
        if (m_repeat_line != 0) {
            throw CDumpFault(m_repeat_line,
                             "expected an offset below *, to tell how often the row is repeated");
        }
        return std::move(m_bytes);
    }

  private:
    void Add(const CNumberedRow& numbered) {
        const CDumpRow& row = numbered.row;
        const std::optional<size_t> offset = OffsetOf(row.offset, m_radix);
        if (!offset.has_value()) {
            throw CDumpFault(numbered.line, At(row) + ": expected digits as in the offsets above");
        }
        if (*offset == 0 && m_bytes.size() == ADDRESS_SIZE && m_begin == 0 && m_repeat_line == 0) {
            m_begin = ADDRESS_SIZE;
            m_row_size = row.bytes.size();
        }
        if (*offset > MAX_IMAGE_SIZE - m_begin - row.bytes.size()) {
            throw CDumpFault(numbered.line, At(row) + " is beyond 1 MiB, no image of an EEPROM");
        }
        if (m_repeat_line != 0) {
            Repeat(numbered, m_begin + *offset);
        }
        if (m_begin + *offset != m_bytes.size()) {
            throw CDumpFault(numbered.line, At(row) + ", expected " + Expected(row) +
                                                (m_last == nullptr ? ": a dump begins with the "
                                                                     "first byte of the chip"
                                                                   : ""));
        }
        if (m_last == nullptr) {
            m_row_size = row.bytes.size();
        }
        if (row.bytes.size() > m_row_size) {
            throw CDumpFault(numbered.line,
                             std::to_string(row.bytes.size()) + " bytes, expected at most " +
                                 std::to_string(m_row_size) + ", as in the first row");
        }
        m_bytes.insert(m_bytes.end(), row.bytes.begin(), row.bytes.end());
        m_last = &row;
    }

    // Up to the offset of the row below the *.
    void Repeat(const CNumberedRow& below, size_t offset) {
        const std::vector<uint8_t>& repeated = m_last->bytes;
        if (repeated.empty() || offset <= m_bytes.size() ||
            (offset - m_bytes.size()) % repeated.size() != 0) {
            throw CDumpFault(below.line, At(below.row) + ", expected " + Expected(below.row) +
                                             " and whole rows of " +
                                             std::to_string(repeated.size()) +
                                             " bytes, for which * stands");
        }
        while (m_bytes.size() < offset) {
            m_bytes.insert(m_bytes.end(), repeated.begin(), repeated.end());
        }
        m_repeat_line = 0;
    }

    static std::string At(const CDumpRow& row) { return "offset " + std::string(row.offset); }
    std::string Expected(const CDumpRow& row) const {
        return Written(m_bytes.size() - m_begin, m_radix, row.offset.size());
    }

    const int m_radix;
    std::vector<uint8_t> m_bytes;
    const CDumpRow* m_last = nullptr;
    size_t m_begin = 0;  // of the dump in the image, when it is the second one
    size_t m_row_size = 0;
    size_t m_repeat_line = 0;  // of a * whose rows are not there yet
};

// The radices that the offsets may have, the likeliest first.
std::span<const int> RadicesOf(const std::vector<CNumberedRow>& rows, EDumpStyle style) {
    const bool is_hexadecimal =
        style == EDumpStyle::COLON ||
        std::any_of(rows.begin(), rows.end(), [](const auto& row) { return row.row.has_bars; });
    return std::span(RADICES).first(is_hexadecimal ? 1 : RADICES.size());
}

// The bytes that the rows are if their offsets are of that radix.
struct CFit {
    int radix;
    std::vector<uint8_t> bytes;
};

// The first of those that fit. Where they differ, only the rows that * stands for can.
std::vector<uint8_t> TheSureOne(std::vector<CFit> fits, const std::vector<CNumberedRow>& rows) {
    CFit& first = fits.front();
    const bool agree = std::all_of(fits.begin(), fits.end(),
                                   [&first](const CFit& fit) { return fit.bytes == first.bytes; });
    const bool is_hexadecimal =
        first.radix == HEXADECIMAL && rows.front().row.offset.size() == OD_HEXADECIMAL_DIGITS;
    if (!agree && !is_hexadecimal) {
        const auto repeat =
            std::find_if(rows.begin(), rows.end(), [](const auto& row) { return row.row.repeats; });
        throw CDumpFault(repeat->line,
                         "how many rows * stands for is not sure, since the offsets may be "
                         "hexadecimal, octal or decimal; od -v writes all rows");
    }
    return std::move(first.bytes);
}

}  // namespace

std::vector<uint8_t> PutTogether(const std::vector<CNumberedRow>& rows, EDumpStyle style) {
    std::vector<CFit> fits;
    std::optional<CDumpFault> fault;
    for (const int radix : RadicesOf(rows, style)) {
        try {
            fits.push_back({radix, CLayout(radix).Of(rows)});
        } catch (const CDumpFault& e) {
            // The radix that fits longest is the one that was meant.
            if (!fault.has_value() || e.Line() > fault->Line()) {
                fault.emplace(e);
            }
        }
    }
    if (fits.empty()) {
        throw CDumpFault(*fault);
    }
    return TheSureOne(std::move(fits), rows);
}
