// Damaged blobs. Whatever is in them, a tree comes of it or a fault that is
// named, and nothing outside the blob is ever read: the blob ends at a page
// that cannot be touched, which holds for libfdt too, and the sanitizers watch
// the rest.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <random>
#include <set>
#include <system_error>

#include "boards/devicetree/board_mount.h"
#include "boards/devicetree/device_tree.h"
#include "boards/devicetree/sim_hardware.h"
#include "framework/diag_exception.h"
#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/temp_folder.h"

namespace {

using namespace std::string_view_literals;

constexpr size_t GUARDED_SIZE = size_t{64} << 10;

class CGuardedMemory {
  public:
    CGuardedMemory() {
        const auto page = static_cast<size_t>(::sysconf(_SC_PAGESIZE));
        m_length = GUARDED_SIZE + page;
        m_start =
            ::mmap(nullptr, m_length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_start == MAP_FAILED ||
            ::mprotect(static_cast<uint8_t*>(m_start) + GUARDED_SIZE, page, PROT_NONE) != 0) {
            throw std::system_error(errno, std::generic_category(), "guarded memory");
        }
    }
    ~CGuardedMemory() { ::munmap(m_start, m_length); }
    CGuardedMemory(const CGuardedMemory&) = delete;
    CGuardedMemory& operator=(const CGuardedMemory&) = delete;

    // A copy as near to the guard as an address that eight divides allows.
    std::span<const uint8_t> Put(const std::vector<uint8_t>& bytes) {
        const size_t room = (bytes.size() + 7) / 8 * 8;
        uint8_t* at = static_cast<uint8_t*>(m_start) + GUARDED_SIZE - room;
        std::copy(bytes.begin(), bytes.end(), at);
        return {at, bytes.size()};
    }

  private:
    void* m_start = nullptr;
    size_t m_length = 0;
};

// Something of everything that a board can have.
std::vector<uint8_t> WholeBoard() {
    CBlobBuilder builder;
    builder.Text("model", "FUZZ").Begin("soc").Text("compatible", "simple-bus");
    builder.Begin("i2c@100").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
    builder.Cells("phandle", {1}).Cells("clock-frequency", {400000});
    builder.Device("eeprom@50", "morva,mfg-eeprom\0atmel,24c02"sv, 0x50).Text("label", "mfg");
    builder.Cells("size", {256}).Cells("pagesize", {16}).Cells("address-width", {8}).End();
    builder.Device("mux@70", "nxp,pca9544", 0x70).Begin("i2c@1").Cells("reg", {1});
    builder.Cells("phandle", {2}).Device("mux@71", "nxp,pca9543", 0x71);
    builder.Begin("i2c@0").Cells("reg", {0}).Cells("linux,phandle", {3});
    builder.Device("spd@51", "atmel,spd", 0x51).Bytes("read-only", "").End();
    builder.End().End().End().End();
    builder.Device("any@20", "acme,any", 0x20).Text("status", "okay").End().End();
    builder.Begin("i2c@200").Text("compatible", "fsl-i2c").Cells("i2c-parent", {1}).End();
    builder.Begin("mdio@1").Text("compatible", "fsl,fman-xmdio").Cells("phandle", {4});
    builder.Device("phy@1", "ethernet-phy-ieee802.3-c22", 1).End().End().End();
    builder.Begin("mdio-mux").Text("compatible", "mdio-mux").Cells("mdio-parent-bus", {4}).End();
    builder.Begin("sfp").Text("compatible", "sff,sfp").Cells("i2c-bus", {3}).End();
    return builder.Finish();
}

class CMutator {
  public:
    static constexpr size_t HEADER_WORDS = 10;

    explicit CMutator(uint32_t seed) : m_random(seed) {}

    std::vector<uint8_t> Mutate(std::vector<uint8_t> blob) {
        for (size_t rounds = 1 + Below(3); rounds != 0 && !blob.empty(); --rounds) {
            // Now and then its size; mostly what stands in it.
            if (Below(16) == 0) {
                Resize(blob);
            } else {
                Damage(blob);
            }
        }
        return blob;
    }

  private:
    size_t Below(size_t bound) { return m_random() % bound; }

    void Damage(std::vector<uint8_t>& blob) {
        switch (Below(8)) {
            case 0:
                PutWord(blob, Below(HEADER_WORDS) * 4);
                break;
            case 1:
            case 2:
                PutWord(blob, Below(blob.size()) / 4 * 4);
                break;
            case 3: {  // some bytes again, elsewhere
                const size_t length = 1 + Below(std::min<size_t>(64, blob.size()));
                const std::vector<uint8_t> piece = Piece(blob, length);
                std::copy(piece.begin(), piece.end(),
                          blob.begin() + static_cast<ptrdiff_t>(Below(blob.size() - length + 1)));
                break;
            }
            case 4:
                blob[Below(blob.size())] = static_cast<uint8_t>(m_random());
                break;
            default:
                blob[Below(blob.size())] ^= static_cast<uint8_t>(1U << Below(8));
        }
    }

    void Resize(std::vector<uint8_t>& blob) {
        const auto at = blob.begin() + static_cast<ptrdiff_t>(Below(blob.size()) / 4 * 4);
        switch (Below(4)) {
            case 0:
                blob.resize(Below(blob.size() + 1));
                return;  // and the header does not say so
            case 1:
                blob.resize(Below(blob.size() + 1));
                break;
            case 2:
                blob.insert(at, 4, static_cast<uint8_t>(m_random()));
                break;
            default:
                blob.erase(at, at + std::min<ptrdiff_t>(4, blob.end() - at));
        }
        PutBigEndian32(blob, 4, static_cast<uint32_t>(blob.size()));
    }

    std::vector<uint8_t> Piece(const std::vector<uint8_t>& blob, size_t length) {
        const auto from = blob.begin() + static_cast<ptrdiff_t>(Below(blob.size() - length + 1));
        return {from, from + static_cast<ptrdiff_t>(length)};
    }

    // A number that lengths, offsets, tags and handles are likely to trip over.
    void PutWord(std::vector<uint8_t>& blob, size_t offset) {
        const std::vector<uint32_t> words = {0,
                                             1,  // also: a node begins
                                             2,  // ... ends
                                             3,  // a property
                                             4,  // nothing
                                             9,  // the end
                                             0x7FFFFFFF,
                                             0x80000000,
                                             0xFFFFFFFF,
                                             0xFFFFFFFC,
                                             static_cast<uint32_t>(blob.size()),
                                             static_cast<uint32_t>(blob.size() - 1),
                                             static_cast<uint32_t>(Below(blob.size())),
                                             static_cast<uint32_t>(m_random())};
        PutBigEndian32(blob, offset, words[Below(words.size())]);
    }

    static void PutBigEndian32(std::vector<uint8_t>& blob, size_t offset, uint32_t value) {
        for (size_t i = 0; i < 4 && offset + i < blob.size(); ++i) {
            blob[offset + i] = static_cast<uint8_t>(value >> (24 - 8 * i));
        }
    }

    std::mt19937 m_random;
};

void ExpectNamesAreTypeableAndUnique(const CDiagObj& node) {
    std::set<std::string> names;
    for (const CDiagObj* child : node.GetChildren()) {
        if (child->GetNodeType() == TFUNC) {
            continue;  // the commands of buses have their own names
        }
        const std::string name = child->GetName();
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_NE(name, ".");
        EXPECT_NE(name, "..");
        EXPECT_FALSE(name.empty());
        EXPECT_EQ(name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                         "0123456789_.@+,-"),
                  std::string::npos)
            << name;
        ExpectNamesAreTypeableAndUnique(*child);
    }
}

struct COutcome {
    unsigned int trees = 0;
    unsigned int faults = 0;
};

// Hands every tree that comes of `count` mutations to `use`.
template <class Use>
COutcome Fuzz(uint32_t seed, unsigned int count, Use use) {
    const std::vector<uint8_t> whole = WholeBoard();
    CMutator mutator(seed);
    CGuardedMemory memory;
    COutcome outcome;
    for (unsigned int i = 0; i < count; ++i) {
        SCOPED_TRACE("mutation " + std::to_string(i));
        const std::span<const uint8_t> blob = memory.Put(mutator.Mutate(whole));
        try {
            const CDeviceTree tree("b.dtb", blob);
            ++outcome.trees;
            use(tree);
        } catch (const CDiagException& fault) {
            ++outcome.faults;
            const std::string text = fault.what();
            EXPECT_EQ(text.find("b.dtb: "), 0U) << text;
            EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        }
    }
    return outcome;
}

}  // namespace

TEST(BlobFuzz, EndsInATreeOrANamedFault) {
    const COutcome outcome = Fuzz(20240601, 40'000, [](const CDeviceTree&) {});
    // Neither way is rare, or the damage would test little.
    EXPECT_GT(outcome.trees, 4'000U);
    EXPECT_GT(outcome.faults, 4'000U);
}

TEST(BlobFuzz, MountsWhateverTreeComesOfIt) {
    const CTempFolder folder;
    const COutcome outcome = Fuzz(20240602, 2'000, [&folder](const CDeviceTree& tree) {
        // The chip at a place changes its size from one tree to the next.
        std::filesystem::remove_all(folder.Path() / "state");
        CSimHardware hardware(folder / "images", folder / "state");
        ExpectNamesAreTypeableAndUnique(*MountBoard(tree, folder / "xml", hardware));
    });
    EXPECT_GT(outcome.trees, 200U);
    // All that was written lies where it should.
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
        EXPECT_EQ(entry.path().filename(), "state");
    }
}
