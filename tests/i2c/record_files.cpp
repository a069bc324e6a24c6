#include "tests/i2c/record_files.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace {

std::string ContentsOf(const std::filesystem::path& file) {
    std::ifstream in(std::filesystem::path(I2C_TEST_FOLDER) / file, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(in), {}};
}

uint8_t ByteOf(const std::string& digits) {
    size_t used = 0;
    const int value = std::stoi(digits, &used, 16);
    if (digits.size() != 2 || used != 2) {
        throw std::runtime_error("no byte: " + digits);
    }
    return static_cast<uint8_t>(value);
}

}  // namespace

std::vector<uint8_t> ImageNamed(const std::string& name) {
    std::vector<uint8_t> bytes;
    std::istringstream lines(ContentsOf("images/" + name + ".txt"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        for (std::string word; words >> word;) {
            bytes.push_back(ByteOf(word));
        }
    }
    return bytes;
}

std::string ExpectedNamed(const std::string& name) {
    std::string text = ContentsOf("expected/" + name + ".txt");
    for (size_t at = 0; (at = text.find("\\x", at)) != std::string::npos; ++at) {
        text.replace(at, 4, 1, static_cast<char>(ByteOf(text.substr(at + 2, 2))));
    }
    return text;
}
