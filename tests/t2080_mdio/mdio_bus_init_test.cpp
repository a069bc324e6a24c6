// "init" of the MDIO bus: which driver it opens, what it says, and that no descriptor is
// left behind.
#include <fcntl.h>

#include <cerrno>
#include <filesystem>

#include "tests/support/bytes.h"
#include "tests/t2080_mdio/mdio_bus_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MdioBusInit : public CMdioBusTest {
  protected:
    static Lines OpenFailure(const std::string& path, int err) {
        return {TestError("Failed open MDIO driver " + path), SystemError(err)};
    }
    std::string Driver() { return m_bus->DriverName().Get(); }
};

size_t OpenFilesOfThisProcess() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(files), end(files)));
}

TEST_F(MdioBusInit, OpensThePathOfTheValueWithoutAnArgument) {
    EXPECT_EQ(Init().bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_driver.Files(), ElementsAre("open /dev/fsl-fman_xmdio_us"));
    EXPECT_TRUE(m_bus->CheckOperational());
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(MdioBusInit, OpensForReadingWithoutABuffer) {
    Init();
    EXPECT_EQ(m_driver.OpenFlags() & ~O_CLOEXEC, O_RDONLY | O_SYNC);
}

TEST_F(MdioBusInit, ChangesTheValueByItsArgument) {
    EXPECT_EQ(Init(OTHER_PATH).bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_driver.Files(), ElementsAre("open /dev/other-mdio"));
    EXPECT_EQ(Driver(), OTHER_PATH);
    EXPECT_EQ(Init().bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_driver.Files().back(), "open /dev/other-mdio");
}

TEST_F(MdioBusInit, OpensThePathThatTheValueWasSetTo) {
    Send(Command("driver"), MSG_POKEV, std::string(OTHER_PATH));
    EXPECT_EQ(Init().bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_driver.Files(), ElementsAre("open /dev/other-mdio"));
}

TEST_F(MdioBusInit, KeepsTheNewPathThoughItCannotBeOpened) {
    m_driver.FailOpen(ENOENT);
    EXPECT_EQ(Init(OTHER_PATH).bytes, Bytes{FAIL});
    EXPECT_EQ(Driver(), OTHER_PATH);
    EXPECT_EQ(m_log.Lines(), OpenFailure(OTHER_PATH, ENOENT));
    EXPECT_FALSE(m_bus->CheckOperational());
    m_driver.FailOpen(0);
    EXPECT_EQ(Init().bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_driver.Files().back(), "open /dev/other-mdio");
}

TEST_F(MdioBusInit, ClosesTheOldDriverBeforeItOpensTheNewOne) {
    Init();
    EXPECT_EQ(Init(OTHER_PATH).bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_driver.Files(),
                ElementsAre("open /dev/fsl-fman_xmdio_us", "close", "open /dev/other-mdio"));
    EXPECT_EQ(m_driver.Open(), 1U);
}

TEST_F(MdioBusInit, LeavesTheBusClosedWhenTheReopenFails) {
    Init();
    m_driver.FailOpen(EBUSY);
    EXPECT_EQ(Init().bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(), OpenFailure(FIRST_PATH, EBUSY));
    EXPECT_FALSE(m_bus->CheckOperational());
    EXPECT_EQ(m_driver.Open(), 0U);
    m_log.Clear();
    EXPECT_EQ(Read(1, 3, 2).Code(), FAIL);
    EXPECT_EQ(m_log.Lines(), m_not_operational);
}

TEST_F(MdioBusInit, ClosesADriverOnce) {
    Init();
    m_driver.FailOpen(EBUSY);
    Init();
    Init();
    EXPECT_THAT(m_driver.Files(),
                ElementsAre("open /dev/fsl-fman_xmdio_us", "close", "open /dev/fsl-fman_xmdio_us",
                            "open /dev/fsl-fman_xmdio_us"));
}

TEST_F(MdioBusInit, RecoversFromAFailure) {
    m_driver.FailOpen(ENODEV);
    Init();
    m_driver.FailOpen(0);
    EXPECT_EQ(Init().bytes, Bytes{SUCCESS});
    EXPECT_TRUE(m_bus->CheckOperational());
}

TEST_F(MdioBusInit, TellsEveryErrorOfTheSystemAndTriesOnce) {
    for (int err = 1; err <= EHWPOISON; ++err) {
        SCOPED_TRACE(err);
        m_driver.FailOpen(err);
        m_log.Clear();
        EXPECT_EQ(Init().bytes, Bytes{FAIL});
        EXPECT_EQ(m_log.Lines(), OpenFailure(FIRST_PATH, err));
        EXPECT_EQ(m_driver.Files().size(), static_cast<size_t>(err));
    }
}

TEST_F(MdioBusInit, TellsTheErrorOfTheSystemInItsOwnWords) {
    m_driver.FailOpen(ENOENT);
    Init();
    EXPECT_THAT(m_log.Texts(0x10), testing::Contains("System error: error 2(No such file or "
                                                     "directory)"));
}

TEST_F(MdioBusInit, TellsTheErrorOfTheOpenThoughTheLogMeetsAnother) {
    class CFailingSink : public ILogSink {
      public:
        void Write(const CLogRecord&) override { errno = ENOTTY; }
        CLogSinkScope m_scope{*this};
    };
    const CFailingSink sink;
    m_driver.FailOpen(EACCES);
    Init();
    EXPECT_EQ(m_log.Lines(), OpenFailure(FIRST_PATH, EACCES));
}

TEST_F(MdioBusInit, ReallyOpensAPathOfTheSystem) {
    EXPECT_EQ(Init("/dev/null").bytes, Bytes{SUCCESS});
    EXPECT_EQ(Read(1, 3, 2).Code(), FAIL);
    EXPECT_EQ(m_log.Lines(), Lines{SystemError(ENOTTY)});
    m_log.Clear();
    EXPECT_EQ(Init("/no/such/driver").bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(), OpenFailure("/no/such/driver", ENOENT));
    EXPECT_EQ(Init("").bytes, Bytes{FAIL});
    EXPECT_EQ(Driver(), "");
}

TEST_F(MdioBusInit, ChangesNothingByAnArgumentThatIsCutOff) {
    EXPECT_EQ(Send(Command("init"), MSG_CALL, uint16_t{20}, uint8_t{'/'}).bytes, Bytes{FAIL});
    EXPECT_EQ(Driver(), FIRST_PATH);
    EXPECT_THAT(m_driver.Files(), IsEmpty());
    EXPECT_EQ(m_log.Texts(0x30).size(), 1U);
}

TEST_F(MdioBusInit, OfAProgramTellsWhetherItSucceeded) {
    std::string path = OTHER_PATH;
    EXPECT_TRUE(m_bus->Init(path));
    EXPECT_EQ(path, OTHER_PATH);
    EXPECT_TRUE(m_bus->bOperational(false));
    m_driver.FailOpen(EIO);
    EXPECT_FALSE(m_bus->Init(path));
    EXPECT_FALSE(m_bus->bOperational(true));
    EXPECT_EQ(m_log.Lines(), OpenFailure(OTHER_PATH, EIO));
    EXPECT_EQ(Driver(), FIRST_PATH);
}

TEST_F(MdioBusInit, OfAThousandKeepsOneDescriptor) {
    Init();
    const size_t before = OpenFilesOfThisProcess();
    for (int i = 0; i < 1000; ++i) {
        m_driver.FailOpen(i % 3 == 0 ? EMFILE : 0);
        EXPECT_EQ(Init(i % 2 == 0 ? FIRST_PATH : OTHER_PATH).Code(), i % 3 == 0 ? FAIL : SUCCESS);
    }
    m_driver.FailOpen(0);
    Init();
    EXPECT_EQ(OpenFilesOfThisProcess(), before);
    EXPECT_EQ(m_driver.Open(), 1U);
}

TEST_F(MdioBusInit, IsUndoneByTheEndOfTheBus) {
    Init();
    DestroyBus();
    EXPECT_EQ(m_driver.Files().back(), "close");
    EXPECT_EQ(m_driver.Open(), 0U);
}

TEST_F(MdioBusInit, LeavesNothingToCloseAfterAFailure) {
    m_driver.FailOpen(EIO);
    Init();
    DestroyBus();
    EXPECT_THAT(m_driver.Files(), ElementsAre("open /dev/fsl-fman_xmdio_us"));
}

TEST_F(MdioBusInit, IsNotNeededToDestroyTheBus) {
    DestroyBus();
    EXPECT_THAT(m_driver.Files(), IsEmpty());
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

}  // namespace
