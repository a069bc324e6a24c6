#include "host/hex_dump_row.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "host/c_initializer.h"
#include "host/printable.h"
#include "host/usage_error.h"

namespace {

constexpr std::string_view BLANKS = " \t";
constexpr const char* READABLE = "; xxd, hexdump -C and od -A x -t x1 give dumps that can be read";
// Digits that an offset without a colon has at the least: a byte has two, a word has four.
constexpr size_t BARE_OFFSET_DIGITS = 5;
// Offsets so long stand before words; shorter ones before bytes.
constexpr size_t WORD_OFFSET_DIGITS = 7;

bool IsHex(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789abcdefABCDEF") == text.npos;
}

bool HasPrefix(std::string_view text) {
    return text.starts_with("0x") || text.starts_with("0X");
}

std::string Quoted(std::string_view text) {
    return "\"" + Printable(text) + "\"";
}

std::string_view TrimmedFront(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(BLANKS), text.size()));
}

std::string_view Trimmed(std::string_view text) {
    text = TrimmedFront(text);
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

// Takes the next word off the front of `text`, empty at its end.
std::string_view TakeWord(std::string_view& text) {
    text = TrimmedFront(text);
    const std::string_view word = text.substr(0, text.find_first_of(BLANKS));
    text.remove_prefix(word.size());
    return word;
}

uint8_t ByteOf(std::string_view digits) {
    uint8_t byte = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    return byte;
}

void AppendDigits(std::string_view digits, std::vector<uint8_t>& bytes) {
    for (size_t i = 0; i < digits.size(); i += 2) {
        bytes.push_back(ByteOf(digits.substr(i, 2)));
    }
}

[[noreturn]] void RefuseAsByte(std::string_view word) {
    if (IsHex(word) && word.size() > 2 && word.size() % 2 == 0) {
        throw CUsageError(Quoted(word) + " is a word of " + std::to_string(word.size()) +
                          " digits, and the order of its bytes is not known" + READABLE);
    }
    throw CUsageError(Quoted(word) + ": expected a byte of two hexadecimal digits" + READABLE);
}

uint8_t ByteOfWord(std::string_view word) {
    const std::string_view digits = HasPrefix(word) ? word.substr(2) : word;
    // One digit alone may be a decimal number as well.
    const bool is_byte = digits.size() == 2 || (digits.size() == 1 && HasPrefix(word));
    if (!IsHex(digits) || !is_byte) {
        RefuseAsByte(word);
    }
    return ByteOf(digits);
}

CDumpRow ParseListRow(std::string_view row) {
    CDumpRow parsed;
    row = Trimmed(row);
    while (!row.empty()) {
        std::string_view piece = row.substr(0, row.find(','));
        row.remove_prefix(std::min(piece.size() + 1, row.size()));
        std::string_view word = TakeWord(piece);
        if (word.empty()) {
            throw CUsageError("expected a byte before the comma");
        }
        for (; !word.empty(); word = TakeWord(piece)) {
            parsed.bytes.push_back(ByteOfWord(word));
        }
    }
    return parsed;
}

CDumpRow ParsePlainRow(std::string_view row) {
    row = Trimmed(row);
    if (!IsHex(row)) {
        throw CUsageError(Quoted(row) +
                          ": expected hexadecimal digits alone, as in the line above");
    }
    if (row.size() % 2 != 0) {
        throw CUsageError(std::to_string(row.size()) + " digits: expected two for each byte");
    }
    CDumpRow parsed;
    AppendDigits(row, parsed.bytes);
    return parsed;
}

// Whether tools print the bytes as this text: what is not printable, as a dot.
bool IsTextOf(const std::vector<uint8_t>& bytes, std::string_view text) {
    return std::equal(bytes.begin(), bytes.end(), text.begin(), text.end(),
                      [](uint8_t byte, char shown) {
                          const bool is_printable = byte >= 0x20 && byte < 0x7F;
                          return shown == (is_printable ? static_cast<char>(byte) : '.');
                      });
}

[[noreturn]] void RefuseText(std::string_view text, size_t bytes) {
    throw CUsageError("the text at the end is of " + std::to_string(text.size()) + " bytes, but " +
                      std::to_string(bytes) + " stand before it");
}

EWordOrder OrderOf(const CDumpRow& row, const std::vector<uint8_t>& backward,
                   std::string_view beside) {
    if (backward == row.bytes) {
        return EWordOrder::SAME;
    }
    // Behind a short row it is padded, and it may begin with blanks of its own.
    const std::string_view text =
        beside.substr(beside.size() - std::min(beside.size(), row.bytes.size()));
    const bool is_forward = IsTextOf(row.bytes, text);
    const bool is_backward = IsTextOf(backward, text);
    if (is_forward == is_backward) {
        return EWordOrder::UNKNOWN;
    }
    return is_forward ? EWordOrder::FORWARD : EWordOrder::BACKWARD;
}

CDumpRow ParseColonRow(std::string_view row) {
    const size_t colon = row.find(':');
    const std::string_view offset = Trimmed(row.substr(0, colon));
    CDumpRow parsed;
    parsed.offset = HasPrefix(offset) ? offset.substr(2) : offset;
    if (colon == row.npos || !IsHex(parsed.offset)) {
        throw CUsageError("expected an offset and a colon, as in the rows above");
    }
    const bool may_have_words = parsed.offset == offset && offset.size() >= WORD_OFFSET_DIGITS;

    const std::string_view rest = TrimmedFront(row.substr(colon + 1));
    std::string_view area = rest.substr(0, rest.find("  "));
    const std::string_view beside = rest.substr(area.size());
    std::vector<uint8_t> backward;
    for (std::string_view word = TakeWord(area); !word.empty(); word = TakeWord(area)) {
        if (word == "XX") {
            throw CUsageError("byte " + std::to_string(parsed.bytes.size()) + " of row " +
                              std::string(offset) +
                              " is XX, which the chip did not give; dump it again");
        }
        const size_t begin = parsed.bytes.size();
        if (may_have_words && IsHex(word) && word.size() % 2 == 0) {
            AppendDigits(word, parsed.bytes);
        } else {
            parsed.bytes.push_back(ByteOfWord(word));
        }
        const auto from = parsed.bytes.begin() + static_cast<std::ptrdiff_t>(begin);
        backward.insert(backward.end(), std::make_reverse_iterator(parsed.bytes.end()),
                        std::make_reverse_iterator(from));
    }
    if (const std::string_view text = Trimmed(beside); text.size() > parsed.bytes.size()) {
        RefuseText(text, parsed.bytes.size());
    }
    parsed.order = OrderOf(parsed, backward, beside);
    return parsed;
}

CDumpRow ParseBareRow(std::string_view row) {
    CDumpRow parsed;
    parsed.offset = TakeWord(row);
    if (!IsHex(parsed.offset) || parsed.offset.size() < BARE_OFFSET_DIGITS) {
        throw CUsageError(Quoted(parsed.offset) + ": expected an offset, as in the rows above");
    }
    for (row = Trimmed(row); !row.empty(); row = TrimmedFront(row)) {
        if (row.front() == '|' || row.front() == '>') {
            parsed.has_bars = row.front() == '|';
            if (row.size() != parsed.bytes.size() + 2) {
                RefuseText(row.substr(1, row.size() - 2), parsed.bytes.size());
            }
            break;
        }
        parsed.bytes.push_back(ByteOfWord(TakeWord(row)));
    }
    return parsed;
}

}  // namespace

EDumpStyle StyleOf(std::string_view row) {
    const size_t colon = row.find(':');
    const std::string_view before = Trimmed(row.substr(0, colon));
    if (colon != row.npos && IsHex(HasPrefix(before) ? before.substr(2) : before)) {
        return EDumpStyle::COLON;
    }
    if (BeginsInitializer(row)) {
        return EDumpStyle::C;
    }
    row = Trimmed(row);
    const std::string_view word = TakeWord(row);
    if (!IsHex(word) || word.size() <= 2) {
        return EDumpStyle::LIST;
    }
    if (row.empty()) {
        return EDumpStyle::PLAIN;
    }
    return word.size() < BARE_OFFSET_DIGITS ? EDumpStyle::LIST : EDumpStyle::BARE;
}

CDumpRow ParseRow(EDumpStyle style, std::string_view row) {
    const bool has_offsets = style == EDumpStyle::COLON || style == EDumpStyle::BARE;
    if (has_offsets && Trimmed(row) == "*") {
        CDumpRow parsed;
        parsed.repeats = true;
        return parsed;
    }
    switch (style) {
        case EDumpStyle::LIST:
            return ParseListRow(row);
        case EDumpStyle::PLAIN:
            return ParsePlainRow(row);
        case EDumpStyle::COLON:
            return ParseColonRow(row);
        default:
            return ParseBareRow(row);
    }
}
