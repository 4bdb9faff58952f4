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
#define DOM_AUTHOR_FAILED 1u /* no memory, malformed message, no profile to change */
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

/**
 * Empties the calling role's head of the authorization profiles without freeing any. Part of
 * DOM_DomainInfoTableInit.
 * @return the head, owned by the library, valid for ever.
 * @thread once on each role; takes no lock: each role changes its own profiles from its own thread.
 */
AuthorProfileInfo* DOM_author_InitData(void) AAADOM_NOEXCEPT;

/**
 * Frees every authorization profile of the calling role with its VPNs. Part of
 * DOM_DomainInfoTableFini.
 * @thread the role's own; takes no lock.
 */
void DOM_author_Fini(void) AAADOM_NOEXCEPT;

/**
 * @return the calling role's head, owned by the library, valid for ever.
 * @thread any; takes no lock.
 */
AuthorProfileInfo* DOM_author_GetAuthorProfileInfo(void) AAADOM_NOEXCEPT;

/**
 * @return the address of the calling role's first-profile field, at which walks begin; owned by the
 *         library, valid for ever.
 * @thread any; takes no lock.
 */
AuthorProfile** DOM_author_GetProfileHead(void) AAADOM_NOEXCEPT;

/**
 * @return number of the calling role's authorization profiles.
 * @thread any; takes no lock.
 */
uint32_t DOM_author_GetProfileNum(void) AAADOM_NOEXCEPT;

/**
 * @return the calling role's first profile, owned by the library, valid until it is deleted; null
 *         when there is none.
 * @thread the role's own; takes no lock.
 */
AuthorProfile* DOM_author_GetFirstProfile(void) AAADOM_NOEXCEPT;

/**
 * Finds a profile of the calling role and goes one on. Unlike DOM_author_FindBiggerProfile it needs
 * the profile to exist and takes its name in any letter case.
 * @param name  borrowed; not cut.
 * @return the successor in the list, owned by the library, valid until it is deleted; null when the
 *         profile is the last one or does not exist, and for a null name.
 * @thread the role's own; takes no lock.
 */
AuthorProfile* DOM_author_GetNextProfile(const char* name) AAADOM_NOEXCEPT;

/**
 * Finds a profile of the calling role.
 * @param name  borrowed; any letter case; compared whole, so that a name of more than 31 characters
 *              does not find the profile that was made with it.
 * @return owned by the library, valid until the profile is deleted; null when there is none and for
 *         a null name.
 * @thread the role's own; takes no lock.
 */
AuthorProfile* DOM_author_FindProfile(const char* name) AAADOM_NOEXCEPT;

/**
 * Adds an empty profile at its place in the calling role's list: ascending by strcmp, although
 * names are looked up in any letter case; behind one that is equal. Does not look for one of the
 * same name: callers look first. Carried by code 156, stored as database type 33.
 * @param name  borrowed; at most 31 characters and the terminator are kept, longer input is cut.
 * @return 0; 20 when the role has 16 profiles; 1 when memory is short and for a null name.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_author_AddProfile(const char* name) AAADOM_NOEXCEPT;

/**
 * Gives a VPN of a profile a segment. A VPN that exists keeps its place, also when the profile is
 * full; else one is added to the profile's list (ascending by strcmp) and at
 * the head of its bucket. The VPN table is made with the first VPN. Carried by code 157, stored as
 * database type 34.
 * @param vpn_name  borrowed; its case matters; cut to 31 characters, also for the look-up.
 * @param profile   borrowed, changed.
 * @param segment   borrowed, copied; any ID.
 * @return 0; 22 when the profile has 128 VPNs; 1 when memory is short, with nothing changed,
 *         and for a null argument.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_author_AddVpn(const char* vpn_name, AuthorProfile* profile,
                           const AuthorSegment* segment) AAADOM_NOEXCEPT;

/**
 * Takes a VPN out of its profile's list and table and frees it. The profile's count stays.
 * @param vpn  consumed always; null is ignored.
 * @thread the role's own; takes no lock.
 */
void DOM_author_FreeAuthorProfileVpnNode(AuthorVpn* vpn) AAADOM_NOEXCEPT;

/**
 * DOM_author_FreeAuthorProfileVpnNode as HASH_Destroy calls it.
 * @param node  the VPN's table links, consumed always; null is ignored.
 * @thread the role's own; takes no lock.
 */
void DOM_author_DestroyHashNode(HASH_NODE* node) AAADOM_NOEXCEPT;

/**
 * Finds the profile that follows a name which need not exist: the first of the list whose name
 * is greater by strcmp.
 * @param list_head  borrowed; what DOM_author_GetProfileHead gives; null finds nothing.
 * @param name       borrowed; not cut; null finds nothing.
 * @return owned by the library, valid until the profile is deleted; null when none follows.
 * @thread the role's own; takes no lock.
 */
AuthorProfile* DOM_author_FindBiggerProfile(AuthorProfile* const* list_head,
                                            const char* name) AAADOM_NOEXCEPT;

/**
 * Finds the VPN that follows a name which need not exist: the first of the list whose name
 * is greater by strcmp.
 * @param sentinel   borrowed; the profile's `vpn_list`; null, or links that are null, find nothing.
 * @param vpn_name   borrowed; not cut; null finds nothing.
 * @return owned by the library, valid until the VPN is deleted; null when none follows.
 * @thread the role's own; takes no lock.
 */
AuthorVpn* DOM_author_FindBiggerVpn(const AuthorVpnLink* sentinel,
                                    const char* vpn_name) AAADOM_NOEXCEPT;

/**
 * Asks a profile of the calling role for the segment of a user: that of the VPN when the profile
 * has the VPN (whatever its ID), else the default segment when its ID is not 0.
 * @param profile_name  borrowed; any letter case.
 * @param vpn_name      borrowed, or null = no VPN; cut to 31 characters; its case matters.
 * @param segment_out   untouched on failure.
 * @return 0; DOM_ERR_FAILED when there is no such profile, it has neither segment, or the profile
 *         name or the output is null.
 * @thread the role's own; takes no lock.
 */
uint32_t AAA_GetAuthorProfileData(const char* profile_name, const char* vpn_name,
                                  AuthorSegment* segment_out) AAADOM_NOEXCEPT;

/**
 * Applies a profile message (code 156) to the calling role: adds the profile, or deletes it with
 * its VPNs.
 * @param msg        borrowed.
 * @param operation  1 adds, any other number deletes.
 * @param name_out   `name_size` bytes, or null; on add receives the name as stored, or as in the
 *                   message when the profile is new (whatever becomes of it); untouched on delete
 *                   and for a message without a readable name.
 * @param name_size  capacity; a longer name is cut; 0 writes nothing.
 * @param change     borrowed; on success gets type 33, the operation and the profile name as
 *                   stored, other fields stay; untouched otherwise; null is skipped.
 * @return 0; 1 when the message has no readable name or memory is short; 19 when the profile to add
 *         exists; 20 when the role has 16 profiles; 21 when the profile to delete does not exist.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_author_ProcProfile(TLV_MSG* msg, uint16_t operation, char* name_out,
                                uint32_t name_size, DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Applies a VPN message (code 157) to the calling role: gives a VPN of a profile its segment, or
 * deletes the VPN. To delete one that does not exist is no error.
 * @param msg        borrowed.
 * @param operation  1 sets, any other number deletes.
 * @param change     borrowed; on success gets type 34, the operation, the profile and VPN names as
 *                   stored (of a VPN that is gone as in the message) and the message's segment,
 *                   other fields stay; untouched otherwise; null is skipped.
 * @return 0; 1 when the message cannot be read, sets segment ID 0, names no profile of the role, or
 *         memory is short; 22 when the profile has 128 VPNs.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_author_ProAuthorVpn(TLV_MSG* msg, uint16_t operation,
                                 DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Applies a default-segment message (code 158) to the calling role. The profile takes what the
 * message carries whatever the operation: a deletion carries ID 0.
 * @param msg        borrowed.
 * @param operation  1 sets, any other number deletes; database type 35 goes by it.
 * @param change     borrowed; on success gets type 35, the operation, the profile name as stored,
 *                   the message's VPN name (an empty one) and segment, other fields stay; untouched
 *                   otherwise; null is skipped.
 * @return 0; 1 when the message cannot be read, sets segment ID 0 or names no profile of the role.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_author_ProcMicroSegMent(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Reads a profile of the calling role for management.
 * @param name      borrowed; any letter case.
 * @param flag_out  set to DOM_REPLY_KIND_RESULT when there is no such profile, else untouched; null
 *                  is skipped.
 * @return returned, destroy with TLV_Destroy: the default segment, set or not, as code 158; an end
 *         message with result 21 when there is no such profile; null when memory is short.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_author_ProcProfileGet(const char* name, uint16_t* flag_out) AAADOM_NOEXCEPT;

/**
 * Reads a VPN of a profile of the calling role for management.
 * @param profile_name  borrowed; any letter case.
 * @param vpn_name      borrowed; cut to 31 characters; its case matters.
 * @param flag_out      set to DOM_REPLY_KIND_RESULT with an end message, else untouched; null is
 *                      skipped.
 * @return returned, destroy with TLV_Destroy: the segment as code 157; an end message with result
 *         21 when the profile or the VPN does not exist or its message could not be built; null
 *         when that could not be built either.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_author_ProcProfileVpnGet(const char* profile_name, const char* vpn_name,
                                      uint16_t* flag_out) AAADOM_NOEXCEPT;

/**
 * Reads the profile of the calling role that follows a name (DOM_author_FindBiggerProfile).
 * @param name  borrowed; not cut; empty = the first profile.
 * @return returned, destroy with TLV_Destroy: the default segment, set or not, as code 158; null
 *         when no profile follows, for a null name and when memory is short.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_author_ProcProfileGetBulk(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the VPN of the calling role that follows a VPN of a profile. The walk starts in the named
 * profile (any letter case), or in the one that follows the name when there is none or the name is
 * empty; it takes the VPN that follows `vpn_name_inout` (empty = the first one) and goes on to the
 * profiles that follow, over those without VPNs, until it meets a VPN.
 * @param profile_name    borrowed; not cut.
 * @param vpn_name_inout  at least one byte; borrowed; made empty when the walk enters another
 *                        profile than the one it started in, else unchanged, also at the end: the
 *                        VPN that was met is named by the message.
 * @return returned, destroy with TLV_Destroy: the VPN's segment as code 157; null when no VPN
 *         follows, for a null argument and when memory is short.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_author_ProcProfileVpnGetBulk(const char* profile_name,
                                          char* vpn_name_inout) AAADOM_NOEXCEPT;

/**
 * Sends every authorization profile in list order: its name (code 156), its default segment (code
 * 158) when the ID is not 0, its VPNs (code 157), each with operation 0 inside the daemon's
 * head (5, 4). A profile whose name message cannot be built is left out with its segments; another
 * message that cannot be built or sent is left out alone.
 * @param target  descriptor of the peer; nothing is sent for a negative one.
 * @thread of the working role, nothing is sent on the configuration thread; takes no lock, the
 *         caller holds none. Waits at most 60 s a message.
 */
void DOM_SyncAllAuthorProfile(int32_t target) AAADOM_NOEXCEPT;

/**
 * Sends a profile's default segment when its ID is not 0, to where DOM_BatchSyncCfgType leads:
 * neither the role nor the sign of the target is looked at first.
 * @param target   as of DOM_BatchSyncCfgType.
 * @param profile  borrowed; null is ignored.
 * @thread the role's own; takes no lock, the caller holds none.
 */
void DOM_SyncAuthorMicroSegment(int32_t target, AuthorProfile* profile) AAADOM_NOEXCEPT;

/**
 * Sends a profile's VPNs bucket by bucket, each from its head, not in name order, to where
 * DOM_BatchSyncCfgType leads: neither the role nor the sign of the target is looked at first.
 * @param target   as of DOM_BatchSyncCfgType.
 * @param profile  borrowed; null is ignored.
 * @thread the role's own; takes no lock, the caller holds none.
 */
void DOM_SyncAuthorVPN(int32_t target, AuthorProfile* profile) AAADOM_NOEXCEPT;

/* ---- critical profiles ---- */

/**
 * Empties the calling role's head of the critical profiles without freeing any. Part of
 * DOM_DomainInfoTableInit.
 * @return the head, owned by the library, valid for ever.
 * @thread once on each role; takes no lock: each role changes its own profiles from its own thread.
 */
CriticalProfileInfo* DOM_critical_InitData(void) AAADOM_NOEXCEPT;

/**
 * Frees every critical profile of the calling role with its VPNs. Part of
 * DOM_DomainInfoTableFini.
 * @thread the role's own; takes no lock.
 */
void DOM_critical_Fini(void) AAADOM_NOEXCEPT;

/**
 * @return the calling role's head, owned by the library, valid for ever.
 * @thread any; takes no lock.
 */
CriticalProfileInfo* DOM_critical_GetCriticalProfileInfo(void) AAADOM_NOEXCEPT;

/**
 * @return the address of the calling role's first-profile field, at which walks begin; owned by the
 *         library, valid for ever.
 * @thread any; takes no lock.
 */
CriticalProfile** DOM_critical_GetProfileHead(void) AAADOM_NOEXCEPT;

/**
 * Finds a profile of the calling role.
 * @param name  borrowed; any letter case; compared whole, so that a name of more than 31 characters
 *              does not find the profile that was made with it.
 * @return owned by the library, valid until the profile is deleted; null when there is none and for
 *         a null name.
 * @thread the role's own; takes no lock.
 */
CriticalProfile* DOM_critical_FindProfile(const char* name) AAADOM_NOEXCEPT;

/**
 * Adds an empty profile at its place in the calling role's list: shorter names first, then by
 * strcasecmp; behind one that is equal. Does not look for one of the same name: callers look first.
 * Carried by code 147, stored as database type 23.
 * @param name  borrowed; at most 31 characters and the terminator are kept, longer input is cut.
 * @return 0; 10 when the role has 16 profiles; 1 when memory is short and for a null name.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_critical_AddProfile(const char* name) AAADOM_NOEXCEPT;

/**
 * Gives a VPN of a profile a segment. A VPN that exists keeps its place, also when the profile is
 * full; else one is added to the profile's list (shorter names first, then by strcmp) and at
 * the head of its bucket. The VPN table is made with the first VPN. Carried by code 148, stored as
 * database type 24.
 * @param vpn_name  borrowed; its case matters; cut to 31 characters, also for the look-up.
 * @param profile   borrowed, changed.
 * @param segment   borrowed, copied; any ID.
 * @return 0; 11 when the profile has 128 VPNs; 1 when memory is short, with nothing changed,
 *         and for a null argument.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_critical_AddVpn(const char* vpn_name, CriticalProfile* profile,
                             const CriticalSegment* segment) AAADOM_NOEXCEPT;

/**
 * Finds the profile that follows a name which need not exist: the first of the list whose name
 * is longer, or of the same length and greater by strcasecmp.
 * @param list_head  borrowed; what DOM_critical_GetProfileHead gives; null finds nothing.
 * @param name       borrowed; not cut; null finds nothing.
 * @return owned by the library, valid until the profile is deleted; null when none follows.
 * @thread the role's own; takes no lock.
 */
CriticalProfile* DOM_critical_FindBiggerProfile(CriticalProfile* const* list_head,
                                                const char* name) AAADOM_NOEXCEPT;

/**
 * Finds the VPN that follows a name which need not exist: the first of the list whose name
 * is longer, or of the same length and greater by strcmp.
 * @param list_head  borrowed; address of the profile's `first_vpn`; null finds nothing.
 * @param vpn_name   borrowed; not cut; null finds nothing.
 * @return owned by the library, valid until the VPN is deleted; null when none follows.
 * @thread the role's own; takes no lock.
 */
CriticalVpn* DOM_critical_FindBiggerVpn(CriticalVpn* const* list_head,
                                        const char* vpn_name) AAADOM_NOEXCEPT;

/**
 * Asks a profile of the calling role for the segment of a user: that of the VPN when the profile
 * has the VPN (whatever its ID), else the default segment when its ID is not 0.
 * @param profile_name  borrowed; any letter case.
 * @param vpn_name      borrowed, or null = no VPN; cut to 31 characters; its case matters.
 * @param segment_out   untouched on failure.
 * @return 0; DOM_ERR_FAILED when there is no such profile, it has neither segment, or the profile
 *         name or the output is null.
 * @thread the role's own; takes no lock.
 */
uint32_t AAA_GetCriticalData(const char* profile_name, const char* vpn_name,
                             CriticalSegment* segment_out) AAADOM_NOEXCEPT;

/**
 * Applies a profile message (code 147) to the calling role: adds the profile, or deletes it with
 * its VPNs.
 * @param msg        borrowed.
 * @param operation  1 adds, any other number deletes.
 * @param name_out   32 bytes, or null; on add receives the name as stored, or as in the message
 *                   when the profile is new (whatever becomes of it); untouched on delete and for a
 *                   message without a readable name.
 * @param change     borrowed; on success gets type 23, the operation and the profile name as
 *                   stored, other fields stay; untouched otherwise; null is skipped.
 * @return 0; 1 when the message has no readable name or memory is short; 13 when the profile to add
 *         exists; 10 when the role has 16 profiles; 12 when the profile to delete does not exist.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_critical_ProcProfile(TLV_MSG* msg, uint16_t operation, char* name_out,
                                  DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Applies a VPN message (code 148) to the calling role: gives a VPN of a profile its segment, or
 * deletes the VPN. To delete one that does not exist is no error.
 * @param msg        borrowed.
 * @param operation  1 sets, any other number deletes.
 * @param change     borrowed; on success gets type 24, the operation, the profile and VPN names as
 *                   stored (of a VPN that is gone as in the message) and the message's segment,
 *                   other fields stay; untouched otherwise; null is skipped.
 * @return 0; 1 when the message cannot be read, sets segment ID 0, names no profile of the role, or
 *         memory is short; 11 when the profile has 128 VPNs.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_critical_ProCriticalVpn(TLV_MSG* msg, uint16_t operation,
                                     DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Applies a default-segment message (code 149) to the calling role. The profile takes what the
 * message carries whatever the operation: a deletion carries ID 0.
 * @param msg        borrowed.
 * @param operation  1 sets, any other number deletes; database type 25 goes by it.
 * @param change     borrowed; on success gets type 25, the operation, the profile name as stored,
 *                   the message's VPN name (an empty one) and segment, other fields stay; untouched
 *                   otherwise; null is skipped.
 * @return 0; 1 when the message cannot be read, sets segment ID 0 or names no profile of the role.
 * @thread the role's own; takes no lock.
 */
uint32_t DOM_critical_ProcMicroSegMent(TLV_MSG* msg, uint16_t operation,
                                       DomDbUpdateReq* change) AAADOM_NOEXCEPT;

/**
 * Reads a profile of the calling role for management.
 * @param name      borrowed; any letter case.
 * @param flag_out  set to DOM_REPLY_KIND_RESULT when there is no such profile, else untouched; null
 *                  is skipped.
 * @return returned, destroy with TLV_Destroy: the default segment, set or not, as code 149; an end
 *         message with result 12 when there is no such profile; null when memory is short.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_critical_ProcProfileGet(const char* name, uint16_t* flag_out) AAADOM_NOEXCEPT;

/**
 * Reads a VPN of a profile of the calling role for management.
 * @param profile_name  borrowed; any letter case.
 * @param vpn_name      borrowed; cut to 31 characters; its case matters.
 * @param flag_out      set to DOM_REPLY_KIND_RESULT with an end message, else untouched; null is
 *                      skipped.
 * @return returned, destroy with TLV_Destroy: the segment as code 148; an end message with result
 *         12 when the profile or the VPN does not exist or its message could not be built; null
 *         when that could not be built either.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_critical_ProcProfileVpnGet(const char* profile_name, const char* vpn_name,
                                        uint16_t* flag_out) AAADOM_NOEXCEPT;

/**
 * Reads the profile of the calling role that follows a name (DOM_critical_FindBiggerProfile).
 * @param name  borrowed; not cut; empty = the first profile.
 * @return returned, destroy with TLV_Destroy: the default segment, set or not, as code 149; null
 *         when no profile follows, for a null name and when memory is short.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_critical_ProcProfileGetBulk(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the VPN of the calling role that follows a VPN of a profile. The walk starts in the named
 * profile (any letter case), or in the one that follows the name when there is none or the name is
 * empty; it takes the VPN that follows `vpn_name_inout` (empty = the first one) and goes on to the
 * profiles that follow, over those without VPNs, until it meets a VPN.
 * @param profile_name    borrowed; not cut.
 * @param vpn_name_inout  at least one byte; borrowed; made empty when the walk enters another
 *                        profile than the one it started in, else unchanged, also at the end: the
 *                        VPN that was met is named by the message.
 * @return returned, destroy with TLV_Destroy: the VPN's segment as code 148; null when no VPN
 *         follows, for a null argument and when memory is short.
 * @thread the role's own; takes no lock.
 */
TLV_MSG* DOM_critical_ProcProfileVpnGetBulk(const char* profile_name,
                                            char* vpn_name_inout) AAADOM_NOEXCEPT;

/**
 * Sends every critical profile in list order: its name (code 147), its default segment (code
 * 149) when the ID is not 0, its VPNs (code 148), each with operation 0 inside the daemon's
 * head (5, 4). A profile whose name message cannot be built is left out with its segments; another
 * message that cannot be built or sent is left out alone.
 * @param target  descriptor of the peer; nothing is sent for a negative one.
 * @thread of the working role, nothing is sent on the configuration thread; takes no lock, the
 *         caller holds none. Waits at most 60 s a message.
 */
void DOM_SyncAllCriticalProfile(int32_t target) AAADOM_NOEXCEPT;

/**
 * Sends a profile's default segment when its ID is not 0, to where DOM_BatchSyncCfgType leads:
 * neither the role nor the sign of the target is looked at first.
 * @param target   as of DOM_BatchSyncCfgType.
 * @param profile  borrowed; null is ignored.
 * @thread the role's own; takes no lock, the caller holds none.
 */
void DOM_SyncCriticalMicroSegment(int32_t target, CriticalProfile* profile) AAADOM_NOEXCEPT;

/**
 * Sends a profile's VPNs bucket by bucket, each from its head, not in name order, to where
 * DOM_BatchSyncCfgType leads: neither the role nor the sign of the target is looked at first.
 * @param target   as of DOM_BatchSyncCfgType.
 * @param profile  borrowed; null is ignored.
 * @thread the role's own; takes no lock, the caller holds none.
 */
void DOM_SyncCriticalVPN(int32_t target, CriticalProfile* profile) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
