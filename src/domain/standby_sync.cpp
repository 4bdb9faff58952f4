#include "domain/standby_sync.h"

#include <aaadom/record_switches.h>
#include <aaadom/service.h>

namespace aaadom {

void SendToStandby(uint32_t operation, TlvPtr msg) noexcept {
    if (!msg) return;
    const TlvPtr request(AAA_AddOpHead(operation, msg.get()));
    if (request) (void)DOM_RealSync2Slave(request.get());  // a board that is absent is no failure
}

}  // namespace aaadom
