#include "daemon.h"

#include <aaadom/accounting_policy_codec.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/recording_policy.h>
#include <platform/dbm.h>
#include <platform/lipc.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "administrators.h"
#include "command_failures.h"
#include "configuration.h"
#include "endpoint.h"
#include "promise.h"
#include "record_reports.h"
#include "record_store.h"
#include "roles.h"
#include "stage.h"
#include "working_thread.h"

namespace fuzz {
namespace {

constexpr uint32_t kMostRecords = 4;  // so that the oldest ones are dropped

/// A new directory for the databases and sockets of one daemon.
class Place {
  public:
    Place() : path(Daemon::RunDirectory()) {
        std::filesystem::create_directory(path);
        FUZZ_PROMISE(DBM_SetRoot(path.c_str(), path.c_str()) == 0);
        FUZZ_PROMISE(LIPC_SetRuntimeDir(path.c_str()) == 0);
    }
    ~Place() { std::filesystem::remove_all(path); }
    const std::string path;
};

class Database {
  public:
    Database() : handle(DOM_CreateDomainDBM()) {
        FUZZ_PROMISE(handle != DBM_INVALID_HANDLE);
        Install(handle);
    }
    ~Database() {
        Install(DBM_INVALID_HANDLE);
        (void)DBM_Close(handle);
    }
    const DBM_HANDLE handle;

  private:
    static void Install(DBM_HANDLE handle) {
        DOM_SetDomainDBMHandle(handle);
        DOM_ita_db_SetGlobalHandle(handle);
        DOM_Rec_db_SetGlobalHandle(handle);
    }
};

struct Queue {
    ~Queue() { close(fd); }
    const int fd = epoll_create1(EPOLL_CLOEXEC);
};

}  // namespace

struct Daemon::Parts {
    Parts() {
        aaad::TakeRole(aaad::Role::kConfiguration);
        configuration.Start();
    }

    Place place;
    aaad::Administrators administrators{""};
    aaad::Callbacks callbacks;
    Database database;
    aaad::RecordStore records{place.path, kMostRecords};
    aaad::CommandFailures failures;
    aaad::WorkingThread working;
    aaad::Configuration configuration{database.handle, place.path, administrators, working,
                                      records};
    aaad::RecordReports reports{records, administrators};
    Queue queue;
    aaad::Endpoint requests{queue.fd, DOM_LIPC_SUB_ENDPOINT, "request socket", place.path};
    aaad::Endpoint records_in{queue.fd, DOM_LIPC_RECORD_SUB_ENDPOINT, "record socket", place.path};
};

Daemon::Daemon() : parts_(std::make_unique<Parts>()) {}

Daemon::~Daemon() {
    aaad::TakeRole(aaad::Role::kConfiguration);
}

Message Daemon::Ask(bool record_socket, Bytes packet) {
    LIPC_ADDRESS address{};
    address.length = sizeof address;
    address.family = DOM_LIPC_FAMILY;
    address.endpoint = DOM_LIPC_ENDPOINT;
    address.sub_endpoint = record_socket ? DOM_LIPC_RECORD_SUB_ENDPOINT : DOM_LIPC_SUB_ENDPOINT;
    const aaad::Connection client(LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL));
    FUZZ_PROMISE(LIPC_Connect(client.Descriptor(), &address, sizeof address) == 0);
    // A packet without bytes is the end of a connection.
    if (packet.empty() || send(client.Descriptor(), packet.data(), packet.size(), MSG_NOSIGNAL) < 0)
        return nullptr;
    std::vector<aaad::Request> batch;
    (record_socket ? parts_->records_in : parts_->requests).Accept(batch);
    FUZZ_PROMISE(batch.size() == 1);
    Decide(record_socket, batch);
    Message reply(
        TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(client.Descriptor()), 0));
    FUZZ_PROMISE(reply);
    return reply;
}

void Daemon::Decide(bool record_socket, std::vector<aaad::Request>& batch) {
    aaad::TakeRole(record_socket ? aaad::Role::kWorking : aaad::Role::kConfiguration);
    if (record_socket) {
        parts_->reports.Serve(batch);
    } else {
        parts_->configuration.Serve(batch);
    }
    aaad::Endpoint& endpoint = record_socket ? parts_->records_in : parts_->requests;
    for (aaad::Request& request : batch) endpoint.Answer(request);
    batch.clear();
    aaad::TakeRole(aaad::Role::kConfiguration);
    for (aaad::Message& mail : parts_->callbacks.Mail().TakeAll())
        parts_->configuration.TakeMail(std::move(mail));
}

std::string Daemon::RunDirectory() {
    return TemporaryDirectory() + "/daemon";
}

void Daemon::ServeUntil(int stop_fd) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = stop_fd;
    FUZZ_PROMISE(epoll_ctl(parts_->queue.fd, EPOLL_CTL_ADD, stop_fd, &event) == 0);
    std::vector<aaad::Request> batch;
    for (;;) {
        const int count = epoll_wait(parts_->queue.fd, &event, 1, -1);
        FUZZ_PROMISE(count == 1 || errno == EINTR);
        if (count != 1) continue;
        if (event.data.fd == stop_fd) return;
        for (const bool record_socket : {false, true}) {
            aaad::Endpoint& endpoint = record_socket ? parts_->records_in : parts_->requests;
            if (endpoint.IsServer(event.data.fd)) {
                endpoint.Accept(batch);
            } else {
                endpoint.Readable(event.data.fd, batch);
            }
            if (!batch.empty()) Decide(record_socket, batch);
        }
    }
}

}  // namespace fuzz
