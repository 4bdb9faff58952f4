#include <aaadom/profile.h>

#include "profile/author_profiles.h"
#include "profile/profile_change.h"
#include "profile/profile_read.h"
#include "profile/profile_store.h"
#include "profile/profile_sync.h"

using namespace aaadom;

using Store = ProfileStore<AuthorProfiles>;
using Change = ProfileChange<AuthorProfiles>;
using Read = ProfileRead<AuthorProfiles>;
using Sync = ProfileSync<AuthorProfiles>;

extern "C" {

AuthorProfileInfo* DOM_author_InitData(void) noexcept {
    return Store::Init(Store::Mine());
}

void DOM_author_Fini(void) noexcept {
    Store::Fini(Store::Mine());
}

AuthorProfileInfo* DOM_author_GetAuthorProfileInfo(void) noexcept {
    return &Store::Mine();
}

AuthorProfile** DOM_author_GetProfileHead(void) noexcept {
    return &Store::Mine().first_profile;
}

uint32_t DOM_author_GetProfileNum(void) noexcept {
    return Store::Mine().profile_count;
}

AuthorProfile* DOM_author_GetFirstProfile(void) noexcept {
    return Store::Mine().first_profile;
}

AuthorProfile* DOM_author_GetNextProfile(const char* name) noexcept {
    const AuthorProfile* profile = Store::Find(Store::Mine(), name);
    return profile == nullptr ? nullptr : profile->next;
}

AuthorProfile* DOM_author_FindProfile(const char* name) noexcept {
    return Store::Find(Store::Mine(), name);
}

uint32_t DOM_author_AddProfile(const char* name) noexcept {
    return Store::Add(Store::Mine(), name);
}

void dom_author_DelProfile(AuthorProfile* profile) noexcept {
    Store::Delete(Store::Mine(), profile);
}

AuthorVpn* dom_author_FindVpnInfo(const char* vpn_name, AuthorProfile* profile) noexcept {
    return Store::FindVpn(profile, vpn_name);
}

uint32_t DOM_author_AddVpn(const char* vpn_name, AuthorProfile* profile,
                           const AuthorSegment* segment) noexcept {
    return Store::AddVpn(profile, vpn_name, segment);
}

void dom_author_DelVpn(const char* vpn_name, AuthorProfile* profile) noexcept {
    Store::DeleteVpn(profile, vpn_name);
}

uint32_t dom_author_GetHashKey(const void* padded_name) noexcept {
    return VpnBucket(padded_name);
}

void DOM_author_FreeAuthorProfileVpnNode(AuthorVpn* vpn) noexcept {
    if (vpn != nullptr) Store::FreeVpn(vpn);
}

void DOM_author_DestroyHashNode(HASH_NODE* node) noexcept {
    if (node != nullptr) DOM_author_FreeAuthorProfileVpnNode(AuthorProfiles::OfHashNode(node));
}

void dom_author_FreeAllVpnNode(AuthorVpn* vpn) noexcept {
    DOM_author_FreeAuthorProfileVpnNode(vpn);
}

void dom_author_FreeAllProfileNode(AuthorProfile* profile) noexcept {
    if (profile != nullptr) Store::Free(profile);
}

AuthorProfile* DOM_author_FindBiggerProfile(AuthorProfile* const* list_head,
                                            const char* name) noexcept {
    return list_head == nullptr ? nullptr : Store::FindBigger(*list_head, name);
}

AuthorVpn* DOM_author_FindBiggerVpn(const AuthorVpnLink* sentinel, const char* vpn_name) noexcept {
    return sentinel == nullptr ? nullptr : Store::FindBiggerVpn(*sentinel, vpn_name);
}

uint32_t AAA_GetAuthorProfileData(const char* profile_name, const char* vpn_name,
                                  AuthorSegment* segment_out) noexcept {
    return Store::Query(Store::Mine(), profile_name, vpn_name, segment_out);
}

uint32_t DOM_author_ProcProfile(TLV_MSG* msg, uint16_t operation, char* name_out,
                                uint32_t name_size, DomDbUpdateReq* change) noexcept {
    return Change::ApplyProfile(Store::Mine(), msg, operation, name_out, name_size, change);
}

uint32_t DOM_author_ProAuthorVpn(TLV_MSG* msg, uint16_t operation,
                                 DomDbUpdateReq* change) noexcept {
    return Change::ApplyVpn(Store::Mine(), msg, operation, change);
}

uint32_t DOM_author_ProcMicroSegMent(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) noexcept {
    return Change::ApplyDefault(Store::Mine(), msg, operation, change);
}

TLV_MSG* DOM_author_ProcProfileGet(const char* name, uint16_t* flag_out) noexcept {
    return Read::Get(Store::Mine(), name, flag_out);
}

TLV_MSG* DOM_author_ProcProfileVpnGet(const char* profile_name, const char* vpn_name,
                                      uint16_t* flag_out) noexcept {
    return Read::GetVpn(Store::Mine(), profile_name, vpn_name, flag_out);
}

TLV_MSG* DOM_author_ProcProfileGetBulk(const char* name) noexcept {
    return Read::GetNext(Store::Mine(), name);
}

TLV_MSG* DOM_author_ProcProfileVpnGetBulk(const char* profile_name, char* vpn_name_inout) noexcept {
    return Read::GetNextVpn(Store::Mine(), profile_name, vpn_name_inout);
}

void DOM_SyncAllAuthorProfile(int32_t target) noexcept {
    Sync::SendAll(CurrentRole(), target);
}

void DOM_SyncAuthorMicroSegment(int32_t target, AuthorProfile* profile) noexcept {
    Sync::SendDefault(target, profile);
}

void DOM_SyncAuthorVPN(int32_t target, AuthorProfile* profile) noexcept {
    Sync::SendVpns(target, profile);
}

}  // extern "C"
