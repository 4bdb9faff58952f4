#include "client.h"

#include <aaadom/aaad_results.h>
#include <platform/aaa_tlv.h>
#include <platform/lipc.h>

#include <cerrno>
#include <cstring>
#include <new>

namespace aaactl {
namespace {

std::string Hex(uint32_t code) {
    char text[16];
    snprintf(text, sizeof text, code > 255 ? "0x%08X" : "%u", code);
    return text;
}

/// The library's texts end there.
void RefuseZeroByte(const std::string& object, const std::string& text) {
    if (text.find('\0') == std::string::npos) return;
    RefuseUsage(object, "it holds a zero byte", "Give a text without one");
}

/// A connection to the daemon, closed with its owner.
class Connection {
  public:
    explicit Connection(uint16_t sub_endpoint)
        : fd_(LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL)) {
        const LIPC_ADDRESS address{
            DOM_LIPC_ADDR_LEN, DOM_LIPC_FAMILY, DOM_LIPC_ENDPOINT, sub_endpoint, {}};
        error_ = fd_ >= 0 && LIPC_Connect(fd_, &address, sizeof address) == 0 ? 0 : errno;
    }
    ~Connection() { LIPC_Close(fd_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    int Error() const { return error_; }
    Message Exchange(TLV_MSG* request) const {
        const auto fd = static_cast<uintptr_t>(fd_);
        if (error_ != 0 || TLV_Flush(request, TLV_FORM_DESCRIPTOR, DOM_LIPC_WAIT, fd) == 0) {
            return nullptr;
        }
        return Message(TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, fd, DOM_LIPC_WAIT));
    }

  private:
    const int fd_;
    int error_ = 0;
};

/// Why no answer came, found out by connecting once more.
std::string WhyUnreachable(const std::string& run_dir, uint32_t timeout, uint16_t sub_endpoint) {
    const std::string socket =
        sub_endpoint == DOM_LIPC_SUB_ENDPOINT ? "request socket in " : "record socket in ";
    const int error = Connection(sub_endpoint).Error();
    switch (error) {
        case ENOENT:
            return "there is no " + socket + run_dir;
        case ECONNREFUSED:
            return "nobody serves the " + socket + run_dir;
        case EACCES:
            return "the " + socket + run_dir + " may not be used by this user";
        case 0:
        case EAGAIN:
        case EINTR:
            return "no answer within " + std::to_string(timeout) + " ms in " + run_dir;
        default:
            return "the " + socket + run_dir + ": " + strerror(error);
    }
}

Failure NoAnswer(const std::string& why, const std::string& afterwards) {
    return Failure(kExitUnreachable, "daemon", why,
                   "Check that aaad runs (systemctl status aaad), that --run-dir is its run "
                   "directory and that --timeout leaves it time" +
                       afterwards);
}

}  // namespace

void CheckDomainName(const std::string& name) {
    const std::string object = "domain name \"" + name + "\"";
    if (name.empty())
        RefuseUsage("domain name", "it is empty", "Give a name of 1 to 255 characters");
    if (name.size() >= DOM_NAME_SIZE) {
        RefuseUsage(object, "it has " + std::to_string(name.size()) + " characters, 255 fit",
                    "Choose a shorter name");
    }
    RefuseZeroByte(object, name);
    if (DOM_CheckDomainName(name.c_str()) != DOM_OK) {
        RefuseUsage(object, "it holds one of \\ / : * ? \" < > | @",
                    "Choose a name without these characters");
    }
}

void CheckFits(const std::string& what, const std::string& text, size_t capacity) {
    RefuseZeroByte(what + " \"" + text + "\"", text);
    if (text.size() < capacity) return;
    RefuseUsage(what + " \"" + text + "\"",
                "it has " + std::to_string(text.size()) + " characters, " +
                    std::to_string(capacity - 1) + " fit",
                "Give a shorter text");
}

Failure Refused(const std::string& object, uint32_t code) {
    switch (code) {
        case AAAD_ERR_DENIED:
            return Failure(kExitRefused, object, "the daemon allows changes to administrators only",
                           "Run the command as root, as the daemon's user or as a member of its "
                           "administrators' group",
                           code);
        case AAAD_ERR_NOT_SAVED:
            return Failure(
                kExitRefused, object, "the daemon could not save the change and has undone it",
                "See the daemon's log; make room on the disk of its state directory", code);
        default:
            return Failure(kExitRefused, object,
                           "the daemon does not take this value (result " + Hex(code) + ")",
                           "Compare with aaactl domain show and aaactl global show, and see the "
                           "results in aaad(8)",
                           code);
    }
}

void Client::SetRunDir(const std::string& directory) {
    run_dir_ = directory;
    if (LIPC_SetRuntimeDir(directory.c_str()) != 0) {
        RefuseUsage("run directory \"" + directory + "\"", "the path is too long or empty",
                    "Give the directory that the daemon was started with");
    }
}

void Client::SetTimeout(uint32_t milliseconds) {
    timeout_ = milliseconds;
    (void)LIPC_SetWaitLimit(milliseconds);
}

Message Client::Send(TLV_MSG* request, uint32_t operation, uint16_t* kind) {
    Message owned(request);
    if (!owned) {
        throw Failure(kExitRefused, "request", "it could not be built: out of memory",
                      "Free memory and try again");
    }
    Message reply(DOM_lipc_SendCfgMsg(owned.get(), operation, kind));
    if (!reply) {
        const bool change = operation != DOM_OP_GET && operation != DOM_OP_GET_NEXT;
        throw NoAnswer(WhyUnreachable(run_dir_, timeout_, DOM_LIPC_SUB_ENDPOINT),
                       change ? "; then look whether the change was made" : "");
    }
    return reply;
}

uint32_t Client::Change(TLV_MSG* request, uint32_t operation, Message* answer) {
    Message reply = Send(request, operation, nullptr);
    uint32_t result = DOM_RESULT_MISSING;
    (void)DOM_lipc_ReplyMsgProc(reply.get(), &result);  // always 0
    if (answer != nullptr) *answer = std::move(reply);
    return result;
}

uint32_t Client::Report(TLV_MSG* report, Message* answer) {
    const Message owned(report);
    if (!owned) throw std::bad_alloc();
    const Message reply = Connection(DOM_LIPC_RECORD_SUB_ENDPOINT).Exchange(owned.get());
    TLV_ITER* first = reply ? TLV_GetFirst(reply.get()) : nullptr;
    Message body(first != nullptr ? AAA_GetSubTlv(reply.get(), first) : nullptr);
    if (!body) {
        throw NoAnswer(WhyUnreachable(run_dir_, timeout_, DOM_LIPC_RECORD_SUB_ENDPOINT),
                       "; then look whether the record is there");
    }
    uint32_t result = DOM_RESULT_MISSING;
    (void)DOM_lipc_ReplyMsgProc(body.get(), &result);  // always 0
    if (answer != nullptr) *answer = std::move(body);
    return result;
}

void Client::ChangeDomain(const std::string& domain, TLV_MSG* request, uint32_t operation) {
    const uint32_t result = Change(request, operation);
    if (result == DOM_OK) return;
    if (result == DOM_ERR_FAILED && !FindDomain(domain)) {
        throw Failure(kExitRefused, "domain \"" + domain + "\"", "there is no such domain",
                      "Create it with: aaactl domain create " + domain, result);
    }
    throw Refused("domain \"" + domain + "\"", result);
}

Reply Client::Read(TLV_MSG* request, uint32_t operation) {
    uint16_t kind = 0;
    Reply reply{Send(request, operation, &kind)};
    if (kind == DOM_REPLY_KIND_RESULT) {
        (void)DOM_lipc_ReplyMsgProc(reply.data.get(), &reply.refusal);  // always 0
        reply.data.reset();
    }
    return reply;
}

Message Client::NeedData(const std::string& what, TLV_MSG* request) {
    Reply reply = Read(request);
    if (!reply.data) throw Refused(what, reply.refusal);
    return std::move(reply.data);
}

namespace {

Failure Unreadable(const std::string& what) {
    return Failure(kExitRefused, what, "the daemon's answer cannot be read",
                   "Use the aaactl of the daemon's release");
}

}  // namespace

DomainPtr Client::FindDomain(const std::string& name) {
    Reply reply = Read(DOM_EncodeDomainName(name.c_str()));
    if (!reply.data) {
        if (reply.refusal == AAAD_ERR_DENIED)
            throw Refused("domain \"" + name + "\"", reply.refusal);
        return nullptr;
    }
    DomainPtr domain(DOM_DecodeDomain(reply.data.get()));
    if (!domain) throw Unreadable("domain \"" + name + "\"");
    return domain;
}

DomainPtr Client::NeedDomain(const std::string& name) {
    DomainPtr domain = FindDomain(name);
    if (!domain) {
        throw Failure(kExitRefused, "domain \"" + name + "\"", "there is no such domain",
                      "See aaactl domain list");
    }
    return domain;
}

std::vector<DomainPtr> Client::DomainsByName() {
    std::vector<DomainPtr> domains;
    std::string name;
    for (;;) {
        Reply reply = Read(DOM_EncodeDomainNameInfo(name.c_str()), DOM_OP_GET_NEXT);
        if (!reply.data) {
            if (reply.refusal != DOM_WALK_NONE) throw Refused("list of domains", reply.refusal);
            return domains;
        }
        DomainPtr domain(DOM_DecodeDomain(reply.data.get()));
        if (!domain) throw Unreadable("list of domains");
        // Names ascend, so a walk ends whatever other clients change meanwhile.
        if (!name.empty() && name >= domain->name) throw Unreadable("list of domains");
        name = domain->name;
        domains.push_back(std::move(domain));
    }
}

std::vector<DomainMibRow> Client::DomainsByRow() {
    std::vector<DomainMibRow> rows;
    std::string name;
    for (;;) {
        Reply reply =
            Read(DOM_EncodeDomainNameAndLen(name.c_str(), static_cast<uint32_t>(name.size())),
                 DOM_OP_GET_NEXT);
        // The row walk ends with status 8 on an empty table and 9 behind the last row.
        if (!reply.data) {
            if (reply.refusal != DOM_WALK_NONE && reply.refusal != DOM_WALK_NO_MESSAGE) {
                throw Refused("list of domains", reply.refusal);
            }
            return rows;
        }
        DomainMibRow row{};
        uint64_t flags = 0;
        if (DOM_DecodeDomainInfoTable(reply.data.get(), &row, &flags) != DOM_OK) {
            throw Unreadable("list of domains");
        }
        const std::string next = row.domain_name;
        if (next.size() < name.size() || (next.size() == name.size() && next <= name)) {
            throw Unreadable("list of domains");
        }
        name = next;
        rows.push_back(row);
    }
}

namespace {

/// A request that consists of its message code alone.
TLV_MSG* CodeAlone(uint32_t code) {
    Message request(TLV_Create());
    if (!request || TLV_Append_UINT(request.get(), DOM_TLV_MSG_CODE, code) != 0) return nullptr;
    return request.release();
}

}  // namespace

uint32_t Client::CountDomains() {
    Message reply = NeedData("number of domains", CodeAlone(DOM_MSG_DOMAIN_COUNT));
    uint32_t count = 0;
    if (DOM_DecodeDomainCount(reply.get(), &count) != DOM_OK) throw Unreadable("number of domains");
    return count;
}

GlobalDomain Client::ReadGlobal() {
    Message reply = NeedData("global settings", CodeAlone(DOM_MSG_GLOBAL_DOMAIN));
    GlobalDomain global{};
    uint32_t value_18 = 0;
    if (DOM_DecodeGlobalDomain(reply.get(), sizeof global.default_domain, global.default_domain,
                               sizeof global.unknown_domain, global.unknown_domain,
                               &global.device_id, &value_18) != DOM_OK) {
        throw Unreadable("global settings");
    }
    return global;
}

SessionLimits Client::ReadSessionLimits() {
    Message reply = NeedData("session limits", CodeAlone(DOM_MSG_SESSION_LIMIT));
    SessionLimits limits{};
    if (DOM_DecodeAllSessionLimit(reply.get(), &limits) != DOM_OK) {
        throw Unreadable("session limits");
    }
    return limits;
}

uint32_t Client::ReadDebugFlag() {
    Message reply = NeedData("debug flag", CodeAlone(DOM_MSG_DEBUG_FLAG));
    uint32_t flag = 0;
    if (DOM_DecodeDebugFlag(reply.get(), &flag) != DOM_OK) throw Unreadable("debug flag");
    return flag;
}

}  // namespace aaactl
