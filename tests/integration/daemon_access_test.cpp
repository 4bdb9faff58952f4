// A user who may not change the configuration can neither change it nor make the daemon do so, and
// keeps nobody else from being served.
#include <platform/aaa_tlv.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

#include "daemon_log.h"
#include "golden/hex_file.h"
#include "raw_client.h"
#include "record_reports.h"

using namespace daemon_test;

namespace {

constexpr uid_t kNobody = 65534;
constexpr gid_t kStrangeGroup = 54321;
constexpr uint16_t kEndpoints[] = {DOM_LIPC_SUB_ENDPOINT, DOM_LIPC_RECORD_SUB_ENDPOINT};
using Bytes = std::vector<uint8_t>;

class DaemonAccess : public DaemonTestWithLog {
  protected:
    void SetUp() override {
        if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
        ASSERT_TRUE(StartWithLog());
        KeepAllRecords();
        ASSERT_EQ(CreateDomain("corp"), DOM_OK);
        ASSERT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("alice")).serial, 1u);
        before_ = WholeConfiguration();
    }
    /// Runs `body` as somebody else; its expectations count.
    static void AsStranger(const std::function<void()>& body) {
        EXPECT_EQ(AsUser(kNobody, kStrangeGroup,
                         [&] {
                             body();
                             return ::testing::Test::HasFailure() ? 1 : 0;
                         }),
                  0);
    }
    /// The same after what a stranger did as before it, now and after a restart.
    void ExpectUnchanged() {
        EXPECT_EQ(WholeConfiguration(), before_);
        EXPECT_EQ(StoredSerials(daemon_, DOM_RECORD_ONLINE_FAIL), std::vector<uint64_t>{1});
        ASSERT_EQ(daemon_.Terminate(), 0);
        ASSERT_TRUE(StartWithLog());
        EXPECT_EQ(WholeConfiguration(), before_);
    }

  private:
    std::vector<Bytes> before_;
};

Message Golden(const std::string& name) {
    const std::string image = golden::ReadHexFile(name);
    return Message(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(image.data()),
                                        static_cast<uint32_t>(image.size())));
}

Bytes Headed(TLV_MSG* body, uint32_t operation) {
    return Image(Message(AAA_AddOpHead(operation, body)).get());
}

/// The result in the answer to a packet; kNoReply for data, and without an answer.
uint32_t ResultOfPacket(const Bytes& packet, uint16_t endpoint = DOM_LIPC_SUB_ENDPOINT) {
    RawClient client(endpoint);
    EXPECT_TRUE(client.Connected());
    client.Send(packet);
    return client.Result();
}

TEST_F(DaemonAccess, StrangersChangesOfEveryCodeAreRefused) {
    AsStranger([] {
        int denied = 0;
        for (const std::string& name : golden::MessageFiles()) {
            const Message body = Golden(name);
            ASSERT_TRUE(body) << name;
            for (uint32_t operation = 0; operation <= 8; ++operation) {
                const uint32_t result = ResultOfPacket(Headed(body.get(), operation));
                // 0 is the answer to a change that was made; a read has data or a refusal.
                EXPECT_NE(result, DOM_OK) << name << " with operation " << operation;
                if (operation <= DOM_OP_DELETE && result != AAAD_ERR_DENIED) {
                    // What takes no change, or what a front end's walk may read.
                    EXPECT_TRUE(result == AAAD_ERR_MALFORMED || result == kNoReply)
                        << name << " with operation " << operation << ": " << result;
                }
                denied += result == AAAD_ERR_DENIED;
            }
        }
        EXPECT_GT(denied, 100);
    });
    ExpectUnchanged();
}

TEST_F(DaemonAccess, StrangersReportsAreRefused) {
    AsStranger([] {
        for (const std::string& name : golden::MessageFiles()) {
            const Message body = Golden(name);
            const uint16_t endpoint = DOM_LIPC_RECORD_SUB_ENDPOINT;
            EXPECT_NE(ResultOfPacket(Image(body.get()), endpoint), DOM_OK) << name;
            EXPECT_NE(ResultOfPacket(Headed(body.get(), DOM_OP_SET), endpoint), DOM_OK) << name;
        }
        EXPECT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("mallory")).result,
                  AAAD_ERR_DENIED);
    });
    ExpectUnchanged();
}

TEST_F(DaemonAccess, StrangerReadsEverything) {
    std::vector<Bytes> own = WholeConfiguration();
    AsStranger([&] { EXPECT_EQ(WholeConfiguration(), own); });
}

// Heads of the daemon's own traffic between its threads, and numbers that look like an identity.
TEST_F(DaemonAccess, ForgedHeadsGiveNoRights) {
    AsStranger([] {
        const auto creation = [] { return Message(DOM_EncodeDomainName("forged")); };
        const auto refused = [](const Bytes& packet, const char* what) {
            const uint32_t result = ResultOfPacket(packet);
            EXPECT_TRUE(result == AAAD_ERR_DENIED || result == AAAD_ERR_MALFORMED ||
                        result == AAAD_ERR_NO_OBJECT)
                << what << ": " << result;
        };
        const Message request(AAA_AddOpHead(DOM_OP_SET, creation().get()));
        for (uint32_t kind = 0; kind <= 16; ++kind) {
            for (const uint32_t sub_type : {0u, 1u, 2u, 3u, 4u, 5u, 0xFFFFFFFFu}) {
                const Message forged(AAA_AddAaadHead(kind, sub_type, request.get()));
                refused(Image(forged.get()), "a head of the daemon's");
                refused(Headed(forged.get(), DOM_OP_SET), "the same inside a request");
                refused(Headed(forged.get(), DOM_OP_GET), "the same inside a read");
            }
        }
        refused(Headed(request.get(), DOM_OP_GET), "a change inside a read");
        refused(Headed(creation().get(), DOM_OP_GET), "a change that calls itself a read");

        const Message two_codes(CodeAlone(DOM_MSG_DOMAIN_COUNT));
        AAA_AppendUINTTlvData(two_codes.get(), DOM_TLV_MSG_CODE, DOM_MSG_DOMAIN_NAME);
        AAA_AppendStrTlvData(two_codes.get(), DOM_TLV_DOMAIN_NAME, "forged");
        for (uint32_t operation = 0; operation <= 7; ++operation) {
            EXPECT_NE(ResultOfPacket(Headed(two_codes.get(), operation)), DOM_OK) << operation;
        }

        // User, group or process 0, or slot 0, in every field that anybody might take for it.
        const Message claims = creation();
        for (uint16_t type = 1; type <= 260; ++type) {
            AAA_AppendUINTTlvData(claims.get(), type, 0);
        }
        refused(Headed(claims.get(), DOM_OP_SET), "claims");
    });
    ExpectUnchanged();
}

// Who a peer is tells the kernel, and descriptors that come along are not taken.
TEST_F(DaemonAccess, ForgedCredentialsAndDescriptorsAreOfNoUse) {
    const auto descriptors = [this] {
        const std::string path = "/proc/" + std::to_string(daemon_.Pid()) + "/fd";
        return std::distance(std::filesystem::directory_iterator(path),
                             std::filesystem::directory_iterator());
    };
    const auto before = descriptors();
    AsStranger([] {
        const Message body(DOM_EncodeDomainName("forged"));
        Bytes packet = Headed(body.get(), DOM_OP_SET);
        for (int i = 0; i < 100; ++i) {
            const int32_t fd = LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL);
            LIPC_ADDRESS address{};
            address.length = DOM_LIPC_ADDR_LEN;
            address.family = DOM_LIPC_FAMILY;
            address.endpoint = DOM_LIPC_ENDPOINT;
            address.sub_endpoint = DOM_LIPC_SUB_ENDPOINT;
            ASSERT_EQ(LIPC_Connect(fd, &address, DOM_LIPC_ADDR_LEN), 0);
            iovec data{packet.data(), packet.size()};
            alignas(cmsghdr) char control[256] = {};
            const auto send = [&](int type, const void* value, size_t length) {
                msghdr message{};
                message.msg_iov = &data;
                message.msg_iovlen = 1;
                message.msg_control = control;
                message.msg_controllen = CMSG_SPACE(length);
                cmsghdr* head = CMSG_FIRSTHDR(&message);
                head->cmsg_level = SOL_SOCKET;
                head->cmsg_type = type;
                head->cmsg_len = CMSG_LEN(length);
                memcpy(CMSG_DATA(head), value, length);
                return sendmsg(fd, &message, MSG_NOSIGNAL);
            };
            const ucred root{1, 0, 0};
            EXPECT_LT(send(SCM_CREDENTIALS, &root, sizeof root), 0);
            const int own[] = {fd, fd, STDERR_FILENO};
            EXPECT_GT(send(SCM_RIGHTS, own, sizeof own), 0);
            const Message reply(
                TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd), 20000));
            EXPECT_TRUE(reply);
            LIPC_Close(fd);
        }
    });
    ASSERT_EQ(CountDomains(), 2u);
    // The daemon closes a connection after its answer, which may be here sooner.
    for (int tries = 0; descriptors() > before && tries < 1000; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_LE(descriptors(), before);
    ExpectUnchanged();
}

// Every cut of the heads, and every tenth of a kibibyte up to one byte more than 64 KiB.
TEST_F(DaemonAccess, FramesOfEverySizeAreAnsweredAndChangeNothing) {
    AsStranger([] {
        const Message body(DOM_EncodeDomainName("frame"));
        const Bytes filler(80000, 0xA5);
        ASSERT_EQ(
            TLV_Append_Data(body.get(), 999, static_cast<uint32_t>(filler.size()), filler.data()),
            0u);
        const Bytes whole = Headed(body.get(), DOM_OP_SET);
        std::vector<size_t> sizes;
        for (size_t size = 1; size < 160; ++size) sizes.push_back(size);
        for (size_t size = 160; size < 65536; size += 103) sizes.push_back(size);
        for (const size_t size : {65534, 65535, 65536, 65537}) sizes.push_back(size);
        for (const uint16_t endpoint : kEndpoints) {
            for (const size_t size : sizes) {
                const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
                EXPECT_EQ(ResultOfPacket(cut, endpoint), AAAD_ERR_MALFORMED) << size;
                Bytes foreign(size, 0xFF);
                EXPECT_EQ(ResultOfPacket(foreign, endpoint), AAAD_ERR_MALFORMED) << size;
            }
            RawClient empty(endpoint);
            empty.Send({});
            EXPECT_TRUE(empty.IsClosedWithin(20000));
        }
        EXPECT_EQ(ResultOfPacket(whole), AAAD_ERR_DENIED);
    });
    ExpectUnchanged();
}

/// Another process that does something as a stranger until the object goes.
class StrangerProcess {
  public:
    explicit StrangerProcess(const std::function<void()>& prepare,
                             const std::function<void()>& again = {}) {
        int ready[2];
        if (pipe(ready) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            rlimit files{};
            getrlimit(RLIMIT_NOFILE, &files);
            files.rlim_cur = files.rlim_max;
            setrlimit(RLIMIT_NOFILE, &files);
            if (setgid(kStrangeGroup) != 0 || setuid(kNobody) != 0) _exit(120);
            prepare();
            if (write(ready[1], "r", 1) != 1) _exit(121);
            for (;;) {
                if (again) {
                    again();
                } else {
                    pause();
                }
            }
        }
        close(ready[1]);
        char byte;
        ready_ = read(ready[0], &byte, 1) == 1;
        close(ready[0]);
    }
    ~StrangerProcess() {
        if (pid_ <= 0) return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    StrangerProcess(const StrangerProcess&) = delete;

    bool Ready() const { return ready_; }

  private:
    pid_t pid_ = -1;
    bool ready_ = false;
};

TEST_F(DaemonAccess, ThousandIdleConnectionsToEachEndpointStopNobody) {
    const StrangerProcess idle([] {
        static std::vector<RawClient> connections;
        for (int i = 0; i < 1000; ++i) {
            for (const uint16_t endpoint : kEndpoints) connections.emplace_back(endpoint);
        }
    });
    ASSERT_TRUE(idle.Ready());
    EXPECT_EQ(CreateDomain("alive"), DOM_OK);
    EXPECT_TRUE(GetDomain("alive"));
    EXPECT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("alive")).serial, 2u);
}

TEST_F(DaemonAccess, ClientsThatReadNothingStopNobody) {
    const StrangerProcess deaf([] {
        static std::vector<RawClient> connections;
        const Message read(DOM_EncodeDomainName("corp"));
        const Bytes packet = Headed(read.get(), DOM_OP_GET);
        for (int i = 0; i < 300; ++i) {
            for (const uint16_t endpoint : kEndpoints) {
                connections.emplace_back(endpoint);
                connections.back().Send(packet);
            }
        }
    });
    ASSERT_TRUE(deaf.Ready());
    EXPECT_EQ(CreateDomain("alive"), DOM_OK);
    EXPECT_TRUE(GetDomain("alive"));
    EXPECT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("alive")).serial, 2u);
}

TEST_F(DaemonAccess, FloodOfRefusedChangesStopsNobodyAndDoesNotFillTheLog) {
    const auto flood = [](uint16_t endpoint) {
        return [endpoint] {
            static const Bytes change = [] {
                const Message body(DOM_EncodeDomainName("flood"));
                return Headed(body.get(), DOM_OP_SET);
            }();
            RawClient client(endpoint);
            if (client.Connected()) client.Send(change);
        };
    };
    const auto begin = std::chrono::steady_clock::now();
    {
        const StrangerProcess first([] {}, flood(DOM_LIPC_SUB_ENDPOINT));
        const StrangerProcess second([] {}, flood(DOM_LIPC_SUB_ENDPOINT));
        const StrangerProcess third([] {}, flood(DOM_LIPC_RECORD_SUB_ENDPOINT));
        for (int i = 0; i < 10; ++i) {
            ASSERT_EQ(CreateDomain("alive-" + std::to_string(i)), DOM_OK);
            ASSERT_EQ(SendRecord(DOM_RECORD_ONLINE_FAIL, SampleRecord("alive")).result, DOM_OK);
        }
    }
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin)
            .count();
    EXPECT_FALSE(GetDomain("flood"));
    EXPECT_EQ(CountDomains(), 12u);
    EXPECT_GE(LinesWith("change refused"), 1);
    EXPECT_LE(LinesWith("change refused"), 10 * (seconds + 2));
}

unsigned ModeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

class DaemonFileModes : public ::testing::TestWithParam<unsigned> {};

INSTANTIATE_TEST_SUITE_P(Umasks, DaemonFileModes, ::testing::Values(0u, 022u, 0777u),
                         [](const auto& mask) {
                             return mask.param == 0     ? "Nothing"
                                    : mask.param == 022 ? "Writing"
                                                        : "Everything";
                         });

// The umask of whoever starts the daemon neither opens nor closes anything.
TEST_P(DaemonFileModes, AreTheDaemonsOwn) {
    DaemonProcess daemon;
    ASSERT_TRUE(daemon.Start({}, [] { umask(GetParam()); }));
    ASSERT_EQ(CreateDomain("corp"), DOM_OK);
    const std::string run = daemon.RunDir();
    const std::string state = daemon.StateDir();
    EXPECT_EQ(ModeOf(state), 0750u);
    EXPECT_EQ(ModeOf(state + "/DOM_DB"), 0750u);
    EXPECT_EQ(ModeOf(state + "/aaad.lock"), 0600u);
    EXPECT_EQ(ModeOf(run), 0755u);
    EXPECT_EQ(ModeOf(run + "/gRECORD"), 0750u);
    EXPECT_EQ(ModeOf(run + "/aaad.lock"), 0600u);
    EXPECT_EQ(ModeOf(run + "/lipc-660c-0080.sock"), 0666u);
    EXPECT_EQ(ModeOf(run + "/lipc-660c-0081.sock"), 0666u);
    for (const std::string& database : {state + "/DOM_DB", run + "/gRECORD"}) {
        for (const char* file : {"/data.mdb", "/lock.mdb"}) {
            EXPECT_EQ(ModeOf(database + file) & 07, 0u) << database << file;
            EXPECT_EQ(ModeOf(database + file) & 0600, 0600u) << database << file;
        }
    }
    // Whatever else lies in the run directory belongs to the daemon alone.
    for (const auto& entry : std::filesystem::directory_iterator(run)) {
        if (entry.is_socket()) continue;
        EXPECT_EQ(ModeOf(entry.path()) & 07, 0u) << entry.path();
    }
}

TEST_F(DaemonAccess, StrangersReachNoFileOfTheDaemon) {
    const std::string run = daemon_.RunDir();
    const std::string state = daemon_.StateDir();
    const pid_t daemon = daemon_.Pid();
    AsStranger([&] {
        for (const std::string& path :
             {state, state + "/DOM_DB/data.mdb", state + "/aaad.lock", run + "/aaad.lock",
              run + "/gRECORD", run + "/gRECORD/data.mdb"}) {
            EXPECT_NE(access(path.c_str(), R_OK), 0) << path;
            EXPECT_NE(access(path.c_str(), W_OK), 0) << path;
        }
        const std::string socket = run + "/lipc-660c-0080.sock";
        EXPECT_NE(unlink(socket.c_str()), 0);
        EXPECT_NE(rename(socket.c_str(), (run + "/mine.sock").c_str()), 0);
        EXPECT_NE(access(run.c_str(), W_OK), 0);
        EXPECT_LT(LIPC_ServerOpen(DOM_LIPC_ENDPOINT, DOM_LIPC_SUB_ENDPOINT, 0666), 0);
        EXPECT_NE(kill(daemon, SIGTERM), 0);
    });
    ExpectUnchanged();
}

}  // namespace
