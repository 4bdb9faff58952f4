#include "roles.h"

#include <aaadom/results.h>
#include <aaadom/service.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "failure.h"

namespace aaad {
namespace {

thread_local uint32_t current_role = static_cast<uint32_t>(Role::kWorking);
ConfigurationMail* configuration_mail = nullptr;

uint32_t AnswerRole() noexcept {
    return current_role;
}

/// Slots 0 and 10: no standby is connected. The message stays the caller's.
uint32_t RefuseStandby(TLV_MSG*) noexcept {
    return DOM_ERR_FAILED;
}

/// Slot 14: there is no access module behind this daemon. The library destroys the message.
uint32_t RefuseAccessModule(uint32_t, TLV_MSG*) noexcept {
    return DOM_ERR_FAILED;
}

/// Slot 19: user records have no thread of their own here.
uint32_t RefuseRecordThread() noexcept {
    return DOM_ERR_FAILED;
}

/// Slot 12 owns the message.
uint32_t QueueForConfiguration(uint32_t, uint32_t, TLV_MSG* msg) noexcept {
    Message message(msg);
    if (!message) return DOM_ERR_FAILED;
    try {
        configuration_mail->Post(std::move(message));
    } catch (const std::bad_alloc&) {
        return DOM_ERR_FAILED;
    }
    return DOM_OK;
}

}  // namespace

void TakeRole(Role role) {
    current_role = static_cast<uint32_t>(role);
}

ConfigurationMail::ConfigurationMail() : event_fd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (event_fd_ < 0) {
        throw Failure("event descriptor", strerror(errno), "Raise the limit of open files");
    }
}

ConfigurationMail::~ConfigurationMail() {
    close(event_fd_);
}

void ConfigurationMail::Post(Message message) {
    {
        const MutexLock lock(mutex_);
        messages_.push_back(std::move(message));
    }
    const uint64_t one = 1;
    (void)!write(event_fd_, &one, sizeof one);  // a full counter is readable, too
}

std::vector<Message> ConfigurationMail::TakeAll() {
    uint64_t count = 0;
    (void)!read(event_fd_, &count, sizeof count);
    const MutexLock lock(mutex_);
    std::vector<Message> taken;
    taken.swap(messages_);
    return taken;
}

Callbacks::Callbacks() {
    configuration_mail = &mail_;
    AAADService table{};
    table.real_sync_msg = RefuseStandby;
    table.cfg_real_sync_to_slave = RefuseStandby;
    table.sync_msg_to_cfg_thr = QueueForConfiguration;
    table.is_cfg_thread = AnswerRole;
    table.cfg_thr_msg_to_pam = RefuseAccessModule;
    table.record_thread_init = RefuseRecordThread;
    DOM_SetAAADService(&table);
}

Callbacks::~Callbacks() {
    DOM_ResetAAADService();
    configuration_mail = nullptr;
}

}  // namespace aaad
