#include "fault_daemon/daemon.h"

#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/recording_policy.h>
#include <platform/aaa_tlv.h>
#include <platform/lipc.h>

#include <exception>
#include <list>
#include <optional>

#include "daemon/administrators.h"
#include "daemon/command_failures.h"
#include "daemon/configuration.h"
#include "daemon/endpoint.h"
#include "daemon/failure.h"
#include "daemon/record_reports.h"
#include "daemon/record_store.h"
#include "daemon/roles.h"
#include "daemon/working_thread.h"
#include "fakes/message.h"
#include "fault_daemon/rows.h"

namespace fault_daemon {
namespace {

constexpr char kDirectory[] = "/nonexistent/aaad";
constexpr uint32_t kMostRecords = 1;  // so that the oldest ones are dropped
constexpr int kNoQueue = -1;          // the fake's descriptors are in none
constexpr int kNobody = -1;
constexpr int kTurns = 3;  // one for a connection that could not be taken, one to spare

template <typename Step>
auto Quietly(Step&& step) {
    const fake::Quiet quiet;
    return step();
}

struct Database {
    Database() : handle(DOM_CreateDomainDBM()) {
        if (handle == DBM_INVALID_HANDLE)
            throw aaad::Failure("configuration database", "it cannot be opened", "Make room");
        Install(handle);
    }
    ~Database() {
        Install(DBM_INVALID_HANDLE);
        (void)DBM_Close(handle);
    }
    static void Install(DBM_HANDLE handle) {
        DOM_SetDomainDBMHandle(handle);
        DOM_ita_db_SetGlobalHandle(handle);
        DOM_Rec_db_SetGlobalHandle(handle);
    }
    const DBM_HANDLE handle;
};

Reply ReplyIn(TLV_MSG* message) {
    Reply reply;
    if (message == nullptr) return reply;
    reply.image = fake::ImageOf(message);
    TLV_ITER* first = TLV_GetFirst(message);
    if (TLV_GetTypeByIterator(message, first) == DOM_REPLY_KIND_DATA) {
        reply.result = kData;
        return reply;
    }
    const aaad::Message body(AAA_GetSubTlv(message, first));
    TLV_ITER* result = TLV_GetIteratorByType(body.get(), DOM_TLV_RESULT);
    reply.result = AAA_GetUINTTlvValue(body.get(), result);
    return reply;
}

class Client {
  public:
    explicit Client(Socket socket) {
        LIPC_ADDRESS address{};
        address.length = sizeof address;
        address.family = DOM_LIPC_FAMILY;
        address.endpoint = DOM_LIPC_ENDPOINT;
        address.sub_endpoint =
            socket == Socket::kRecords ? DOM_LIPC_RECORD_SUB_ENDPOINT : DOM_LIPC_SUB_ENDPOINT;
        (void)LIPC_Connect(fd_, &address, sizeof address);
    }
    ~Client() { LIPC_Close(fd_); }
    Client(const Client&) = delete;

    void Send(TLV_MSG* message) {
        (void)TLV_Flush(message, TLV_FORM_DESCRIPTOR, 0, static_cast<uintptr_t>(fd_));
    }
    /// The first bytes alone.
    void Send(TLV_MSG* message, size_t bytes) {
        (void)fake::FlushToDescriptor(fd_, 0, fake::ImageOf(message).substr(0, bytes));
    }
    /// The daemon's end, which the fake makes when a client connects.
    int32_t Accepted() const { return fd_ + 1; }
    Reply Receive() {
        const aaad::Message message(
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd_), 0));
        return ReplyIn(message.get());
    }

  private:
    const int32_t fd_ = LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL);
};

}  // namespace

struct Daemon::Parts {
    Parts() {
        aaad::TakeRole(aaad::Role::kConfiguration);
        configuration.Start();
    }

    aaad::Administrators administrators{""};
    aaad::Callbacks callbacks;
    Database database;
    aaad::RecordStore records{kDirectory, kMostRecords};
    aaad::CommandFailures failures;
    aaad::WorkingThread working;
    aaad::Configuration configuration{database.handle, kDirectory, administrators, working,
                                      records};
    aaad::RecordReports reports{records, administrators};
    aaad::Endpoint requests{kNoQueue, DOM_LIPC_SUB_ENDPOINT, "request socket", kDirectory};
    aaad::Endpoint records_in{kNoQueue, DOM_LIPC_RECORD_SUB_ENDPOINT, "record socket", kDirectory};
    std::vector<aaad::Request> batch;

    /// As the daemon's loops do it.
    void Turn(Socket socket, int late_fd);
};

void Daemon::Parts::Turn(Socket socket, int late_fd) {
    const bool is_record = socket == Socket::kRecords;
    aaad::Endpoint& endpoint = is_record ? records_in : requests;
    aaad::TakeRole(is_record ? aaad::Role::kWorking : aaad::Role::kConfiguration);
    if (late_fd >= 0) endpoint.Readable(late_fd, batch);
    endpoint.Accept(batch);
    if (!batch.empty()) {
        if (is_record) {
            reports.Serve(batch);
        } else {
            configuration.Serve(batch);
        }
        for (aaad::Request& request : batch) endpoint.Answer(request);
        batch.clear();
    }
    aaad::TakeRole(aaad::Role::kConfiguration);
    for (aaad::Message& mail : callbacks.Mail().TakeAll()) configuration.TakeMail(std::move(mail));
}

namespace {
/// A start that fails leaves the thread in the role that it had.
struct RoleOnFailure {
    ~RoleOnFailure() {
        if (std::uncaught_exceptions() > 0) aaad::TakeRole(aaad::Role::kWorking);
    }
};
}  // namespace

Daemon::Daemon(bool refusable) {
    if (refusable) {
        const Window window;
        const RoleOnFailure role;
        parts_ = std::make_unique<Parts>();
    } else {
        const fake::Quiet quiet;
        parts_ = std::make_unique<Parts>();
    }
    parts_->batch.reserve(aaad::kBatchSize);
}

Daemon::~Daemon() {
    aaad::TakeRole(aaad::Role::kConfiguration);
    parts_.reset();
    aaad::TakeRole(aaad::Role::kWorking);
}

void Daemon::Stop() {
    aaad::TakeRole(aaad::Role::kConfiguration);
    {
        const Window window;
        parts_.reset();
    }
    aaad::TakeRole(aaad::Role::kWorking);
}

std::vector<Reply> Daemon::ExchangeAll(const std::vector<const Row*>& rows) {
    const Socket socket = rows.front()->socket;
    std::list<Client> clients;
    Quietly([&] {
        for (const Row* row : rows) {
            const aaad::Message message(row->Message());
            clients.emplace_back(socket).Send(message.get(), row->bytes_sent);
        }
    });
    {
        const Window window;
        for (int turn = 0; turn < kTurns; ++turn) parts_->Turn(socket, kNobody);
    }
    return Quietly([&] {
        std::vector<Reply> replies;
        for (Client& client : clients) replies.push_back(client.Receive());
        clients.clear();
        return replies;
    });
}

Reply Daemon::ExchangeLate(Socket socket, TLV_MSG* message) {
    std::optional<Client> client;
    Quietly([&] { client.emplace(socket); });
    {
        const Window window;
        for (int turn = 0; turn < kTurns; ++turn) parts_->Turn(socket, kNobody);
    }
    Quietly([&] { client->Send(message); });
    {
        const Window window;
        parts_->Turn(socket, client->Accepted());
    }
    return Quietly([&] {
        Reply reply = client->Receive();
        client.reset();
        return reply;
    });
}

}  // namespace fault_daemon
