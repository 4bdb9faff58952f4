#include "domain/service_routing.h"

#include <aaadom/results.h>
#include <aaadom/service.h>

#include "base/message.h"
#include "base/role.h"

namespace aaadom {
namespace {

constexpr uint32_t kBatchKind = 5;
constexpr uint32_t kFlushToDescriptor = 1;
constexpr uint32_t kFlushWaitMilliseconds = 0xEA60;  // 60 s
/// TLV_Flush reports in its low 16 bits whether the message was written.
constexpr uint32_t kFlushedMask = 0xFFFF;

}  // namespace

uint32_t RouteBatchMessage(TLV_MSG* msg, int32_t fd) noexcept {
    // The descriptor decides before the role: a negative one goes to slot 12 from every thread.
    if (fd < 0) return DOM_SendSyncMSgToCfgThr(kBatchKind, msg);
    if (CurrentRole() == Role::kConfig) {
        return DOM_CfgThrSendMsgToPam(static_cast<uint32_t>(fd), msg);
    }
    TlvPtr owned(msg);
    uint32_t flushed =
        TLV_Flush(msg, kFlushToDescriptor, kFlushWaitMilliseconds, static_cast<uintptr_t>(fd));
    return (flushed & kFlushedMask) != 0 ? DOM_OK : DOM_ERR_FAILED;
}

}  // namespace aaadom
