#include "db/save.h"

#include <aaadom/codes.h>
#include <aaadom/db_layout.h>
#include <aaadom/results.h>

namespace aaadom {
namespace {

struct SavedType {
    uint32_t object_type;
    SaveObject save;
};

/// Every object type that has a saved form. A type that is not here is refused.
constexpr SavedType kSavedTypes[] = {
    {DOM_DB_DOMAIN, SaveDomain},
    {DOM_DB_DEFAULT_DOMAIN, SaveDefaultDomain},
    {DOM_DB_SESSION_LIMIT, SaveSessionLimits},
    {DOM_DB_NASID_PROFILE, SaveNasIdProfile},
    {DOM_DB_NASID_VLAN, SaveNasIdBinding},
    {DOM_DB_UNKNOWN_DOMAIN, SaveUnknownDomain},
    {DOM_DB_DEVICE_ID, SaveDeviceId},
    {DOM_DB_REC_POLICY, SaveRecPolicy},
    {DOM_DB_ITA_POLICY, SaveItaPolicy},
    {DOM_DB_RECORD_ENABLE, SaveRecordSwitches},
    {DOM_DB_CRITICAL_PROFILE, SaveCriticalProfile},
    {DOM_DB_CRITICAL_ENTRY, SaveCriticalVpn},
    {DOM_DB_CRITICAL_SEGMENT, SaveCriticalSegment},
    {DOM_DB_AUTHOR_PROFILE, SaveAuthorProfile},
    {DOM_DB_AUTHOR_ENTRY, SaveAuthorVpn},
    {DOM_DB_AUTHOR_SEGMENT, SaveAuthorSegment},
    {DOM_DB_RECORD_BACKUP, SaveBackupMethods},
};

}  // namespace

uint32_t SaveChange(const DomDbUpdateReq& request) noexcept {
    for (const SavedType& type : kSavedTypes)
        if (type.object_type == request.object_type) return type.save(request);
    return DOM_ERR_FAILED;
}

}  // namespace aaadom
