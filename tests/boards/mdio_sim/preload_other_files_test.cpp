// Everything but the simulated driver is as ever.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <string>

#include "tests/boards/mdio_sim/driver_access.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr uint16_t PHY = 1 << 5 | 3;

}  // namespace

TEST(OtherFiles, AreOpenedAsEver) {
    const CTempFolder folder;
    const std::string path = (folder.Path() / "file").string();
    ::umask(0);
    {
        const CDescriptor created(::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0640));
        ASSERT_EQ(::write(created.Get(), "text", 4), 4);
        struct stat file = {};
        ASSERT_EQ(::fstat(created.Get(), &file), 0);
        EXPECT_EQ(file.st_mode & 0777, 0640U);
    }
    const CDescriptor where(::open(folder.Path().c_str(), O_RDONLY | O_DIRECTORY));
    for (const int fd :
         {::open(path.c_str(), O_RDONLY), ::open64(path.c_str(), O_RDONLY),
          ::openat(where.Get(), "file", O_RDONLY), ::openat64(where.Get(), "file", O_RDONLY),
          __open_2(path.c_str(), O_RDONLY), __open64_2(path.c_str(), O_RDONLY),
          __openat_2(where.Get(), "file", O_RDONLY), __openat64_2(where.Get(), "file", O_RDONLY)}) {
        const CDescriptor file(fd);
        std::array<char, 8> text = {};
        EXPECT_EQ(::read(file.Get(), text.data(), text.size()), 4);
        EXPECT_STREQ(text.data(), "text");
    }
    for (const char* missing : {"/dev/fsl-fman_xmdio_us2", "/dev/fsl-fman_xmdio_u", ""}) {
        EXPECT_EQ(::open(missing, O_RDONLY), -1);
        EXPECT_EQ(errno, ENOENT);
    }
}

TEST(OtherFiles, AnswerTheDriversRequestsThemselves) {
    const CDescriptor null(::open("/dev/null", O_RDONLY));
    EXPECT_EQ(Read(null.Get(), PHY, 2), std::nullopt);
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_EQ(Read(-1, PHY, 2), std::nullopt);
    EXPECT_EQ(errno, EBADF);
    // Network interfaces have the same requests.
    const CDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ASSERT_GE(socket.Get(), 0);
    ifreq loopback = {};
    loopback.ifr_name[0] = 'l';
    loopback.ifr_name[1] = 'o';
    EXPECT_EQ(::ioctl(socket.Get(), SIOCGMIIREG, &loopback), -1);
    EXPECT_EQ(errno, EOPNOTSUPP);
}

TEST(OtherFiles, TakeOtherRequests) {
    std::array<int, 2> ends = {};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const CDescriptor out(ends[0]);
    const CDescriptor in(ends[1]);
    ASSERT_EQ(::write(in.Get(), "abc", 3), 3);
    int unread = 0;
    EXPECT_EQ(::ioctl(out.Get(), FIONREAD, &unread), 0);
    EXPECT_EQ(unread, 3);
}
