// What DOM_SetDataToDB stores, one function an object type. `request.operation` is 1 to add or
// modify, anything else deletes.
#pragma once

#include <aaadom/types.h>

#include <cstdint>

namespace aaadom {

/// 0 or DOM_ERR_FAILED.
using SaveObject = uint32_t (*)(const DomDbUpdateReq& request);

/// Saves the object that `request` names; DOM_ERR_FAILED for a type that is never saved.
[[nodiscard]] uint32_t SaveChange(const DomDbUpdateReq& request) noexcept;

uint32_t SaveDomain(const DomDbUpdateReq& request);
uint32_t SaveDefaultDomain(const DomDbUpdateReq& request);
uint32_t SaveUnknownDomain(const DomDbUpdateReq& request);
uint32_t SaveSessionLimits(const DomDbUpdateReq& request);
uint32_t SaveDeviceId(const DomDbUpdateReq& request);
uint32_t SaveNasIdProfile(const DomDbUpdateReq& request);
uint32_t SaveNasIdBinding(const DomDbUpdateReq& request);
uint32_t SaveRecPolicy(const DomDbUpdateReq& request);
uint32_t SaveCriticalProfile(const DomDbUpdateReq& request);
uint32_t SaveCriticalVpn(const DomDbUpdateReq& request);
uint32_t SaveCriticalSegment(const DomDbUpdateReq& request);
uint32_t SaveAuthorProfile(const DomDbUpdateReq& request);
uint32_t SaveAuthorVpn(const DomDbUpdateReq& request);
uint32_t SaveAuthorSegment(const DomDbUpdateReq& request);
uint32_t SaveItaPolicy(const DomDbUpdateReq& request);
uint32_t SaveRecordSwitches(const DomDbUpdateReq& request);
uint32_t SaveBackupMethods(const DomDbUpdateReq& request);

}  // namespace aaadom
