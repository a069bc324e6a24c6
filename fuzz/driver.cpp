// Runs a fuzz target without libFuzzer:
//
//   NAME_fuzz RUNS FOLDER    the inputs in the folder, then RUNS made from them
//   NAME_fuzz FILE...        these inputs
//
// An input that ends the program, or takes longer than LONGEST_S, is left in the
// file fuzz-input where it was run.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>

#include "fuzz/fuzz_target.h"
#include "fuzz/mutator.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#include <sanitizer/common_interface_defs.h>
#define MORVA_SANITIZED 1
#else
#define MORVA_SANITIZED 0
#endif

namespace {

constexpr unsigned int LONGEST_S = 20;
constexpr const char* LEFT_IN = "fuzz-input";

std::string_view g_input;

void Say(const char* text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
}

extern "C" void LeaveInput() {
    const int file = ::open(LEFT_IN, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    [[maybe_unused]] const ssize_t written = ::write(file, g_input.data(), g_input.size());
    ::close(file);
    Say("the input is in ");
    Say(LEFT_IN);
    Say("\n");
}

extern "C" void OnSignal(int signal) {
    if (signal == SIGALRM) {
        Say("this takes too long\n");
    }
    LeaveInput();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void LeaveInputAtTheEnd() {
    std::signal(SIGABRT, OnSignal);
    std::signal(SIGALRM, OnSignal);
#if MORVA_SANITIZED
    // It reports the other signals itself.
    __sanitizer_set_death_callback(LeaveInput);
#else
    for (const int signal : {SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
        std::signal(signal, OnSignal);
    }
#endif
}

// What it throws ends the program too.
void RunOne(const std::string& input) noexcept {
    // A copy of just its size, so that a sanitizer sees a read beyond its end.
    const std::vector<uint8_t> bytes(input.begin(), input.end());
    g_input = input;
    ::alarm(LONGEST_S);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    ::alarm(0);
}

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path.string() + " cannot be read");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

// In the order of their names, so that every machine makes the same of them.
std::vector<std::string> ReadCorpus(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<std::string> corpus;
    std::transform(files.begin(), files.end(), std::back_inserter(corpus), ReadFile);
    if (corpus.empty()) {
        throw std::runtime_error(folder.string() + " holds no inputs");
    }
    return corpus;
}

// The whole word as a number.
std::optional<size_t> NumberOf(const std::string& word) {
    size_t number = 0;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

void Run(const std::vector<std::string>& arguments) {
    LeaveInputAtTheEnd();
    const std::optional<size_t> runs = NumberOf(arguments.front());
    if (!runs.has_value() || arguments.size() != 2) {
        for (const std::string& file : arguments) {
            RunOne(ReadFile(file));
        }
        return;
    }
    const std::vector<std::string> corpus = ReadCorpus(arguments.back());
    std::for_each(corpus.begin(), corpus.end(), RunOne);
    CMutator mutator(corpus);
    for (size_t i = 0; i < *runs; ++i) {
        RunOne(mutator.Next());
    }
    std::printf("%zu inputs of the corpus and %zu made from them\n", corpus.size(), *runs);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s RUNS FOLDER, or %s FILE...\n", argv[0], argv[0]);
        return 2;
    }
    try {
        Run({argv + 1, argv + argc});
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", argv[0], e.what());
        return 2;
    }
}
