#include "host/decode_command.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <nlohmann/json.hpp>
#include <system_error>

#include "decode/decoders.h"
#include "host/image_file.h"
#include "host/printable.h"
#include "host/shell/near_names.h"
#include "host/usage_error.h"

namespace {

// Keeps the members in the order in which they are written.
using CJson = nlohmann::ordered_json;

constexpr int SCHEMA_VERSION = 1;

// Why it is no kind; empty when it is one.
std::string FaultOfKind(const std::string& kind) {
    if (FindDecoder(kind) != nullptr) {
        return {};
    }
    std::vector<std::string> kinds;
    std::string all;
    for (const CDecoder& decoder : Decoders()) {
        kinds.emplace_back(decoder.kind);
        all += (all.empty() ? "" : ", ") + kinds.back();
    }
    const std::string hint = DidYouMean(kind, kinds);
    return "there is no \"" + Printable(kind) + "\", there are " + all +
           (hint.empty() ? "" : "; " + hint);
}

CJson SectionsOf(const CDecodedRecord& decoded) {
    CJson sections = CJson::array();
    for (const CDecodedField& field : decoded.fields) {
        if (sections.empty() || sections.back()["name"] != field.section) {
            sections.push_back({{"name", field.section}, {"fields", CJson::array()}});
        }
        sections.back()["fields"].push_back({{"name", field.name}, {"value", field.value}});
    }
    return sections;
}

std::string JsonOf(const CDecodedRecord& decoded, const CDecodeOptions& options) {
    const CJson object = {{"schema", SCHEMA_VERSION},
                          {"kind", options.kind},
                          {"file", options.file},
                          {"checks_hold", decoded.checks_hold},
                          {"sections", SectionsOf(decoded)}};
    // The name of a file need not be text.
    return object.dump(-1, ' ', false, CJson::error_handler_t::replace) + "\n";
}

std::string TextOf(const CDecodedRecord& decoded) {
    std::string text;
    for (const std::string& line : LinesOf(decoded)) {
        text += line;
    }
    return text;
}

}  // namespace

CLI::App* AddDecodeCommand(CLI::App& app, CDecodeOptions& options) {
    CLI::App* decode =
        app.add_subcommand("decode", "Tell what a saved EEPROM holds; no board is needed");
    std::string kinds = "What the file is of:";
    for (const CDecoder& decoder : Decoders()) {
        kinds += "\n" + std::string(decoder.kind) + ": " + std::string(decoder.what);
    }
    decode->add_option("kind", options.kind, kinds)
        ->type_name("KIND")
        ->required()
        ->check(FaultOfKind);
    decode
        ->add_option("file", options.file, "Its bytes, or a hex dump of them; - is standard input")
        ->type_name("FILE")
        ->required();
    decode->add_flag("--json", options.json, "Print one JSON object");
    decode->footer(
        "Hex dumps may be those of xxd, hexdump -C, od -A x -t x1, i2cdump, the shell's\n"
        "own read, or bytes alone. A script called decode is run as ./decode.\n"
        "Exit status: 0 the record is sound; 1 a checksum does not hold, or it is blank or of\n"
        "another memory than DDR3; 2 no such file or no image; 4 the output got lost.");
    return decode;
}

EExitStatus RunDecode(const CDecodeOptions& options, std::FILE* out) {
    const CDecoder& decoder = *FindDecoder(options.kind);
    const std::vector<uint8_t> image = ReadImage(options.file);
    if (image.size() < decoder.size) {
        throw CUsageError((options.file == "-" ? "standard input" : Printable(options.file)) +
                          ": " + std::to_string(image.size()) + " bytes, at least " +
                          std::to_string(decoder.size) + " are needed (" +
                          std::string(decoder.what) + ")");
    }
    const CDecodedRecord decoded = decoder.decode(image);
    const std::string text = options.json ? JsonOf(decoded, options) : TextOf(decoded);
    if (std::fwrite(text.data(), 1, text.size(), out) != text.size() || std::fflush(out) != 0) {
        throw std::system_error(errno, std::generic_category(), "standard output");
    }
    return decoded.checks_hold ? EXIT_PASSED : EXIT_FAILED;
}
