/* Domains in messages: whole records, walks, rows and single settings. */
#ifndef AAADOM_DOMAIN_CODEC_H
#define AAADOM_DOMAIN_CODEC_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** Length of TLV 435, one list entry of code 159, in bytes. */
#define DOM_AUTHOR_ENTRY_SIZE 100u
/** Most entries of one authorization profile. */
#define DOM_AUTHOR_ENTRY_MAX 128u

/** One list entry of an authorization profile as code 159 reports it. Texts have at most 31
 * characters and the terminator. */
typedef struct AAAAuthorEntry {
    uint32_t number; /* host byte order; big-endian on the wire */
    char text1[32];
    char text2[32];
} AAAAuthorEntry;
/** An authorization profile as code 159 reports it. */
typedef struct AAAAuthorProfile {
    char profile_name[32];
    uint32_t value_434;
    char segment_name[32];
    uint32_t segment_id;
    uint32_t entry_count; /* at most DOM_AUTHOR_ENTRY_MAX */
    AAAAuthorEntry entries[DOM_AUTHOR_ENTRY_MAX];
} AAAAuthorProfile;

/**
 * Encodes a whole domain of the calling role: code 0, then 2, 1, 3, 4, 6, 38, 51, 76, 353, 374,
 * 375, 376, 415, 358, 411, one 7 for each method list (rows 0 to 5, columns 0 to 11) and 24.
 * Stored as database type 1.
 * @param name  Domain name in any case, borrowed.
 * @return returned, destroy with TLV_Destroy; null for an unknown or null domain and when memory
 *         is short.
 * @thread any; takes the calling role's table lock, the caller holds none.
 */
TLV_MSG* DOM_EncodeDomain(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads a whole domain from a message of code 0 or 14. Starts from zeros with limit 0x7FFFFFFF,
 * address type 7 and dual-stack mode 1; it has the method lists that the message has, and no
 * default ones. TLVs 3 and 4 are not read. Of two lists for one place the later wins.
 * Authorization attributes count only when TLV 24 is the last of the message; otherwise they are
 * the defaults.
 * @param msg  borrowed.
 * @return returned, destroy with DOM_DestroyDomain; null for another or no code, a list outside
 *         the 6 x 12 places, a value that should be a nested message and is none, and when memory
 *         is short.
 * @thread any; takes no lock.
 */
DomainInfo* DOM_DecodeDomain(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Walks the domains of the calling role in table order; each message is as of DOM_EncodeDomain.
 * @param name  The domain before, empty for the first; borrowed.
 * @param next_name_out  Receives the name of the encoded domain, 256 bytes; may be `name`;
 *                       untouched without a message; null is skipped.
 * @return returned, destroy with TLV_Destroy; null at the end, for an unknown or null name and
 *         when memory is short.
 * @thread any; takes the calling role's table lock, the caller holds none.
 */
TLV_MSG* DOM_EncodeNextDomain(const char* name, char* next_name_out) AAADOM_NOEXCEPT;

/**
 * Walks the domains as rows are ordered: shorter names first, then by character. The order is the
 * working role's, the records are the calling role's.
 * @param name  The key before, borrowed; may be null when `name_length` is 0.
 * @param name_length  Its length; 0 asks for the first domain.
 * @param status_out  Receives DOM_WALK_OK with a message; DOM_WALK_NONE when the order holds no
 *                    domain at all; DOM_WALK_NO_MESSAGE otherwise, the end of a walk included.
 *                    Null is skipped.
 * @return returned, destroy with TLV_Destroy; null without a message.
 * @thread any; takes the calling role's table lock, the caller holds none.
 */
TLV_MSG* DOM_EncodeMIBNextDomain(const char* name, uint32_t name_length,
                                 uint32_t* status_out) AAADOM_NOEXCEPT;

/**
 * Walks the domains in plain text order. The order is the working role's, the records are the
 * calling role's.
 * @param name  The domain before, empty for the first; borrowed.
 * @param status_out  Receives DOM_WALK_OK with a message, DOM_WALK_NONE when there is no further
 *                    domain, DOM_WALK_NO_MESSAGE when memory is short or `name` is null. Null is
 *                    skipped.
 * @return returned, destroy with TLV_Destroy; null without a message.
 * @thread any; takes the calling role's table lock, the caller holds none.
 */
TLV_MSG* DOM_EncodeNetConfNextDomain(const char* name, uint32_t* status_out) AAADOM_NOEXCEPT;

/**
 * Encodes a row of the domain table: code 14, TLVs 2, 6, 33.
 * @param name  Domain name, borrowed; cut to 255 characters.
 * @param state  Carried as 32 bits; the table keeps 16.
 * @param row_status  4 = create, 1 = change.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDomainInfo(const char* name, uint32_t state,
                              uint32_t row_status) AAADOM_NOEXCEPT;

/**
 * The same with the flags of the fields that count first: code 14, TLVs 32, 2, 6, 33.
 * @param flags  Bit 0: the state.
 * @param name  Domain name, borrowed; cut to 255 characters.
 * @param state  Carried as 32 bits; the table keeps 16.
 * @param row_status  4 = create, 1 = change.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDomainInfoFlag(uint64_t flags, const char* name, uint32_t state,
                                  uint32_t row_status) AAADOM_NOEXCEPT;

/**
 * Reads a row of the domain table from a message of code 0 or 14: TLVs 2, 6, 32. The outputs are
 * cleared first.
 * @param msg  borrowed.
 * @param row  Receives name (cut to 255 characters) and state; null is skipped.
 * @param flags  Receives the flags; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for another or no code and without a name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDomainInfoTable(TLV_MSG* msg, DomainMibRow* row,
                                   uint64_t* flags) AAADOM_NOEXCEPT;

/**
 * Encodes a row of the scheme table: code 15, TLVs 32, 2, 33, 8, 30, 12, 13.
 * @param flags  Flags of the fields that count.
 * @param domain  Domain name, borrowed; cut to 255 characters.
 * @param row_status  4 = create, 1 = change.
 * @param aaa_type  Row 0, 4 or 5.
 * @param scheme_index  From 1 upward.
 * @param method_type  METHOD_*.
 * @param scheme_name  borrowed; cut to 32 characters.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDomainSchemeFlag(uint64_t flags, const char* domain, uint32_t row_status,
                                    uint32_t aaa_type, uint32_t scheme_index, uint32_t method_type,
                                    const char* scheme_name) AAADOM_NOEXCEPT;

/**
 * Encodes the first row of the scheme table: code 15, TLVs 2, 33 (always 1, active), 8, 30, 12,
 * 13.
 * @param status_out  Receives DOM_WALK_OK with a message, DOM_WALK_NONE when the table has no row
 *                    (DOM_IsSchemeTableNull), DOM_WALK_NO_MESSAGE otherwise. Null is skipped.
 * @return returned, destroy with TLV_Destroy; null without a message.
 * @thread any; takes the calling role's table lock, the caller holds none.
 */
TLV_MSG* DOM_EncodeMibSchemeTable(uint32_t* status_out) AAADOM_NOEXCEPT;

/**
 * Encodes the row of the scheme table after a key, as DOM_EncodeMibSchemeTable does.
 * @param domain  Domain name of the key, borrowed.
 * @param name_length  Its length.
 * @param scheme_index  Scheme index of the key.
 * @param status_out  As DOM_EncodeMibSchemeTable; the end of a table that has rows gives
 *                    DOM_WALK_NO_MESSAGE.
 * @return returned, destroy with TLV_Destroy; null without a message.
 * @thread any; takes the calling role's table lock, the caller holds none.
 */
TLV_MSG* DOM_EncodeMibNextSchemeTable(const char* domain, uint32_t name_length,
                                      uint32_t scheme_index, uint32_t* status_out) AAADOM_NOEXCEPT;

/**
 * Reads a row of the scheme table: TLVs 2, 8, 30, 12, 13. The row status is the request's (TLV
 * 33) and is not read.
 * @param msg  borrowed.
 * @param row  Keeps what the message lacks, so the caller presets it. Name cut to 255, scheme
 *             name to 32 characters.
 * @return 0; DOM_ERR_FAILED without a domain name, the row then untouched, and for null.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeMibSchemeTable(TLV_MSG* msg, MibSchemeRow* row) AAADOM_NOEXCEPT;

/**
 * Encodes the key of a scheme row: code 13, TLVs 2, 31, 30.
 * @param domain  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param name_length  Its length.
 * @param scheme_index  From 1 upward.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeSchemeIndex(const char* domain, uint32_t name_length,
                               uint32_t scheme_index) AAADOM_NOEXCEPT;

/**
 * Reads the key of a scheme row (code 13; the code itself is not looked at). Takes the first TLV
 * of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `domain` in bytes; a longer name is cut. 0 fails.
 * @param domain  Receives the domain name; null is skipped.
 * @param name_length  Receives the length; 0 when missing; null is skipped.
 * @param scheme_index  Receives the index; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeSchemeIndex(TLV_MSG* msg, uint32_t size, char* domain, uint32_t* name_length,
                               uint32_t* scheme_index) AAADOM_NOEXCEPT;

/**
 * Encodes a domain name, to create, delete or get that domain: code 3, TLV 2.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDomainName(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads a domain name, to create, delete or get that domain (code 3; the code itself is not
 * looked at). Takes the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDomainName(TLV_MSG* msg, uint32_t size, char* name) AAADOM_NOEXCEPT;

/**
 * Encodes the domain name of a get-next request: code 165, TLV 2.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDomainNameInfo(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the domain name of a get-next request (code 165; the code itself is not looked at). Takes
 * the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDomainNameInfo(TLV_MSG* msg, uint32_t size, char* name) AAADOM_NOEXCEPT;

/**
 * Encodes the key of a domain row: code 12, TLVs 2, 31.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param name_length  Length of the name, carried unchanged.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDomainNameAndLen(const char* name, uint32_t name_length) AAADOM_NOEXCEPT;

/**
 * Reads the key of a domain row (code 12; the code itself is not looked at). Takes the first TLV
 * of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param name_length  Receives the length; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDomainNameAndLen(TLV_MSG* msg, uint32_t size, char* name,
                                    uint32_t* name_length) AAADOM_NOEXCEPT;

/**
 * Encodes the default domain: code 1, TLVs 2, 18. Stored as database type 2.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param value_18  Carried for the front ends; the library sends 0 and never looks at it.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDefaultDomain(const char* name, uint32_t value_18) AAADOM_NOEXCEPT;

/**
 * Reads the default domain (code 1; the code itself is not looked at).
 * Takes the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param value_18  Receives the value; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDefaultDomain(TLV_MSG* msg, uint32_t size, char* name,
                                 uint32_t* value_18) AAADOM_NOEXCEPT;

/**
 * Encodes the unknown domain: code 18, TLV 37. Stored as database type 6.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeUnknownDomain(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the unknown domain (code 18; the code itself is not looked
 * at). Takes the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeUnknownDomain(TLV_MSG* msg, uint32_t size, char* name) AAADOM_NOEXCEPT;

/**
 * Encodes the device-wide settings: code 29, TLVs 2, 37, 49, 18.
 * @param default_name  Default domain, borrowed; empty when there is none; sent whole, readers keep
 *                      255 characters.
 * @param unknown_name  Unknown domain, likewise.
 * @param device_id  Device identifier.
 * @param value_18  Carried for the front ends; the library sends 0 and never looks at it.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeGlobalDomain(const char* default_name, const char* unknown_name,
                                uint32_t device_id, uint32_t value_18) AAADOM_NOEXCEPT;

/**
 * Reads the device-wide settings (code 29; the code itself is not looked at). Takes the first TLV
 * of each type.
 * @param msg  borrowed.
 * @param default_size  Capacity of `default_name` in bytes; a longer name is cut. 0 fails.
 * @param default_name  Receives the default domain, empty when the device has none; null is
 *                      skipped.
 * @param unknown_size  Capacity of `unknown_name` in bytes, likewise.
 * @param unknown_name  Receives the unknown domain; empty when missing; null is skipped.
 * @param device_id  Receives the device identifier; 0 when missing; null is skipped.
 * @param value_18  Receives the value; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message, a message without the default domain's TLV (a
 *         refused read; the TLV may hold an empty name) and a capacity of 0.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeGlobalDomain(TLV_MSG* msg, uint32_t default_size, char* default_name,
                                uint32_t unknown_size, char* unknown_name, uint32_t* device_id,
                                uint32_t* value_18) AAADOM_NOEXCEPT;

/**
 * Encodes the number of domains: code 2, TLV 14.
 * @param count  Number of domains.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeDomainCount(uint32_t count) AAADOM_NOEXCEPT;

/**
 * Reads the number of domains (code 2; the code itself is not looked at). Takes the first TLV of
 * each type.
 * @param msg  borrowed.
 * @param count  Receives the number; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the number (a refused read).
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeDomainCount(TLV_MSG* msg, uint32_t* count) AAADOM_NOEXCEPT;

/**
 * Encodes one method list of a domain: code 4, TLVs 2, 8, 9, one 10 for each item up to the first
 * empty one, 50.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param list  borrowed; its own row and column travel unchecked.
 * @param extra  Extra item of the service column, borrowed; null sends an empty one.
 * @return returned, destroy with TLV_Destroy; null for a null name or list and when memory is
 *         short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeMethList(const char* name, const MethodList* list,
                            const MethodEntry* extra) AAADOM_NOEXCEPT;

/**
 * Reads one method list of a domain (code 4; the code itself is not looked at).
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param list  Receives the list, missing parts zero; untouched on failure; null is skipped.
 * @param extra  Receives the extra item, zero when missing; untouched on failure; null is
 *               skipped.
 * @return 0; DOM_ERR_FAILED for a null message, without a name, for a row above 5 or a column
 *         above 11, for an item that is no nested message, and when memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeMethList(TLV_MSG* msg, uint32_t size, char* name, MethodList* list,
                            MethodEntry* extra) AAADOM_NOEXCEPT;

/**
 * Encodes the state of a domain: code 7, TLVs 2, 6.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param state  Carried as 32 bits.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeState(const char* name, uint16_t state) AAADOM_NOEXCEPT;

/**
 * Reads the state of a domain (code 7; the code itself is not looked at). Takes the first TLV of
 * each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param state  Receives the low 16 bits; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeState(TLV_MSG* msg, uint32_t size, char* name, uint16_t* state) AAADOM_NOEXCEPT;

/**
 * Encodes the session time of a domain: code 19, TLVs 2, 38.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param session_time  Carried as 32 bits.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeSessionTime(const char* name, uint16_t session_time) AAADOM_NOEXCEPT;

/**
 * Reads the session time of a domain (code 19; the code itself is not looked at). Takes the first
 * TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param session_time  Receives the low 16 bits; 0 when missing; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeSessionTime(TLV_MSG* msg, uint32_t size, char* name,
                               uint16_t* session_time) AAADOM_NOEXCEPT;

/**
 * Encodes the limit of one session class: code 8, one TLV whose type is the class.
 * @param session_class  19 to 23; carried as given.
 * @param limit  The value.
 * @return returned, destroy with TLV_Destroy; null for a class above 65535 and when memory is
 *         short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeSessionLimit(uint32_t session_class, uint32_t limit) AAADOM_NOEXCEPT;

/**
 * Reads the limit of one session class (code 8): the first TLV of type 19 to 23.
 * @param msg  borrowed.
 * @param session_class  Receives the class; null is skipped.
 * @param limit  Receives the value; null is skipped.
 * @return 0; DOM_ERR_FAILED, the outputs 0, when there is none and for a null message.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeSessionLimit(TLV_MSG* msg, uint32_t* session_class,
                                uint32_t* limit) AAADOM_NOEXCEPT;

/**
 * Encodes the count of one session class: code 9, one TLV whose type is the class.
 * @param session_class  19 to 23; carried as given.
 * @param count  The value.
 * @return returned, destroy with TLV_Destroy; null for a class above 65535 and when memory is
 *         short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeSessionCount(uint32_t session_class, uint32_t count) AAADOM_NOEXCEPT;

/**
 * Reads the count of one session class (code 9): the first TLV of type 19 to 23.
 * @param msg  borrowed.
 * @param session_class  Receives the class; null is skipped.
 * @param count  Receives the value; null is skipped.
 * @return 0; DOM_ERR_FAILED, the outputs 0, when there is none and for a null message.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeSessionCount(TLV_MSG* msg, uint32_t* session_class,
                                uint32_t* count) AAADOM_NOEXCEPT;

/**
 * Encodes all session limits: code 10, TLVs 19, 21, 20, 22, 23. Stored as database type 3.
 * @param limits  borrowed.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAllSessionLimit(const SessionLimits* limits) AAADOM_NOEXCEPT;

/**
 * Reads all session limits (code 10).
 * @param msg  borrowed.
 * @param limits  A class that the message lacks keeps its value.
 * @return 0; DOM_ERR_FAILED for null.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAllSessionLimit(TLV_MSG* msg, SessionLimits* limits) AAADOM_NOEXCEPT;

/**
 * Encodes authorization attributes of a domain: code 11, TLVs 25, 2, 24. TLV 24 carries the whole
 * block, the kind tells which part counts.
 * @param kind  Attribute kind, 0 to 26; carried unchanged.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @param attr  borrowed; its texts may fill their fields without a terminator.
 * @return returned, destroy with TLV_Destroy; null for null and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAuthorAttr(uint32_t kind, const char* name,
                              const AuthorAttr* attr) AAADOM_NOEXCEPT;

/**
 * Reads authorization attributes of a domain (code 11; the code itself is not looked at). An
 * unscaled rate (468 to 471) wins over the scaled one (71 to 74) wherever it stands.
 * @param msg  borrowed.
 * @param kind  Receives the kind, unchecked; null is skipped.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @param attr  Keeps what the message lacks, so the caller starts with DOM_InitAuthorAttr; null
 *              is skipped.
 * @return 0; DOM_ERR_FAILED for a null message, without kind, name or attributes, for
 *         attributes that are no nested message, and when memory is short.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAuthorAttr(TLV_MSG* msg, uint32_t* kind, uint32_t size, char* name,
                              AuthorAttr* attr) AAADOM_NOEXCEPT;

/**
 * Encodes the domain whose redirect is switched; the operation of the request says on or off:
 * code 130, TLV 2.
 * @param name  Domain name, borrowed; sent whole, readers keep 255 characters.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeRedirectMoveTemporarily(const char* name) AAADOM_NOEXCEPT;

/**
 * Reads the domain whose redirect is switched; the operation of the request says on or off (code
 * 130; the code itself is not looked at). Takes the first TLV of each type.
 * @param msg  borrowed.
 * @param size  Capacity of `name` in bytes, 256 takes every name; a longer name is cut. 0 fails.
 * @param name  Receives the domain name; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and a message without the name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeRedirectMoveTemporarily(TLV_MSG* msg, uint32_t size, char* name) AAADOM_NOEXCEPT;

/**
 * Encodes the number of authorization profiles: code 160, TLV 436.
 * @param number  The number.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAAAAuthorProfileNum(uint32_t number) AAADOM_NOEXCEPT;

/**
 * Encodes the request for that number: code 160 alone.
 * @return returned, destroy with TLV_Destroy; null when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAAAAuthorProfileNumRequest(void) AAADOM_NOEXCEPT;

/**
 * Reads the number of authorization profiles (code 160).
 * @param msg  borrowed.
 * @return the number; 0 for another or no code, without TLV 436 and for null.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAAAAuthorProfileNum(TLV_MSG* msg) AAADOM_NOEXCEPT;

/**
 * Encodes the request for one authorization profile: code 159, TLV 430.
 * @param profile_name  borrowed; the reader keeps 31 characters.
 * @return returned, destroy with TLV_Destroy; null for a null text and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAAAAuthorProfileName(const char* profile_name) AAADOM_NOEXCEPT;

/**
 * Reads the name of an authorization profile (code 159; the code itself is not looked at).
 * @param msg  borrowed.
 * @param size  Capacity of `profile_name` in bytes, 32 takes every name; a longer name is cut. 0
 *              fails.
 * @param profile_name  Receives the name; null is skipped.
 * @return 0; DOM_ERR_FAILED for a null message and without a name.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAAAAuthorProfileName(TLV_MSG* msg, uint32_t size,
                                        char* profile_name) AAADOM_NOEXCEPT;

/**
 * Encodes an authorization profile as a report: code 159, TLVs 430, 434, 431, 432, then one 435
 * of 100 bytes for each entry: big-endian number, two texts of 32 bytes, 32 zeros.
 * @param profile  borrowed; texts are cut to 31 characters.
 * @return returned, destroy with TLV_Destroy; null for null, for more than DOM_AUTHOR_ENTRY_MAX
 *         entries and when memory is short.
 * @thread any; takes no lock.
 */
TLV_MSG* DOM_EncodeAAAAuthorProfile(const AAAAuthorProfile* profile) AAADOM_NOEXCEPT;

/**
 * Reads the report of an authorization profile.
 * @param msg  borrowed.
 * @param profile  Cleared first; entries beyond DOM_AUTHOR_ENTRY_MAX are ignored.
 * @return 0; DOM_ERR_FAILED for a code other than 159, without a profile name, for an entry that
 *         is not 100 bytes long, and for null.
 * @thread any; takes no lock.
 */
uint32_t DOM_DecodeAAAAuthorProfile(TLV_MSG* msg, AAAAuthorProfile* profile) AAADOM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
