/* Authorization and critical profiles: named sets of micro-segments, a default one and one a VPN.
 */
#ifndef AAADOM_PROFILE_H
#define AAADOM_PROFILE_H

#include <aaadom/types.h>
#include <platform/hash.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define DOM_PROFILE_NAME_SIZE 32 /* profile, VPN and segment names: 31 characters, terminator */
#define DOM_PROFILE_MAX 16u      /* profiles a role */
#define DOM_PROFILE_VPN_MAX 128u /* VPNs a profile */
#define DOM_PROFILE_VPN_BUCKETS 128u

/* Results of changes of authorization profiles; answered to the requester unchanged. */
#define DOM_AUTHOR_OK 0u
#define DOM_AUTHOR_FAILED 1u /* no memory, malformed message, or the profile to change is missing \
                              */
#define DOM_AUTHOR_PROFILE_EXISTS 19u
#define DOM_AUTHOR_STORE_FULL 20u
#define DOM_AUTHOR_PROFILE_NOT_EXIST 21u /* also in the end message of a failed read */
#define DOM_AUTHOR_VPN_FULL 22u

/* Results of changes of critical profiles. */
#define DOM_CRITICAL_OK 0u
#define DOM_CRITICAL_FAILED 1u
#define DOM_CRITICAL_STORE_FULL 10u
#define DOM_CRITICAL_VPN_FULL 11u
#define DOM_CRITICAL_PROFILE_NOT_EXIST 12u /* also in the end message of a failed read */
#define DOM_CRITICAL_PROFILE_EXISTS 13u

/** Micro-segment that an authorization profile hands out. */
typedef struct AuthorSegment {
    uint32_t segment_id; /* 0 = none */
    char segment_name[DOM_PROFILE_NAME_SIZE];
} AuthorSegment; /* 36 bytes */

/** Links of a profile's VPN list; the list's sentinel and the first member of its nodes. */
typedef struct AuthorVpnLink {
    struct AuthorVpnLink* next;
    struct AuthorVpnLink* prev;
} AuthorVpnLink;

/** One VPN of an authorization profile. */
typedef struct AuthorVpn {
    AuthorVpnLink list;
    HASH_NODE hash;                       /* chain of its bucket */
    char vpn_name[DOM_PROFILE_NAME_SIZE]; /* zero-padded: the hash covers all 32 bytes */
    AuthorSegment segment;
} AuthorVpn;

/** One authorization profile. */
typedef struct AuthorProfile {
    struct AuthorProfile* next;
    struct AuthorProfile** prev_link; /* the pointer that points at this node */
    HASH_TABLE* vpn_table;            /* null until the first VPN; kept when the last one goes */
    AuthorVpnLink vpn_list;           /* sentinel of the circular list, ascending by strcmp */
    char name[DOM_PROFILE_NAME_SIZE];
    uint32_t vpn_count;
    AuthorSegment default_segment; /* not set while its ID is 0 */
} AuthorProfile;

/** Head of one thread role's authorization profiles, ascending by strcmp. */
typedef struct AuthorProfileInfo {
    uint32_t profile_count;
    AuthorProfile* first_profile;
} AuthorProfileInfo;

/** Micro-segment that a critical profile hands out. */
typedef struct CriticalSegment {
    uint32_t segment_id; /* 0 = none */
    uint16_t value16;    /* carried, not interpreted */
    char segment_name[DOM_PROFILE_NAME_SIZE];
} CriticalSegment; /* 40 bytes */

/** One VPN of a critical profile. */
typedef struct CriticalVpn {
    HASH_NODE hash; /* first: the table frees its nodes as they are */
    struct CriticalVpn* next;
    struct CriticalVpn** prev_link;       /* the pointer that points at this node */
    char vpn_name[DOM_PROFILE_NAME_SIZE]; /* zero-padded: the hash covers all 32 bytes */
    CriticalSegment segment;
} CriticalVpn;

/** One critical profile. */
typedef struct CriticalProfile {
    struct CriticalProfile* next;
    struct CriticalProfile** prev_link; /* the pointer that points at this node */
    HASH_TABLE* vpn_table;              /* null until the first VPN; kept when the last one goes */
    CriticalVpn* first_vpn;             /* null-terminated; shorter names first, then by strcmp */
    char name[DOM_PROFILE_NAME_SIZE];
    uint32_t vpn_count;
    CriticalSegment default_segment; /* not set while its ID is 0 */
} CriticalProfile;

/** Head of one thread role's critical profiles, shorter names first, then by strcasecmp. */
typedef struct CriticalProfileInfo {
    uint32_t profile_count;
    CriticalProfile* first_profile;
} CriticalProfileInfo;

AAADOM_ASSERT_LAYOUT(sizeof(AuthorSegment) == 36);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorSegment, segment_name) == 4);
AAADOM_ASSERT_LAYOUT(sizeof(CriticalSegment) == 40);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalSegment, value16) == 4);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalSegment, segment_name) == 6);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorVpn, list) == 0);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalVpn, hash) == 0);
#if UINTPTR_MAX == UINT64_MAX
AAADOM_ASSERT_LAYOUT(offsetof(AuthorVpn, hash) == 16);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorVpn, vpn_name) == 32);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorVpn, segment) == 64);
AAADOM_ASSERT_LAYOUT(sizeof(AuthorVpn) == 104);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorProfile, vpn_table) == 16);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorProfile, vpn_list) == 24);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorProfile, name) == 40);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorProfile, vpn_count) == 72);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorProfile, default_segment) == 76);
AAADOM_ASSERT_LAYOUT(sizeof(AuthorProfile) == 112);
AAADOM_ASSERT_LAYOUT(offsetof(AuthorProfileInfo, first_profile) == 8);
AAADOM_ASSERT_LAYOUT(sizeof(AuthorProfileInfo) == 16);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalVpn, next) == 16);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalVpn, vpn_name) == 32);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalVpn, segment) == 64);
AAADOM_ASSERT_LAYOUT(sizeof(CriticalVpn) == 104);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalProfile, vpn_table) == 16);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalProfile, first_vpn) == 24);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalProfile, name) == 32);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalProfile, vpn_count) == 64);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalProfile, default_segment) == 68);
AAADOM_ASSERT_LAYOUT(sizeof(CriticalProfile) == 112);
AAADOM_ASSERT_LAYOUT(offsetof(CriticalProfileInfo, first_profile) == 8);
AAADOM_ASSERT_LAYOUT(sizeof(CriticalProfileInfo) == 16);
#endif

/* ---- authorization profiles ---- */

AuthorProfileInfo* DOM_author_InitData(void) AAADOM_NOEXCEPT;
void DOM_author_Fini(void) AAADOM_NOEXCEPT;
AuthorProfileInfo* DOM_author_GetAuthorProfileInfo(void) AAADOM_NOEXCEPT;
AuthorProfile** DOM_author_GetProfileHead(void) AAADOM_NOEXCEPT;
uint32_t DOM_author_GetProfileNum(void) AAADOM_NOEXCEPT;
AuthorProfile* DOM_author_GetFirstProfile(void) AAADOM_NOEXCEPT;
AuthorProfile* DOM_author_GetNextProfile(const char* name) AAADOM_NOEXCEPT;
AuthorProfile* DOM_author_FindProfile(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_author_AddProfile(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_author_AddVpn(const char* vpn_name, AuthorProfile* profile,
                           const AuthorSegment* segment) AAADOM_NOEXCEPT;
void DOM_author_FreeAuthorProfileVpnNode(AuthorVpn* vpn) AAADOM_NOEXCEPT;
void DOM_author_DestroyHashNode(HASH_NODE* node) AAADOM_NOEXCEPT;
AuthorProfile* DOM_author_FindBiggerProfile(AuthorProfile* const* list_head,
                                            const char* name) AAADOM_NOEXCEPT;
AuthorVpn* DOM_author_FindBiggerVpn(const AuthorVpnLink* sentinel,
                                    const char* vpn_name) AAADOM_NOEXCEPT;
uint32_t AAA_GetAuthorProfileData(const char* profile_name, const char* vpn_name,
                                  AuthorSegment* segment_out) AAADOM_NOEXCEPT;
uint32_t DOM_author_ProcProfile(TLV_MSG* msg, uint16_t operation, char* name_out,
                                uint32_t name_size, DomDbUpdateReq* change) AAADOM_NOEXCEPT;
uint32_t DOM_author_ProAuthorVpn(TLV_MSG* msg, uint16_t operation,
                                 DomDbUpdateReq* change) AAADOM_NOEXCEPT;
uint32_t DOM_author_ProcMicroSegMent(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) AAADOM_NOEXCEPT;
TLV_MSG* DOM_author_ProcProfileGet(const char* name, uint16_t* flag_out) AAADOM_NOEXCEPT;
TLV_MSG* DOM_author_ProcProfileVpnGet(const char* profile_name, const char* vpn_name,
                                      uint16_t* flag_out) AAADOM_NOEXCEPT;
TLV_MSG* DOM_author_ProcProfileGetBulk(const char* name) AAADOM_NOEXCEPT;
TLV_MSG* DOM_author_ProcProfileVpnGetBulk(const char* profile_name,
                                          char* vpn_name_inout) AAADOM_NOEXCEPT;
void DOM_SyncAllAuthorProfile(int32_t target) AAADOM_NOEXCEPT;
void DOM_SyncAuthorMicroSegment(int32_t target, AuthorProfile* profile) AAADOM_NOEXCEPT;
void DOM_SyncAuthorVPN(int32_t target, AuthorProfile* profile) AAADOM_NOEXCEPT;

/* ---- critical profiles ---- */

CriticalProfileInfo* DOM_critical_InitData(void) AAADOM_NOEXCEPT;
void DOM_critical_Fini(void) AAADOM_NOEXCEPT;
CriticalProfileInfo* DOM_critical_GetCriticalProfileInfo(void) AAADOM_NOEXCEPT;
CriticalProfile** DOM_critical_GetProfileHead(void) AAADOM_NOEXCEPT;
CriticalProfile* DOM_critical_FindProfile(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_critical_AddProfile(const char* name) AAADOM_NOEXCEPT;
uint32_t DOM_critical_AddVpn(const char* vpn_name, CriticalProfile* profile,
                             const CriticalSegment* segment) AAADOM_NOEXCEPT;
CriticalProfile* DOM_critical_FindBiggerProfile(CriticalProfile* const* list_head,
                                                const char* name) AAADOM_NOEXCEPT;
CriticalVpn* DOM_critical_FindBiggerVpn(CriticalVpn* const* list_head,
                                        const char* vpn_name) AAADOM_NOEXCEPT;
uint32_t AAA_GetCriticalData(const char* profile_name, const char* vpn_name,
                             CriticalSegment* segment_out) AAADOM_NOEXCEPT;
uint32_t DOM_critical_ProcProfile(TLV_MSG* msg, uint16_t operation, char* name_out,
                                  DomDbUpdateReq* change) AAADOM_NOEXCEPT;
uint32_t DOM_critical_ProCriticalVpn(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) AAADOM_NOEXCEPT;
uint32_t DOM_critical_ProcMicroSegMent(TLV_MSG* msg, uint16_t operation,
                                       DomDbUpdateReq* change) AAADOM_NOEXCEPT;
TLV_MSG* DOM_critical_ProcProfileGet(const char* name, uint16_t* flag_out) AAADOM_NOEXCEPT;
TLV_MSG* DOM_critical_ProcProfileVpnGet(const char* profile_name, const char* vpn_name,
                                        uint16_t* flag_out) AAADOM_NOEXCEPT;
TLV_MSG* DOM_critical_ProcProfileGetBulk(const char* name) AAADOM_NOEXCEPT;
TLV_MSG* DOM_critical_ProcProfileVpnGetBulk(const char* profile_name,
                                            char* vpn_name_inout) AAADOM_NOEXCEPT;
void DOM_SyncAllCriticalProfile(int32_t target) AAADOM_NOEXCEPT;
void DOM_SyncCriticalMicroSegment(int32_t target, CriticalProfile* profile) AAADOM_NOEXCEPT;
void DOM_SyncCriticalVPN(int32_t target, CriticalProfile* profile) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
