// Descriptors of simulated adapters: how they are opened, shared and closed, and the
// requests that change what they stand for.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <array>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "tests/boards/i2c_sim/adapter_access.h"

// What a program that is compiled with _FORTIFY_SOURCE calls.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {
int __open_2(const char* path, int flags);
ssize_t __read_chk(int fd, void* to, size_t size, size_t room);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

const std::filesystem::path SYSFS = std::getenv("SYSFS_PATH");

// Runs in a child; its exit status, which `run` returns.
int InChild(const std::function<int()>& run) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(run());
    }
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A driver of the kernel that has an address, as long as it lives.
class CBoundDriver {
  public:
    explicit CBoundDriver(const std::string& device)
        : m_device(SYSFS / "bus/i2c/devices" / device) {
        std::filesystem::create_directories(m_device);
        std::filesystem::create_directory_symlink("../../drivers/at24", m_device / "driver");
    }
    ~CBoundDriver() { std::filesystem::remove_all(m_device); }
    CBoundDriver(const CBoundDriver&) = delete;
    CBoundDriver& operator=(const CBoundDriver&) = delete;

  private:
    const std::filesystem::path m_device;
};

}  // namespace

TEST(SimDescriptor, IsOpenedByFunctionsOfAllKinds) {
    using COpened = std::pair<const char*, int>;
    for (const auto& [name, fd] : {COpened{"open", ::open(BUS_0, O_RDONLY)},
                                   {"open64", ::open64(BUS_0, O_RDWR)},
                                   {"openat", ::openat(AT_FDCWD, BUS_0, O_RDWR)},
                                   {"__open_2", __open_2(BUS_0, O_RDWR)}}) {
        EXPECT_EQ(MakerThrough(CAdapterFile(fd)), MAKER) << name;
    }
}

TEST(SimDescriptor, IsOfNoAdapterThatTheBoardHasNot) {
    for (const char* path : {"/dev/i2c-2", "/dev/i2c/0", "/dev/i2c-00", "/dev/i2c-0x", "/dev/i2c-",
                             "/dev/i2c-99999999999"}) {
        EXPECT_EQ(::open(path, O_RDWR), -1) << path;
        EXPECT_EQ(errno, ENOENT) << path;
    }
}

TEST(SimDescriptor, IsClosedWithTheProgramWhereThatIsAskedFor) {
    const CAdapterFile closed(BUS_0, O_RDWR | O_CLOEXEC);
    const CAdapterFile kept(BUS_0);
    EXPECT_NE(::fcntl(closed.Get(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(::fcntl(kept.Get(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST(SimDescriptor, TellsWhatTheAdapterCan) {
    const CAdapterFile bus(BUS_0);
    unsigned long functions = 0;
    EXPECT_EQ(bus.Do(I2C_FUNCS, &functions), 0);
    EXPECT_EQ(functions, static_cast<unsigned long>(I2C_FUNC_I2C | I2C_FUNC_SMBUS_EMUL_ALL));
    EXPECT_EQ(bus.Do(I2C_FUNCS, nullptr), -EFAULT);
}

TEST(SimDescriptor, RefusesAddressesThatAreNone) {
    const CAdapterFile bus(BUS_0);
    EXPECT_EQ(bus.Do(I2C_SLAVE, 0x80), -EINVAL);
    EXPECT_EQ(bus.Do(I2C_SLAVE_FORCE, 0x80), -EINVAL);
    EXPECT_EQ(bus.Do(I2C_SLAVE, 0x7F), 0);
}

TEST(SimDescriptor, HasTenBitAddressesButNobodyAtThem) {
    const CAdapterFile bus(BUS_0);
    EXPECT_EQ(bus.Do(I2C_TENBIT, 1), 0);
    EXPECT_EQ(bus.Do(I2C_SLAVE, 0x3FF), 0);
    EXPECT_EQ(bus.Do(I2C_SLAVE, 0x400), -EINVAL);
    EXPECT_EQ(bus.Smbus(I2C_SMBUS_WRITE, 0, I2C_SMBUS_QUICK, nullptr), -EOPNOTSUPP);
    uint8_t byte = 0;
    EXPECT_EQ(::read(bus.Get(), &byte, 1), -1);
    EXPECT_EQ(errno, EOPNOTSUPP);
}

TEST(SimDescriptor, LeavesAddressesToTheKernelsDrivers) {
    const CAdapterFile bus(BUS_0);
    const CBoundDriver at24("0-0050");
    EXPECT_EQ(bus.Do(I2C_SLAVE, EEPROM), -EBUSY);
    EXPECT_EQ(bus.Do(I2C_SLAVE, SENSOR), 0);
    EXPECT_EQ(bus.Do(I2C_SLAVE_FORCE, EEPROM), 0);
    EXPECT_EQ(CAdapterFile(BUS_1).Do(I2C_SLAVE, EEPROM), 0);
}

TEST(SimDescriptor, TakesAndForgetsHowOftenAndHowLong) {
    const CAdapterFile bus(BUS_0);
    EXPECT_EQ(bus.Do(I2C_RETRIES, 3), 0);
    EXPECT_EQ(bus.Do(I2C_TIMEOUT, 100), 0);
    EXPECT_EQ(bus.Do(I2C_RETRIES, 1UL + INT_MAX), -EINVAL);
    EXPECT_EQ(bus.Do(I2C_TIMEOUT, 1UL + INT_MAX), -EINVAL);
}

TEST(SimDescriptor, KnowsNoOtherRequests) {
    const CAdapterFile bus(BUS_0);
    EXPECT_EQ(bus.Do(0x0709UL, 0UL), -ENOTTY);
    EXPECT_EQ(bus.Do(0x5401UL, nullptr), -ENOTTY);
    EXPECT_EQ(::isatty(bus.Get()), 0);
}

TEST(SimDescriptor, LeavesRequestsOnOtherDescriptorsAlone) {
    const CAdapterFile null("/dev/null");
    EXPECT_EQ(null.Do(I2C_SLAVE, SENSOR), -ENOTTY);
    EXPECT_EQ(CAdapterFile(-1).Do(I2C_SLAVE, SENSOR), -EBADF);
    uint8_t byte = 1;
    EXPECT_EQ(::read(null.Get(), &byte, 1), 0);
    EXPECT_EQ(::write(null.Get(), &byte, 1), 1);
    EXPECT_EQ(::read(-1, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST(SimDescriptor, LeavesErrnoAloneWhenAllIsWell) {
    const CAdapterFile bus(BUS_0);
    errno = 33;
    EXPECT_EQ(MakerThrough(bus), MAKER);
    EXPECT_EQ(errno, 33);
}

TEST(SimDescriptor, HasAnAddressOfItsOwn) {
    const CAdapterFile one(BUS_0);
    const CAdapterFile other(BUS_0);
    ASSERT_EQ(one.Do(I2C_SLAVE, SENSOR), 0);
    ASSERT_EQ(other.Do(I2C_SLAVE, NOBODY), 0);
    EXPECT_EQ(one.Smbus(I2C_SMBUS_WRITE, 0, I2C_SMBUS_QUICK, nullptr), 0);
    EXPECT_EQ(other.Smbus(I2C_SMBUS_WRITE, 0, I2C_SMBUS_QUICK, nullptr), -ENXIO);
}

TEST(SimDescriptor, SharesItsAddressWithItsDuplicates) {
    const CAdapterFile one(BUS_0);
    const CAdapterFile other(::dup(one.Get()));
    ASSERT_EQ(other.Do(I2C_SLAVE, SENSOR), 0);
    EXPECT_EQ(one.Smbus(I2C_SMBUS_WRITE, 0, I2C_SMBUS_QUICK, nullptr), 0);
    EXPECT_EQ(InChild([&] { return one.Do(I2C_SLAVE, NOBODY); }), 0);
    EXPECT_EQ(one.Smbus(I2C_SMBUS_WRITE, 0, I2C_SMBUS_QUICK, nullptr), -ENXIO);
}

TEST(SimDescriptor, ReadsWithAllRoomThatThereIs) {
    const CAdapterFile bus(BUS_0);
    ASSERT_EQ(bus.Do(I2C_SLAVE, SENSOR), 0);
    ASSERT_EQ(bus.Write(SENSOR, {MAKER_REG}), 1);
    uint8_t byte = 0;
    EXPECT_EQ(__read_chk(bus.Get(), &byte, 1, 1), 1);
    EXPECT_EQ(byte, MAKER);
}

TEST(SimDescriptor, WaitsForAnswersAlsoWhenItMayNotBlock) {
    const CAdapterFile bus(BUS_0);
    ASSERT_EQ(::fcntl(bus.Get(), F_SETFL, O_NONBLOCK), 0);
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(MakerThrough(bus), MAKER);
    }
}

TEST(SimDescriptor, IsOfNoUseAfterWhatIsNoRequest) {
    const CAdapterFile bus(BUS_0);
    const CAdapterFile other(BUS_0);
    ASSERT_EQ(::send(bus.Get(), "x", 1, 0), 1);
    CBytes in(1);
    EXPECT_EQ(bus.WriteRead(SENSOR, {MAKER_REG}, in), -ENODEV);
    EXPECT_EQ(MakerThrough(other), MAKER);
}

TEST(SimDescriptor, GivesEveryThreadItsOwnAnswers) {
    const CAdapterFile bus(BUS_0);
    std::array<int, 4> wrong = {};
    {
        std::vector<std::jthread> threads;
        for (size_t t = 0; t < wrong.size(); ++t) {
            threads.emplace_back([&, t] {
                CBytes first(1);
                ASSERT_EQ(bus.WriteRead(EEPROM, {0, static_cast<uint8_t>(t)}, first), 2);
                for (int i = 0; i < 300; ++i) {
                    CBytes in(1 + t);
                    const bool ok = bus.WriteRead(EEPROM, {0, static_cast<uint8_t>(t)}, in) == 2 &&
                                    in[0] == first[0];
                    wrong[t] += ok ? 0 : 1;
                }
            });
        }
    }
    EXPECT_EQ(wrong, (std::array<int, 4>{}));
}

TEST(SimDescriptor, GivesEveryProcessItsOwnAnswers) {
    const CAdapterFile bus(BUS_0);
    const auto all_right = [&](uint8_t reg) {
        CBytes first(1);
        bool right = bus.WriteRead(SENSOR, {reg}, first) == 2;
        for (int i = 0; i < 300 && right; ++i) {
            CBytes in(1);
            right = bus.WriteRead(SENSOR, {reg}, in) == 2 && in == first;
        }
        return right ? 0 : 1;
    };
    std::jthread other([&] { EXPECT_EQ(all_right(MAKER_REG), 0); });
    EXPECT_EQ(InChild([&] { return all_right(MAKER_REG + 1); }), 0);
}

TEST(SimDescriptor, OutlivesWhoDiesInACall) {
    const CAdapterFile bus(BUS_0);
    for (int i = 0; i < 20; ++i) {
        std::array<int, 2> begun = {};
        ASSERT_EQ(::pipe(begun.data()), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            for (;;) {
                MakerThrough(bus);
                if (::write(begun[1], "", 1) != 1) {
                    ::_exit(1);
                }
            }
        }
        ::close(begun[1]);
        // Killed somewhere in the middle of its calls.
        CBytes calls(5 + static_cast<size_t>(i));
        for (uint8_t& call : calls) {
            ASSERT_EQ(::read(begun[0], &call, 1), 1);
        }
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ::close(begun[0]);
        ASSERT_TRUE(WIFSIGNALED(status));
        ASSERT_EQ(MakerThrough(bus), MAKER) << i;
    }
}
