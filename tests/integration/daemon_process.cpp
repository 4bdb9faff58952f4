#include "daemon_process.h"

#include <fcntl.h>
#include <grp.h>
#include <platform/aaa_tlv.h>
#include <platform/lipc.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace daemon_test {
namespace {

constexpr char kProgram[] = AAADOM_BINARY_DIR "/daemon/aaad";
constexpr std::chrono::milliseconds kPoll{10};
constexpr std::chrono::seconds kStartLimit{60};

std::vector<char*> Arguments(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

DaemonProcess::DaemonProcess() {
    signal(SIGPIPE, SIG_IGN);
    std::string name = (std::filesystem::temp_directory_path() / "aaad-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) abort();
    root_ = name;
    chmod(root_.c_str(), 0755);  // other users connect in some tests
    state_dir_ = root_ + "/state";
    run_dir_ = root_ + "/run";
    LIPC_SetRuntimeDir(run_dir_.c_str());
    LIPC_SetWaitLimit(30000);
}

DaemonProcess::~DaemonProcess() {
    Kill();
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

std::vector<std::string> DaemonProcess::DirectoryArguments() const {
    return {"--state-dir", state_dir_, "--run-dir", run_dir_};
}

bool DaemonProcess::Start(const std::vector<std::string>& more_arguments,
                          const std::function<void()>& in_child) {
    Launch(more_arguments, in_child);
    return WaitUntilItServes();
}

void DaemonProcess::Launch(const std::vector<std::string>& more_arguments,
                           const std::function<void()>& in_child) {
    std::vector<std::string> texts = {kProgram, "--verbose"};
    for (const auto& text : DirectoryArguments()) texts.push_back(text);
    for (const auto& text : more_arguments) texts.push_back(text);
    const std::vector<char*> arguments = Arguments(texts);
    pid_ = fork();
    if (pid_ == 0) {
        if (in_child) in_child();
        execv(kProgram, arguments.data());
        _exit(127);
    }
}

bool DaemonProcess::WaitUntilItServes() {
    const auto limit = std::chrono::steady_clock::now() + kStartLimit;
    while (std::chrono::steady_clock::now() < limit) {
        uint32_t count = 0;
        if (MOR_GetDomainCount(&count) == DOM_OK) return true;
        if (!IsRunning()) return false;
        std::this_thread::sleep_for(kPoll);
    }
    return false;
}

bool DaemonProcess::IsRunning() {
    if (pid_ <= 0) return false;
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == 0) return true;
    pid_ = -1;
    return false;
}

int DaemonProcess::Wait() {
    int status = 0;
    const pid_t ended = waitpid(pid_, &status, 0);
    pid_ = -1;
    return ended > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void DaemonProcess::Kill() {
    if (pid_ <= 0) return;
    kill(pid_, SIGKILL);
    Wait();
}

int DaemonProcess::Terminate() {
    if (pid_ <= 0) return -1;
    kill(pid_, SIGTERM);
    return Wait();
}

int DaemonProcess::RunToEnd(const std::vector<std::string>& arguments, std::string& error_text) {
    std::vector<std::string> texts = {kProgram};
    for (const auto& text : arguments) texts.push_back(text);
    const std::vector<char*> pointers = Arguments(texts);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return -1;
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(null, STDOUT_FILENO);
        execv(kProgram, pointers.data());
        _exit(127);
    }
    close(ends[1]);
    error_text.clear();
    char piece[512];
    for (ssize_t length; (length = read(ends[0], piece, sizeof piece)) > 0;) {
        error_text.append(piece, static_cast<size_t>(length));
    }
    close(ends[0]);
    int status = 0;
    if (waitpid(child, &status, 0) < 0 || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

uint32_t Change(TLV_MSG* body, uint32_t operation) {
    const Message owned(body);
    uint32_t result = kNoReply;
    if (DOM_lipc_CfgMsgProc(body, operation, &result) != DOM_OK) return kNoReply;
    return result;
}

Answer Ask(TLV_MSG* body, uint32_t operation) {
    const Message owned(body);
    Answer answer;
    answer.body.reset(DOM_lipc_SendCfgMsg(body, operation, &answer.kind));
    return answer;
}

uint32_t ResultOf(const Answer& answer) {
    if (!answer.body || answer.kind != DOM_REPLY_KIND_RESULT) return kNoReply;
    uint32_t result = kNoReply;
    (void)DOM_lipc_ReplyMsgProc(answer.body.get(), &result);
    return result;
}

uint32_t CreateDomain(const std::string& name) {
    return Change(DOM_EncodeDomainName(name.c_str()));
}

uint32_t DeleteDomain(const std::string& name) {
    return Change(DOM_EncodeDomainName(name.c_str()), DOM_OP_DELETE);
}

DomainPtr GetDomain(const std::string& name) {
    uint32_t result = 0;
    return DomainPtr(MOR_GetDomain(name.c_str(), DOM_OP_GET, &result));
}

uint32_t CountDomains() {
    uint32_t count = kNoReply;
    if (MOR_GetDomainCount(&count) != DOM_OK) return kNoReply;
    return count;
}

std::vector<std::string> ListDomains() {
    std::vector<std::string> names;
    std::string name;
    for (size_t i = 0; i <= 2 * DOM_MAX_DOMAINS; ++i) {
        uint32_t result = 0;
        const DomainPtr next(MOR_GetNextDomain(name.c_str(), DOM_OP_GET_NEXT, &result));
        if (!next) break;
        name = next->name;
        names.push_back(name);
    }
    return names;
}

std::vector<SchemeKey> ListSchemeRows() {
    std::vector<SchemeKey> keys;
    SchemeKey key{"", 0};
    for (size_t i = 0; i <= 20 * DOM_MAX_DOMAINS; ++i) {
        const Answer answer =
            Ask(DOM_EncodeSchemeIndex(key.first.c_str(), static_cast<uint32_t>(key.first.size()),
                                      key.second),
                DOM_OP_GET_NEXT);
        MibSchemeRow row{};
        if (answer.kind != DOM_REPLY_KIND_DATA ||
            DOM_DecodeMibSchemeTable(answer.body.get(), &row) != DOM_OK) {
            break;
        }
        key = {row.domain_name, row.scheme_index};
        keys.push_back(key);
    }
    return keys;
}

std::vector<std::string> ListNasIdProfiles() {
    std::vector<std::string> names;
    char name[DOM_NASID_NAME_SIZE] = {};
    for (size_t i = 0; i <= 10000; ++i) {
        const Answer answer = Ask(DOM_EncodeNasIdProfile(name), DOM_OP_GET_NEXT);
        if (answer.kind != DOM_REPLY_KIND_DATA ||
            DOM_DecodeNasIdProfile(answer.body.get(), name) != DOM_OK) {
            break;
        }
        names.push_back(name);
    }
    return names;
}

namespace {

/// Goes on behind each reply until the daemon has no further one. `ask` makes the request for what
/// follows a reply, which is null at the beginning.
std::vector<Message> Walk(const std::function<TLV_MSG*(TLV_MSG* reply)>& ask) {
    constexpr size_t kEndless = 10000;
    std::vector<Message> replies;
    Answer answer = Ask(ask(nullptr), DOM_OP_GET_NEXT);
    while (answer.kind == DOM_REPLY_KIND_DATA && replies.size() < kEndless) {
        replies.push_back(std::move(answer.body));
        answer = Ask(ask(replies.back().get()), DOM_OP_GET_NEXT);
    }
    EXPECT_LT(replies.size(), kEndless);
    EXPECT_EQ(answer.kind, DOM_REPLY_KIND_RESULT);
    return replies;
}

}  // namespace

std::vector<Message> WalkCriticalProfiles() {
    return Walk([](TLV_MSG* reply) {
        CriticalProfileMsg last{};
        if (reply != nullptr) (void)DOM_critical_tlv_DecodeDefaultCritical(reply, &last);
        return DOM_clitical_tlv_EncodeCriticalProfile(last.profile_name);
    });
}

std::vector<Message> WalkCriticalVpns() {
    return Walk([](TLV_MSG* reply) {
        CriticalProfileMsg last{};
        if (reply != nullptr) (void)DOM_critical_tlv_DecodeCriticalVpn(reply, &last);
        return DOM_critical_tlv_EncodeGetCriticalVpn(last.profile_name, last.vpn_name);
    });
}

std::vector<Message> WalkAuthorProfiles() {
    return Walk([](TLV_MSG* reply) {
        AuthorProfileMsg last{};
        if (reply != nullptr) (void)DOM_author_tlv_DecodeDefaultAuthor(reply, &last);
        return DOM_author_tlv_EncodeAuthorProfile(last.profile_name);
    });
}

std::vector<Message> WalkAuthorVpns() {
    return Walk([](TLV_MSG* reply) {
        AuthorProfileMsg last{};
        if (reply != nullptr) (void)DOM_author_tlv_DecodeAuthorVpn(reply, &last);
        return DOM_author_tlv_EncodeGetAuthorVpn(last.profile_name, last.vpn_name);
    });
}

std::vector<Message> WalkAccountingPolicies() {
    return Walk([](TLV_MSG* reply) {
        ItaPolicy last{};
        if (reply != nullptr) (void)DOM_ita_tlv_DecodePolicy(reply, &last);
        TLV_MSG* request = CodeAlone(DOM_MSG_ITA_POLICY);
        (void)AAA_AppendStrTlvData(request, DOM_TLV_ITA_POLICY_NAME, last.name);
        return request;
    });
}

TLV_MSG* CodeAlone(uint32_t code) {
    TLV_MSG* message = TLV_Create();
    (void)AAA_AppendUINTTlvData(message, DOM_TLV_MSG_CODE, code);
    return message;
}

std::vector<uint8_t> Image(TLV_MSG* message) {
    std::vector<uint8_t> bytes(TLV_GetMsgLen(message, TLV_FORM_BUFFER));
    if (!bytes.empty()) {
        (void)TLV_Flush(message, TLV_FORM_BUFFER, static_cast<uint32_t>(bytes.size()),
                        reinterpret_cast<uintptr_t>(bytes.data()));
    }
    return bytes;
}

std::vector<std::vector<uint8_t>> WholeConfiguration() {
    std::vector<std::vector<uint8_t>> all;
    const auto add = [&](TLV_MSG* request, uint32_t operation) {
        all.push_back(Image(Ask(request, operation).body.get()));
    };
    for (const std::string& name : ListDomains()) {
        add(DOM_EncodeDomainName(name.c_str()), DOM_OP_GET);           // configuration role
        add(DOM_EncodeDomainNameInfo(name.c_str()), DOM_OP_GET_NEXT);  // working role
    }
    for (const SchemeKey& key : ListSchemeRows()) {
        add(DOM_EncodeSchemeIndex(key.first.c_str(), static_cast<uint32_t>(key.first.size()),
                                  key.second),
            DOM_OP_GET);
    }
    for (const std::string& name : ListNasIdProfiles()) {
        add(DOM_EncodeNasIdProfile(name.c_str()), DOM_OP_GET);
    }
    for (const auto walk : {WalkCriticalProfiles, WalkCriticalVpns, WalkAuthorProfiles,
                            WalkAuthorVpns, WalkAccountingPolicies}) {
        for (const Message& reply : walk()) all.push_back(Image(reply.get()));
    }
    add(CodeAlone(DOM_MSG_REC_POLICY), DOM_OP_GET);
    add(CodeAlone(DOM_MSG_REC_ENABLE_INFO), DOM_OP_GET);
    add(CodeAlone(DOM_MSG_BACKUP_METHOD), DOM_OP_GET);
    add(CodeAlone(DOM_MSG_DEFAULT_DOMAIN), DOM_OP_GET);
    add(CodeAlone(DOM_MSG_GLOBAL_DOMAIN), DOM_OP_GET);
    add(CodeAlone(DOM_MSG_SESSION_LIMIT), DOM_OP_GET);
    add(CodeAlone(DOM_MSG_DOMAIN_COUNT), DOM_OP_GET);
    return all;
}

void AtOnce(const DaemonProcess& daemon, const std::vector<std::function<void()>>& requests) {
    ASSERT_EQ(kill(daemon.Pid(), SIGSTOP), 0);
    std::vector<std::thread> clients;
    for (const auto& request : requests) clients.emplace_back(request);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ASSERT_EQ(kill(daemon.Pid(), SIGCONT), 0);
    for (std::thread& client : clients) client.join();
}

int AsUser(uid_t user, gid_t group, const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        if (setgroups(0, nullptr) != 0 || setgid(group) != 0 || setuid(user) != 0) _exit(120);
        _exit(body());
    }
    int status = 0;
    if (waitpid(child, &status, 0) < 0 || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

}  // namespace daemon_test
