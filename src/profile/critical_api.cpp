#include <aaadom/profile.h>

#include "profile/critical_profiles.h"
#include "profile/profile_change.h"
#include "profile/profile_read.h"
#include "profile/profile_store.h"
#include "profile/profile_sync.h"

using namespace aaadom;

using Store = ProfileStore<CriticalProfiles>;
using Change = ProfileChange<CriticalProfiles>;
using Read = ProfileRead<CriticalProfiles>;
using Sync = ProfileSync<CriticalProfiles>;

extern "C" {

CriticalProfileInfo* DOM_critical_InitData(void) noexcept {
    return Store::Init(Store::Mine());
}

void DOM_critical_Fini(void) noexcept {
    Store::Fini(Store::Mine());
}

CriticalProfileInfo* DOM_critical_GetCriticalProfileInfo(void) noexcept {
    return &Store::Mine();
}

CriticalProfile** DOM_critical_GetProfileHead(void) noexcept {
    return &Store::Mine().first_profile;
}

CriticalProfile* DOM_critical_FindProfile(const char* name) noexcept {
    return Store::Find(Store::Mine(), name);
}

uint32_t DOM_critical_AddProfile(const char* name) noexcept {
    return Store::Add(Store::Mine(), name);
}

void dom_critical_DelProfile(CriticalProfile* profile) noexcept {
    Store::Delete(Store::Mine(), profile);
}

CriticalVpn* dom_critical_FindVpnInfo(const char* vpn_name, CriticalProfile* profile) noexcept {
    return Store::FindVpn(profile, vpn_name);
}

uint32_t DOM_critical_AddVpn(const char* vpn_name, CriticalProfile* profile,
                             const CriticalSegment* segment) noexcept {
    return Store::AddVpn(profile, vpn_name, segment);
}

void dom_critical_DelVpn(const char* vpn_name, CriticalProfile* profile) noexcept {
    Store::DeleteVpn(profile, vpn_name);
}

uint32_t dom_critical_GetHashKey(const void* padded_name) noexcept {
    return VpnBucket(padded_name);
}

CriticalProfile* DOM_critical_FindBiggerProfile(CriticalProfile* const* list_head,
                                                const char* name) noexcept {
    return list_head == nullptr ? nullptr : Store::FindBigger(*list_head, name);
}

CriticalVpn* DOM_critical_FindBiggerVpn(CriticalVpn* const* list_head,
                                        const char* vpn_name) noexcept {
    return list_head == nullptr ? nullptr : Store::FindBiggerVpn(*list_head, vpn_name);
}

uint32_t AAA_GetCriticalData(const char* profile_name, const char* vpn_name,
                             CriticalSegment* segment_out) noexcept {
    return Store::Query(Store::Mine(), profile_name, vpn_name, segment_out);
}

uint32_t DOM_critical_ProcProfile(TLV_MSG* msg, uint16_t operation, char* name_out,
                                  DomDbUpdateReq* change) noexcept {
    return Change::ApplyProfile(Store::Mine(), msg, operation, name_out, DOM_PROFILE_NAME_SIZE,
                                change);
}

uint32_t DOM_critical_ProCriticalVpn(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) noexcept {
    return Change::ApplyVpn(Store::Mine(), msg, operation, change);
}

uint32_t DOM_critical_ProcMicroSegMent(TLV_MSG* msg, uint16_t operation,
                                       DomDbUpdateReq* change) noexcept {
    return Change::ApplyDefault(Store::Mine(), msg, operation, change);
}

TLV_MSG* DOM_critical_ProcProfileGet(const char* name, uint16_t* flag_out) noexcept {
    return Read::Get(Store::Mine(), name, flag_out);
}

TLV_MSG* DOM_critical_ProcProfileVpnGet(const char* profile_name, const char* vpn_name,
                                        uint16_t* flag_out) noexcept {
    return Read::GetVpn(Store::Mine(), profile_name, vpn_name, flag_out);
}

TLV_MSG* DOM_critical_ProcProfileGetBulk(const char* name) noexcept {
    return Read::GetNext(Store::Mine(), name);
}

TLV_MSG* DOM_critical_ProcProfileVpnGetBulk(const char* profile_name,
                                            char* vpn_name_inout) noexcept {
    return Read::GetNextVpn(Store::Mine(), profile_name, vpn_name_inout);
}

void DOM_SyncAllCriticalProfile(int32_t target) noexcept {
    Sync::SendAll(CurrentRole(), target);
}

void DOM_SyncCriticalMicroSegment(int32_t target, CriticalProfile* profile) noexcept {
    Sync::SendDefault(target, profile);
}

void DOM_SyncCriticalVPN(int32_t target, CriticalProfile* profile) noexcept {
    Sync::SendVpns(target, profile);
}

}  // extern "C"
