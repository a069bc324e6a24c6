// The simulated driver as a program meets it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/boards/mdio_sim/driver_access.h"

namespace {

constexpr const char* DRIVER = "/dev/fsl-fman_xmdio_us";
constexpr uint16_t PHY = 1 << 5 | 3;
constexpr uint16_t IDENTIFIER = 0x0229;  // the upper half of it

// Set for as long as it lives.
class CVariable {
  public:
    CVariable(const char* name, const char* value) : m_name(name) { ::setenv(name, value, 1); }
    ~CVariable() { ::unsetenv(m_name); }
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;

  private:
    const char* const m_name;
};

bool IsPhyReadThrough(int fd) {
    return Read(fd, PHY, MII_PHYSID1) == IDENTIFIER;
}

size_t CountDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(all), end(all)));
}

}  // namespace

TEST(MdioDriver, IsOpenedByEveryFunctionThatOpens) {
    using COpened = std::pair<const char*, int>;
    for (const auto& [name, fd] : {COpened{"open", ::open(DRIVER, O_RDONLY | O_SYNC)},
                                   {"open64", ::open64(DRIVER, O_RDWR)},
                                   {"openat", ::openat(AT_FDCWD, DRIVER, O_RDONLY)},
                                   {"openat64", ::openat64(AT_FDCWD, DRIVER, O_RDONLY)},
                                   {"__open_2", __open_2(DRIVER, O_RDONLY)},
                                   {"__open64_2", __open64_2(DRIVER, O_RDONLY)},
                                   {"__openat_2", __openat_2(AT_FDCWD, DRIVER, O_RDONLY)},
                                   {"__openat64_2", __openat64_2(AT_FDCWD, DRIVER, O_RDONLY)}}) {
        const CDescriptor driver(fd);
        EXPECT_TRUE(IsPhyReadThrough(driver.Get())) << name;
    }
}

TEST(MdioDriver, ReadsAndWritesRegisters) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    EXPECT_TRUE(Write(driver.Get(), PHY, 16, 0xBEEF));
    EXPECT_EQ(Read(driver.Get(), PHY, 16), 0xBEEF);
    EXPECT_EQ(Read(driver.Get(), 0x3F, 16), 0xFFFF);
}

TEST(MdioDriver, HasOneBusHoweverOftenItIsOpened) {
    const CDescriptor first(::open(DRIVER, O_RDONLY));
    const CDescriptor second(::open(DRIVER, O_RDONLY));
    EXPECT_NE(first.Get(), second.Get());
    EXPECT_TRUE(Write(first.Get(), PHY, 17, 0x1234));
    EXPECT_EQ(Read(second.Get(), PHY, 17), 0x1234);
}

TEST(MdioDriver, LeavesTheRestOfTheRecordAlone) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    mii_ioctl_data record = {.phy_id = PHY, .reg_num = 2, .val_in = 7, .val_out = 8};
    EXPECT_EQ(::ioctl(driver.Get(), SIOCGMIIREG, &record), 0);
    EXPECT_EQ(record.phy_id, PHY);
    EXPECT_EQ(record.reg_num, 2);
    EXPECT_EQ(record.val_in, 7);
    EXPECT_EQ(record.val_out, IDENTIFIER);
    record = {.phy_id = PHY, .reg_num = 18, .val_in = 7, .val_out = 8};
    EXPECT_EQ(::ioctl(driver.Get(), SIOCSMIIREG, &record), 0);
    EXPECT_EQ(record.val_out, 8);
}

TEST(MdioDriver, RefusesARegisterThatClause22DoesNotHave) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    for (const uint16_t reg : {uint16_t{32}, uint16_t{0xFFFF}}) {
        errno = 0;
        EXPECT_EQ(Read(driver.Get(), PHY, reg), std::nullopt);
        EXPECT_EQ(errno, EINVAL);
        errno = 0;
        EXPECT_FALSE(Write(driver.Get(), PHY, reg, 0));
        EXPECT_EQ(errno, EINVAL);
    }
}

TEST(MdioDriver, RefusesOtherRequestsAndNoRecord) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    mii_ioctl_data record = {};
    EXPECT_EQ(::ioctl(driver.Get(), SIOCGMIIPHY, &record), -1);
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_EQ(::ioctl(driver.Get(), SIOCGMIIREG, nullptr), -1);
    EXPECT_EQ(errno, EFAULT);
}

TEST(MdioDriver, IsReachedThroughDuplicates) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    for (const int fd :
         {::dup(driver.Get()), ::dup2(driver.Get(), 900), ::dup3(driver.Get(), 901, O_CLOEXEC),
          ::fcntl(driver.Get(), F_DUPFD, 902)}) {
        const CDescriptor duplicate(fd);
        EXPECT_TRUE(IsPhyReadThrough(duplicate.Get())) << fd;
    }
    EXPECT_TRUE(IsPhyReadThrough(driver.Get()));
}

TEST(MdioDriver, IsGoneFromADescriptorThatIsClosedOrReplaced) {
    const int fd = ::open(DRIVER, O_RDONLY);
    ASSERT_EQ(::close(fd), 0);
    EXPECT_EQ(Read(fd, PHY, 2), std::nullopt);
    EXPECT_EQ(errno, EBADF);

    const CDescriptor replaced(::open(DRIVER, O_RDONLY));
    const CDescriptor null(::open("/dev/null", O_RDONLY));
    ASSERT_EQ(::dup2(null.Get(), replaced.Get()), replaced.Get());
    EXPECT_EQ(Read(replaced.Get(), PHY, 2), std::nullopt);
    EXPECT_EQ(errno, ENOTTY);
}

TEST(MdioDriver, IsInheritedByAChild) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    const pid_t child = ::fork();
    if (child == 0) {
        const bool written = Write(driver.Get(), PHY, 19, 0x4321);
        ::_exit(written && IsPhyReadThrough(driver.Get()) ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Read(driver.Get(), PHY, 19), 0x4321);
}

TEST(MdioDriver, ClosesItsDescriptorOnExecWhenAsked) {
    const CDescriptor kept(::open(DRIVER, O_RDONLY));
    const CDescriptor closed(::open(DRIVER, O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(::fcntl(kept.Get(), F_GETFD), 0);
    EXPECT_EQ(::fcntl(closed.Get(), F_GETFD), FD_CLOEXEC);
}

TEST(MdioDriver, HasADescriptorLikeAnyOther) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    pollfd polled = {.fd = driver.Get(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(::poll(&polled, 1, 0), 1);
    EXPECT_TRUE(std::filesystem::exists("/proc/self/fd/" + std::to_string(driver.Get())));
}

TEST(MdioDriver, LeavesNoDescriptorBehind) {
    const size_t before = CountDescriptors();
    for (int round = 0; round < 1000; ++round) {
        const CDescriptor driver(::open(DRIVER, O_RDONLY));
        ASSERT_TRUE(IsPhyReadThrough(driver.Get()));
        const CVariable fault("MORVA_MDIO_SIM_OPEN_ERRNO", "13");
        ASSERT_EQ(::open(DRIVER, O_RDONLY), -1);
    }
    EXPECT_EQ(CountDescriptors(), before);
}

TEST(MdioDriver, LeavesErrnoAloneWhenItWorks) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    errno = EDOM;
    EXPECT_TRUE(IsPhyReadThrough(driver.Get()));
    EXPECT_EQ(errno, EDOM);
}

TEST(MdioDriver, FailsToOpenWithTheErrorThatIsWanted) {
    for (const int error : {ENOENT, EACCES, EBUSY, ENXIO, EMFILE}) {
        const CVariable fault("MORVA_MDIO_SIM_OPEN_ERRNO", std::to_string(error).c_str());
        EXPECT_EQ(::open(DRIVER, O_RDONLY), -1);
        EXPECT_EQ(errno, error);
        const CDescriptor other(::open("/dev/null", O_RDONLY));
        EXPECT_GE(other.Get(), 0);
    }
}

TEST(MdioDriver, FailsEachAccessWithTheErrorThatIsWanted) {
    const CDescriptor driver(::open(DRIVER, O_RDONLY));
    for (const int error : {EIO, ETIMEDOUT, EFAULT, ENODEV, EOPNOTSUPP}) {
        const CVariable fault("MORVA_MDIO_SIM_IOCTL_ERRNO", std::to_string(error).c_str());
        EXPECT_EQ(Read(driver.Get(), PHY, 2), std::nullopt);
        EXPECT_EQ(errno, error);
        EXPECT_FALSE(Write(driver.Get(), PHY, 20, 0xFFFF));
        EXPECT_EQ(errno, error);
    }
    EXPECT_EQ(Read(driver.Get(), PHY, 20), 0);
}

TEST(MdioDriver, ServesManyThreads) {
    const CDescriptor shared(::open(DRIVER, O_RDONLY));
    std::vector<std::thread> threads;
    for (uint16_t reg = 24; reg < 28; ++reg) {
        threads.emplace_back([&shared, reg] {
            for (uint16_t round = 0; round < 500; ++round) {
                const CDescriptor own(::open(DRIVER, O_RDONLY));
                ASSERT_TRUE(Write(own.Get(), PHY, reg, round));
                ASSERT_EQ(Read(shared.Get(), PHY, reg), round);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
