// The daemon on storage that fails: full, read-only, damaged at the start and while it runs.
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

#include "daemon_log.h"
#include "record_reports.h"

using namespace daemon_test;

namespace {

namespace fs = std::filesystem;

constexpr size_t kPage = 4096;
constexpr size_t kKindAt = 10;   // of a page: 1 branch, 2 leaf
constexpr size_t kLowerAt = 12;  // of a page: the end of its list of entries
constexpr uint8_t kBranch = 1;
constexpr uint16_t kEmptyList = 16;
constexpr uid_t kNobody = 65534;
constexpr int kDomains = 30;

std::string Name(int number) {
    return "domain-" + std::to_string(number);
}

/// Its daemon starts when the stage is set.
class UnstartedDaemon : public ::testing::Test {
  protected:
    DaemonProcess daemon_;
};

class DaemonStorage : public WithLog<UnstartedDaemon> {
  protected:
    std::string Data() const { return daemon_.StateDir() + "/DOM_DB/data.mdb"; }
    std::string RunData() const { return daemon_.RunDir() + "/gRECORD/data.mdb"; }

    void Fill() {
        for (int i = 0; i < kDomains; ++i) ASSERT_EQ(CreateDomain(Name(i)), DOM_OK);
    }
    static void ChangePages(const std::string& path,
                            const std::function<void(size_t, uint8_t*)>& change) {
        const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
        ASSERT_GE(file, 0) << path;
        uint8_t page[kPage];
        for (size_t number = 2; pread(file, page, kPage, static_cast<off_t>(number * kPage)) ==
                                static_cast<ssize_t>(kPage);
             ++number) {
            change(number, page);
            EXPECT_EQ(pwrite(file, page, kPage, static_cast<off_t>(number * kPage)),
                      static_cast<ssize_t>(kPage));
        }
        close(file);
    }
    static void EmptyBranches(size_t, uint8_t* page) {
        if (page[kKindAt] == kBranch) memcpy(page + kLowerAt, &kEmptyList, sizeof kEmptyList);
    }
    /// The daemon lives, answers from memory, refuses what it cannot save, and says why.
    void ExpectChangesRefusedAndReadsServed() {
        EXPECT_EQ(Change(DOM_EncodeSessionTime(Name(3).c_str(), 99)), AAAD_ERR_NOT_SAVED);
        EXPECT_EQ(CreateDomain("another"), AAAD_ERR_NOT_SAVED);
        EXPECT_EQ(CountDomains(), kDomains + 1u);
        const DomainPtr domain = GetDomain(Name(3));
        ASSERT_TRUE(domain);
        EXPECT_NE(domain->session_time, 99);
        EXPECT_GE(LinesWith(daemon_.StateDir()), 1);
        EXPECT_GE(LinesWith("could not be saved and were taken back"), 1);
        EXPECT_TRUE(daemon_.IsRunning());
    }
};

// --- No room ---------------------------------------------------------------------------------

/// How room runs out, and how there is room again.
struct Shortage {
    const char* name;
    std::function<bool(const std::string& state_dir)> prepare;  // false: not possible here
    std::function<void()> in_child;
    std::function<void(const DaemonProcess&)> make_room;
};

class DaemonStorageFull : public DaemonStorage, public ::testing::WithParamInterface<Shortage> {
  protected:
    void TearDown() override {
        daemon_.Kill();
        (void)umount2(daemon_.StateDir().c_str(), MNT_DETACH);
    }
};

TEST_P(DaemonStorageFull, RefusesWhatDoesNotFitKeepsTheRestAndGoesOnWithRoom) {
    if (!GetParam().prepare(daemon_.StateDir()))
        GTEST_SKIP() << "no right to mount here; the limit of the file size is tested beside this";
    ASSERT_TRUE(StartWithLog(GetParam().in_child));
    int answered = 0;
    while (answered < 1000 && CreateDomain(Name(answered)) == DOM_OK) ++answered;
    ASSERT_GT(answered, 10);
    ASSERT_LT(answered, 1000);
    EXPECT_EQ(CreateDomain("refused"), AAAD_ERR_NOT_SAVED);
    EXPECT_EQ(CountDomains(), answered + 1u);
    EXPECT_GE(LinesWith(daemon_.StateDir()), 1);
    EXPECT_GE(LinesWith("Make room on the disk"), 1);

    GetParam().make_room(daemon_);
    EXPECT_EQ(CreateDomain("fits-again"), DOM_OK);
    daemon_.Kill();
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(CountDomains(), answered + 2u);
    EXPECT_TRUE(GetDomain("fits-again"));
    EXPECT_FALSE(GetDomain("refused"));
    for (int i = 0; i < answered; ++i) EXPECT_TRUE(GetDomain(Name(i))) << Name(i);
}

std::string g_mounted;

const Shortage kShortages[] = {
    {"FileSizeLimit", [](const std::string&) { return true; },
     [] {
         const rlimit limit{200000, RLIM_INFINITY};
         (void)setrlimit(RLIMIT_FSIZE, &limit);
     },
     [](const DaemonProcess& daemon) {
         const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
         EXPECT_EQ(prlimit(daemon.Pid(), RLIMIT_FSIZE, &none, nullptr), 0);
     }},
    {"SmallFileSystem",
     [](const std::string& state_dir) {
         fs::create_directories(state_dir);
         g_mounted = state_dir;
         return mount("none", state_dir.c_str(), "tmpfs", 0, "size=400k,mode=0755") == 0;
     },
     {},
     [](const DaemonProcess&) {
         EXPECT_EQ(mount("none", g_mounted.c_str(), "tmpfs", MS_REMOUNT, "size=8m"), 0);
     }},
};
INSTANTIATE_TEST_SUITE_P(Room, DaemonStorageFull, testing::ValuesIn(kShortages),
                         [](const auto& shortage) { return shortage.param.name; });

// --- Read-only -------------------------------------------------------------------------------

TEST_F(DaemonStorage, DirectoryThatMayNotBeWrittenIsNamedAtTheStart) {
    ASSERT_TRUE(StartWithLog());
    daemon_.Kill();
    const bool root = geteuid() == 0;
    if (root) {
        ASSERT_EQ(chown(daemon_.RunDir().c_str(), kNobody, kNobody), 0);
        fs::remove_all(daemon_.RunDir() + "/gRECORD");
        fs::remove(daemon_.RunDir() + "/aaad.lock");
    }
    fs::permissions(Data(), fs::perms::owner_read);
    EXPECT_FALSE(StartWithLog([&] {
        if (root && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(120);
    }));
    EXPECT_GE(LinesWith(daemon_.StateDir()), 1);
    EXPECT_GE(LinesWith("writable for the daemon's user"), 1);
}

TEST_F(DaemonStorage, ReadOnlyFileSystemIsNamedAtTheStartAndDoesNoHarm) {
    fs::create_directories(daemon_.StateDir());
    if (mount("none", daemon_.StateDir().c_str(), "tmpfs", 0, "size=8m,mode=0755") != 0)
        GTEST_SKIP() << "no right to mount here; a file that may not be written is tested beside "
                        "this";
    struct Unmount {
        std::string path;
        ~Unmount() { (void)umount2(path.c_str(), MNT_DETACH); }
    } const unmount{daemon_.StateDir()};
    ASSERT_TRUE(daemon_.Start());
    Fill();
    daemon_.Kill();
    ASSERT_EQ(mount("none", daemon_.StateDir().c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, ""), 0);
    std::string text;
    EXPECT_EQ(daemon_.RunToEnd(daemon_.DirectoryArguments(), text), 1);
    EXPECT_NE(text.find(daemon_.StateDir()), std::string::npos) << text;
    EXPECT_NE(text.find("ead-only"), std::string::npos) << text;

    ASSERT_EQ(mount("none", daemon_.StateDir().c_str(), "tmpfs", MS_REMOUNT, ""), 0);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(CountDomains(), kDomains + 1u);
    EXPECT_EQ(CreateDomain("another"), DOM_OK);
}

// --- Damaged ---------------------------------------------------------------------------------

TEST_F(DaemonStorage, FlippedBitsAtTheStartAreToldOrHarmless) {
    ASSERT_TRUE(daemon_.Start());
    Fill();
    daemon_.Kill();
    const std::string copy = daemon_.StateDir() + "/copy";
    fs::copy_file(Data(), copy);
    int refused = 0;
    for (unsigned seed = 1; seed <= 8; ++seed) {
        fs::copy_file(copy, Data(), fs::copy_options::overwrite_existing);
        std::mt19937 random(seed);
        ChangePages(Data(), [&](size_t, uint8_t* page) {
            const size_t at = random() % 3 == 0 ? random() % kPage : random() % 64;
            if (random() % 8 == 0) page[at] ^= static_cast<uint8_t>(1u << random() % 8);
        });
        if (!StartWithLog()) {
            ++refused;
            EXPECT_GE(LinesWith(daemon_.StateDir()), 1) << "seed " << seed;
            EXPECT_GE(LinesWith("restore it from a backup"), 1) << "seed " << seed;
            continue;
        }
        (void)WholeConfiguration();
        (void)CreateDomain("another");
        EXPECT_EQ(daemon_.Terminate(), 0) << "seed " << seed;
    }
    EXPECT_GT(refused, 0);
}

// LMDB's map over a file that was cut off gave SIGBUS.
TEST_F(DaemonStorage, FileCutOffWhileTheDaemonRuns) {
    for (const size_t kept : {size_t{0}, 2 * kPage, 20 * kPage}) {
        SCOPED_TRACE(kept);
        fs::remove_all(daemon_.StateDir() + "/DOM_DB");
        ASSERT_TRUE(StartWithLog());
        Fill();
        fs::resize_file(Data(), kept);
        ExpectChangesRefusedAndReadsServed();
        (void)WholeConfiguration();
        EXPECT_EQ(daemon_.Terminate(), 0);
        EXPECT_FALSE(StartWithLog());
        EXPECT_GE(LinesWith(daemon_.StateDir()), 1);
    }
}

TEST_F(DaemonStorage, PagesDamagedWhileTheDaemonRuns) {
    ASSERT_TRUE(StartWithLog());
    Fill();
    ChangePages(Data(), EmptyBranches);
    ExpectChangesRefusedAndReadsServed();
    (void)WholeConfiguration();
    EXPECT_EQ(daemon_.Terminate(), 0);
}

TEST_F(DaemonStorage, BitsFlippedWhileTheDaemonRunsNeverEndIt) {
    ASSERT_TRUE(StartWithLog());
    Fill();
    std::mt19937 random(5);
    for (int round = 0; round < 10; ++round) {
        ChangePages(Data(), [&](size_t, uint8_t* page) {
            const size_t at = random() % 3 == 0 ? random() % kPage : random() % 64;
            if (random() % 8 == 0) page[at] ^= static_cast<uint8_t>(1u << random() % 8);
        });
        (void)CreateDomain("another" + std::to_string(round));
        (void)Change(DOM_EncodeNasIdProfile(("n" + std::to_string(round)).c_str()));
        (void)WholeConfiguration();
        ASSERT_TRUE(daemon_.IsRunning()) << round;
    }
    EXPECT_EQ(daemon_.Terminate(), 0);
}

TEST_F(DaemonStorage, DatabaseRemovedWhileTheDaemonRunsTakesNoChange) {
    ASSERT_TRUE(StartWithLog());
    Fill();
    fs::remove_all(daemon_.StateDir() + "/DOM_DB");
    ExpectChangesRefusedAndReadsServed();
}

class DaemonRecordStorage : public DaemonStorage {
  protected:
    void SetUp() override {
        ASSERT_TRUE(StartWithLog());
        KeepAllRecords();
        for (uint32_t i = 0; i < 60; ++i) {
            UserRecordSource record = SampleRecord("user" + std::to_string(i), 1, 1000 + i);
            ASSERT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, record).result, DOM_OK);
        }
    }
    void ExpectOnlyRecordsRefused() {
        EXPECT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("new")).result,
                  AAAD_ERR_NOT_SAVED);
        for (const uint32_t code : {DOM_MSG_RECORD_ALL, DOM_MSG_RECORD_BY_TIME}) {
            EXPECT_EQ(ResultOf(Ask(CodeAlone(code), DOM_OP_GET)), DOM_ERR_FAILED) << code;
        }
        EXPECT_GE(LinesWith("record database below " + daemon_.RunDir()), 1);
        EXPECT_EQ(CreateDomain("still-works"), DOM_OK);
        EXPECT_TRUE(daemon_.IsRunning());
        // Records are not worth a daemon that does not start.
        daemon_.Kill();
        ASSERT_TRUE(StartWithLog());
        EXPECT_EQ(LinesWith("it cannot be opened or read"), 1);
        EXPECT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("new")).result, DOM_OK);
    }
};

TEST_F(DaemonRecordStorage, RecordsCutOffWhileTheDaemonRuns) {
    fs::resize_file(RunData(), 2 * kPage);
    ExpectOnlyRecordsRefused();
}

// A search that met such a page ended the daemon: the storage asserts what it believes of it.
TEST_F(DaemonRecordStorage, BranchOfRecordsDamagedWhileTheDaemonRuns) {
    ChangePages(RunData(), EmptyBranches);
    ExpectOnlyRecordsRefused();
}

}  // namespace
