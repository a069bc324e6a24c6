// One process at a time has the contents of a simulated board.
#include "boards/sim/state_lock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>
#include <string>

#include "framework/diag_exception.h"
#include "tests/support/temp_folder.h"

namespace {

using testing::HasSubstr;

class StateLock : public testing::Test {
  protected:
    // Why the folder cannot be had now; empty when it can.
    static std::string RefusalOf(const std::filesystem::path& folder) {
        try {
            const CStateLock lock(folder);
            return "";
        } catch (const CDiagException& e) {
            return e.what();
        }
    }
    const CTempFolder m_folder;
    const std::filesystem::path m_state = m_folder / "new" / "state";
};

TEST_F(StateLock, KeepsOthersOutAndSaysWhoHasIt) {
    const CStateLock lock(m_state);
    const std::string refusal = RefusalOf(m_state);
    EXPECT_THAT(refusal, HasSubstr(m_state.string()));
    EXPECT_THAT(refusal, HasSubstr("process " + std::to_string(::getpid()) + " simulates"));
    EXPECT_THAT(refusal, HasSubstr("--state DIR"));
}

TEST_F(StateLock, EndsWithItsHolder) {
    std::optional<CStateLock> lock(m_state);
    EXPECT_NE(RefusalOf(m_state), "");
    lock.reset();
    EXPECT_EQ(RefusalOf(m_state), "");
}

TEST_F(StateLock, IsOfOneFolder) {
    const CStateLock lock(m_state);
    EXPECT_EQ(RefusalOf(m_folder / "other"), "");
}

TEST_F(StateLock, DoesWithoutAFolderThatCannotBeMade) {
    EXPECT_EQ(RefusalOf("/proc/self/state"), "");
}

}  // namespace
