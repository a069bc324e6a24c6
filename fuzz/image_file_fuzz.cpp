// Files of images. Whatever they hold, it is an image or refused in one line of plain
// text; an image that is dumped reads back the same, and is refused rather than taken
// with the bytes of its words swapped.
#include <optional>

#include "fuzz/fuzz_target.h"
#include "host/hex_dump.h"
#include "host/image_file.h"
#include "host/printable.h"
#include "host/usage_error.h"
#include "tests/support/dump_text.h"

namespace {

using CImage = std::vector<uint8_t>;

constexpr size_t LONGEST_DUMPED = 4096;

std::optional<CImage> Image(std::string_view contents) {
    try {
        CImage image = ImageOf(contents, "file");
        Require(!image.empty() && image.size() <= MAX_IMAGE_SIZE, "an image has bytes");
        return image;
    } catch (const CUsageError& e) {
        const std::string_view text = e.what();
        Require(text.starts_with("file:") || text.starts_with("file is "),
                "an error names the file");
        Require(Printable(text) == text, "an error is plain text");
        return std::nullopt;
    }
}

std::string ListDump(const CImage& image) {
    std::string dump;
    for (const uint8_t byte : image) {
        dump += "0x" + HexDigits(byte, 2) + ",\n";
    }
    return dump;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto image = Image(TextOf(data, size));
    const bool is_text = IsText(TextOf(data, size));
    if (IsWideText(TextOf(data, size))) {
        Require(!is_text && !image.has_value(), "wide text is refused");
        return 0;
    }
    Require(is_text || image == CImage(data, data + size), "what is no text is an image as it is");
    // What stars stand for may be long, and says nothing new.
    if (!image.has_value() || image->size() > LONGEST_DUMPED) {
        return 0;
    }
    Require(Image(ColonDump(*image, 16, 1)) == image, "a dump with colons reads back");
    Require(Image(BarDump(*image)) == image, "a dump with bars reads back");
    Require(Image(PlainDump(*image)) == image || image->size() <= 8, "a plain dump reads back");
    Require(Image(ListDump(*image)) == image, "a list reads back");
    for (const bool little_endian : {false, true}) {
        const auto words = Image(ColonDump(*image, 16, 2, little_endian));
        Require(!words.has_value() || words == image, "words are read right or refused");
    }
    return 0;
}
