// A board of as many nodes as its argument says, all in one menu, for what
// grows with the tree: diagsh --board FILE.so -- 500
#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "framework/diag_board.h"
#include "framework/diag_exception.h"
#include "framework/diag_func.h"

namespace {

constexpr int MOST = 1'000'000;

class CNumberedCmd : public CDiagFunc {
  public:
    explicit CNumberedCmd(const char* name) : CDiagFunc(name, "one of many", 0) {}
    void Invoke(CInMsg&, COutMsg& out) override { out << static_cast<uint8_t>(MSG_SUCCESS); }
};

int CountFrom(std::string_view word) {
    int count = 0;
    const auto parsed = std::from_chars(word.data(), word.data() + word.size(), count);
    if (parsed.ec != std::errc() || parsed.ptr != word.data() + word.size() || count < 1 ||
        count > MOST) {
        throw CDiagException("%.*s is no number of nodes, 1 to %d fits",
                             static_cast<int>(word.size()), word.data(), MOST);
    }
    return count;
}

}  // namespace

extern "C" CDiagMenu* morva_board_create(int argc, const char* const* argv) {
    if (argc != 2) {
        throw CDiagException("the board takes one argument, the number of its nodes");
    }
    const int count = CountFrom(argv[1]);
    auto* root = new CDiagMenu(TMENU, "numbered", "a board of many nodes");
    for (int i = 0; i < count; ++i) {
        std::array<char, 32> name{};
        std::snprintf(name.data(), name.size(), "node-%06d", i);
        root->AddChild(new CNumberedCmd(name.data()), CDiagObj::NO_SORT);
    }
    return root;
}
