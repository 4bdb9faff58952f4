// Device-wide numbers. They always exist, so the operation of the request is not looked at.
#include <aaadom/db_layout.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>

#include "db/binary_value.h"
#include "db/save.h"

namespace aaadom {

uint32_t SaveSessionLimits(const DomDbUpdateReq&) {
    SessionLimits limits{};
    DOM_GetAllSessionLimit(&limits);
    return StoreBinary(DOM_DB_KEY_SESSION_LIMIT, DOM_DB_KEY_SESSION_LIMIT_LEN, sizeof limits,
                       &limits, DOM_DB_SESSION_LIMIT);
}

uint32_t SaveDeviceId(const DomDbUpdateReq&) {
    const uint32_t device_id = DOM_GetDeviceID();
    return StoreBinary(DOM_DB_KEY_DEVICE_ID, DOM_DB_KEY_DEVICE_ID_LEN, sizeof device_id, &device_id,
                       DOM_DB_DEVICE_ID);
}

}  // namespace aaadom
