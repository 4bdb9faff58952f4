// The library and the real platform under load in one process, as the daemon uses them: two role
// threads change their tables and the database while eight threads read and ask. The thread
// sanitizer reports what is used without its lock; elsewhere the test shows that nobody hangs and
// that the roles agree at the end.
#include <aaadom/aaadom.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>
#include <platform/dbm.h>
#include <platform/lipc.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kLoad{2000};
constexpr int kDomains = 24;
constexpr int kClients = 8;

thread_local uint32_t role_of_this_thread = 0;

struct MessageDestroyer {
    void operator()(TLV_MSG* message) const { TLV_Destroy(message); }
};
using Message = std::unique_ptr<TLV_MSG, MessageDestroyer>;

std::string Name(int number) {
    return "domain-" + std::to_string(number % kDomains);
}

/// A thread that does what it is told while the teller waits: the working thread of a daemon.
class Worker {
  public:
    Worker() : thread_([this] { Loop(); }) {}
    ~Worker() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            stop_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }
    void Run(const std::function<void()>& work) {
        std::unique_lock<std::mutex> lock(mutex_);
        work_ = &work;
        changed_.notify_all();
        changed_.wait(lock, [this] { return work_ == nullptr; });
    }

  private:
    void Loop() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return work_ != nullptr || stop_; });
            if (work_ == nullptr) return;
            lock.unlock();
            (*work_)();
            lock.lock();
            work_ = nullptr;
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    const std::function<void()>* work_ = nullptr;
    bool stop_ = false;
    std::thread thread_;
};

/// The n-th change of the load, of every kind that both roles take.
TLV_MSG* ChangeNumber(int n) {
    const std::string name = Name(n / 7);
    switch (n % 7) {
        case 0:
            return DOM_EncodeDomainName(name.c_str());
        case 1:
            return DOM_EncodeState(name.c_str(), static_cast<uint16_t>(n & 1));
        case 2:
            return DOM_EncodeDefaultDomain(name.c_str(), 0);
        case 3:
            return DOM_EncodeUserAddrType(name.c_str(), static_cast<uint32_t>(n));
        case 4:
            return DOM_EncodeDeviceID(static_cast<uint32_t>(n));
        case 5:
            return DOM_EncodeAcctDualStackMode(name.c_str(), static_cast<uint32_t>(n & 1));
        default:
            return DOM_EncodeDomainName(Name(n / 7 + kDomains / 2).c_str());
    }
}

class RoleThreads : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name =
            (std::filesystem::temp_directory_path() / "role-threads-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        root_ = name;
        ASSERT_EQ(DBM_SetRoot(root_.c_str(), root_.c_str()), 0u);
        ASSERT_EQ(LIPC_SetRuntimeDir(root_.c_str()), 0u);
        AAADService service{};
        service.is_cfg_thread = [] { return role_of_this_thread; };
        service.sync_msg_to_cfg_thr = [](uint32_t, uint32_t, TLV_MSG* msg) {
            TLV_Destroy(msg);
            return DOM_OK;
        };
        DOM_SetAAADService(&service);
        handle_ = DOM_CreateDomainDBM();
        ASSERT_NE(handle_, DBM_INVALID_HANDLE);
        DOM_SetDomainDBMHandle(handle_);
        DOM_ita_db_SetGlobalHandle(handle_);
        DOM_Rec_db_SetGlobalHandle(handle_);
        worker_ = std::make_unique<Worker>();
        worker_->Run([] { ASSERT_EQ(DOM_DomainInfoTableInit(), DOM_OK); });
    }
    void TearDown() override {
        worker_->Run([] { (void)DOM_DomainInfoTableFini(); });
        worker_.reset();
        DOM_SetDomainDBMHandle(DBM_INVALID_HANDLE);
        DOM_ita_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        DOM_Rec_db_SetGlobalHandle(DBM_INVALID_HANDLE);
        (void)DBM_Close(handle_);
        DOM_ResetAAADService();
        std::filesystem::remove_all(root_);
    }

    /// One batch as a daemon makes it: the configuration role in a transaction, then the working
    /// role, then the commit.
    void Batch(int first) {
        ASSERT_EQ(DBM_Begin(handle_), 0u);
        std::vector<Message> changes;
        for (int n = first; n < first + 7; ++n) {
            const Message body(ChangeNumber(n));
            const uint32_t operation = n % 63 == 62 ? DOM_OP_DELETE : DOM_OP_SET;
            changes.emplace_back(AAA_AddOpHead(operation, body.get()));
            (void)DOM_RestoreData(changes.back().get(), 1, 0, 0, nullptr, nullptr);
        }
        worker_->Run([&] {
            for (const Message& change : changes) {
                const Message headed(
                    AAA_AddAaadHead(DOM_AAAD_HEAD_BATCH, DOM_AAAD_HEAD_SUB_TYPE, change.get()));
                (void)DOM_UpdateCfgData(headed.get(), 0, 0, nullptr, nullptr);
            }
            ChangeWorkingAlone(first);
        });
        ASSERT_EQ(DBM_Commit(handle_), 0u);
    }
    static void ChangeWorkingAlone(int n) {
        const RecordSwitches switches = {static_cast<uint16_t>(n & 1), 0, 1, 0};
        const BackupMethods methods = {1, static_cast<uint16_t>(n & 1), 0};
        MethodEntry scheme[DOM_METHODS] = {};
        DOM_SetRecordEnableInfoAll(&switches);
        DOM_SetAAAUserRecordBackupMethod(&methods);
        (void)DOM_ita_policy_Create("policy");
        (void)DOM_ita_policy_SetAcctScheme("policy", scheme);
        if (n % 3 == 0) (void)DOM_ita_policy_Delete("policy");
        (void)DOM_Rec_policy_SetAcctScheme(DOM_REC_POLICY_CONNECTION, scheme);
        (void)DOM_AddNasIdBindVlanId("profile", n % 2 == 0 ? "one" : "two", 7);
    }
    /// What a client's thread may use at any time: whatever takes its lock itself.
    void ReadAndAsk(int client, int n) const {
        const std::string name = Name(n + client);
        char text[DOM_NAME_SIZE];
        AuthorAttr attributes;
        MethodList list;
        (void)DOM_IsDomainExist(name.c_str());
        (void)DOM_GetState(name.c_str());
        (void)DOM_GetUserAddrType(name.c_str());
        (void)DOM_GetSessionTime(name.c_str());
        (void)DOM_GetDomainAuthorAttrByName(name.c_str(), &attributes);
        DOM_GetDefaultDomainName(text);
        (void)DOM_ita_IsPolicyExist("policy");
        (void)DOM_ita_policy_GetMethodList("policy", &list);
        (void)DOM_Rec_policy_GetMethodList(DOM_REC_POLICY_CONNECTION, &list);
        (void)DOM_GetNasIdByProfileAndVlanId("profile", 7, text);
        (void)DOM_GetOnlineOffLineRecordEnableInfo();
        (void)DOM_GetAllRecordBackupMethodToUint();
        if (n % 16 == 0) DOM_AAASetDebugFlag(1u << client);
        if (n % 16 == 8) DOM_AAAResetDebugFlag(1u << client);
        (void)DOM_AAAGetDebugFlag();
        DOM_DestroyDomain(DOM_GetDomainFromDBByName(handle_, name.c_str()));
        const Message whole(DOM_EncodeDomainName(name.c_str()));
        const Message headed(AAA_AddOpHead(DOM_OP_GET, whole.get()));
        uint32_t operation = 0;
        const Message again(AAA_DelOpHead(headed.get(), &operation));
        // A request: nobody serves this socket, and every client looks for it.
        if (n % 8 == 0) {
            uint32_t count = 0;
            (void)MOR_GetDomainCount(&count);
        }
    }

    std::string root_;
    DBM_HANDLE handle_ = DBM_INVALID_HANDLE;
    std::unique_ptr<Worker> worker_;
};

TEST_F(RoleThreads, TwoRolesChangeWhileEightClientsRead) {
    std::atomic<bool> stop{false};
    std::atomic<uint64_t> rounds{0};
    std::vector<std::thread> clients;
    int batches = 0;
    std::thread configuration([&] {
        role_of_this_thread = 1;
        ASSERT_EQ(DOM_DomainInfoTableInit(), DOM_OK);
        worker_->Run([] { (void)DOM_Rec_CreatePolicy(DOM_REC_POLICY_CONNECTION); });
        for (int client = 0; client < kClients; ++client) {
            clients.emplace_back([&, client] {
                for (int n = 0; !stop; ++n, ++rounds) ReadAndAsk(client, n);
            });
        }
        const auto end = std::chrono::steady_clock::now() + kLoad;
        for (; std::chrono::steady_clock::now() < end; ++batches) Batch(batches * 7);
        stop = true;
        for (std::thread& client : clients) client.join();

        for (int n = 0; n < kDomains; ++n) {
            const std::string name = Name(n);
            const uint32_t known = DOM_IsDomainExist(name.c_str());
            uint32_t known_to_working = 2;
            worker_->Run([&] { known_to_working = DOM_IsDomainExist(name.c_str()); });
            EXPECT_EQ(known, known_to_working) << name;
            DomainInfo* saved = DOM_GetDomainFromDBByName(handle_, name.c_str());
            EXPECT_EQ(known == 1, saved != nullptr) << name;
            DOM_DestroyDomain(saved);
        }
        (void)DOM_DomainInfoTableFini();
    });
    configuration.join();
    EXPECT_GT(batches, 0);
    EXPECT_GT(rounds, 0u);
    RecordProperty("batches", batches);
    RecordProperty("rounds", static_cast<int>(rounds));
}

}  // namespace
