/* Domains in messages: whole records, walks, rows and single settings. */
#ifndef AAADOM_DOMAIN_CODEC_H
#define AAADOM_DOMAIN_CODEC_H

#include <aaadom/types.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define DOM_AUTHOR_ENTRY_SIZE 100u
#define DOM_AUTHOR_ENTRY_MAX 128u

/** One list entry of an authorization profile as code 159 reports it. */
typedef struct AAAAuthorEntry {
    uint32_t number;
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

TLV_MSG* DOM_EncodeDomain(const char* name);
DomainInfo* DOM_DecodeDomain(TLV_MSG* msg);
TLV_MSG* DOM_EncodeNextDomain(const char* name, char* next_name_out);
TLV_MSG* DOM_EncodeMIBNextDomain(const char* name, uint32_t name_length, uint32_t* status_out);
TLV_MSG* DOM_EncodeNetConfNextDomain(const char* name, uint32_t* status_out);
TLV_MSG* DOM_EncodeDomainInfo(const char* name, uint32_t state, uint32_t row_status);
TLV_MSG* DOM_EncodeDomainInfoFlag(uint64_t flags, const char* name, uint32_t state,
                                  uint32_t row_status);
uint32_t DOM_DecodeDomainInfoTable(TLV_MSG* msg, DomainMibRow* row, uint64_t* flags);
TLV_MSG* DOM_EncodeDomainSchemeFlag(uint64_t flags, const char* domain, uint32_t row_status,
                                    uint32_t aaa_type, uint32_t scheme_index, uint32_t method_type,
                                    const char* scheme_name);
TLV_MSG* DOM_EncodeMibSchemeTable(uint32_t* status_out);
TLV_MSG* DOM_EncodeMibNextSchemeTable(const char* domain, uint32_t name_length,
                                      uint32_t scheme_index, uint32_t* status_out);
uint32_t DOM_DecodeMibSchemeTable(TLV_MSG* msg, MibSchemeRow* row);
TLV_MSG* DOM_EncodeSchemeIndex(const char* domain, uint32_t name_length, uint32_t scheme_index);
uint32_t DOM_DecodeSchemeIndex(TLV_MSG* msg, uint32_t size, char* domain, uint32_t* name_length,
                               uint32_t* scheme_index);
TLV_MSG* DOM_EncodeDomainName(const char* name);
uint32_t DOM_DecodeDomainName(TLV_MSG* msg, uint32_t size, char* name);
TLV_MSG* DOM_EncodeDomainNameInfo(const char* name);
uint32_t DOM_DecodeDomainNameInfo(TLV_MSG* msg, uint32_t size, char* name);
TLV_MSG* DOM_EncodeDomainNameAndLen(const char* name, uint32_t name_length);
uint32_t DOM_DecodeDomainNameAndLen(TLV_MSG* msg, uint32_t size, char* name, uint32_t* name_length);
TLV_MSG* DOM_EncodeDefaultDomain(const char* name, uint32_t value_18);
uint32_t DOM_DecodeDefaultDomain(TLV_MSG* msg, uint32_t size, char* name, uint32_t* value_18);
TLV_MSG* DOM_EncodeUnknownDomain(const char* name);
uint32_t DOM_DecodeUnknownDomain(TLV_MSG* msg, uint32_t size, char* name);
TLV_MSG* DOM_EncodeGlobalDomain(const char* default_name, const char* unknown_name,
                                uint32_t device_id, uint32_t value_18);
uint32_t DOM_DecodeGlobalDomain(TLV_MSG* msg, uint32_t default_size, char* default_name,
                                uint32_t unknown_size, char* unknown_name, uint32_t* device_id,
                                uint32_t* value_18);
TLV_MSG* DOM_EncodeDomainCount(uint32_t count);
uint32_t DOM_DecodeDomainCount(TLV_MSG* msg, uint32_t* count);
TLV_MSG* DOM_EncodeMethList(const char* name, const MethodList* list, const MethodEntry* extra);
uint32_t DOM_DecodeMethList(TLV_MSG* msg, uint32_t size, char* name, MethodList* list,
                            MethodEntry* extra);
TLV_MSG* DOM_EncodeState(const char* name, uint16_t state);
uint32_t DOM_DecodeState(TLV_MSG* msg, uint32_t size, char* name, uint16_t* state);
TLV_MSG* DOM_EncodeSessionTime(const char* name, uint16_t session_time);
uint32_t DOM_DecodeSessionTime(TLV_MSG* msg, uint32_t size, char* name, uint16_t* session_time);
TLV_MSG* DOM_EncodeSessionLimit(uint32_t session_class, uint32_t limit);
uint32_t DOM_DecodeSessionLimit(TLV_MSG* msg, uint32_t* session_class, uint32_t* limit);
TLV_MSG* DOM_EncodeSessionCount(uint32_t session_class, uint32_t count);
uint32_t DOM_DecodeSessionCount(TLV_MSG* msg, uint32_t* session_class, uint32_t* count);
TLV_MSG* DOM_EncodeAllSessionLimit(const SessionLimits* limits);
uint32_t DOM_DecodeAllSessionLimit(TLV_MSG* msg, SessionLimits* limits);
TLV_MSG* DOM_EncodeAuthorAttr(uint32_t kind, const char* name, const AuthorAttr* attr);
uint32_t DOM_DecodeAuthorAttr(TLV_MSG* msg, uint32_t* kind, uint32_t size, char* name,
                              AuthorAttr* attr);
TLV_MSG* DOM_EncodeRedirectMoveTemporarily(const char* name);
uint32_t DOM_DecodeRedirectMoveTemporarily(TLV_MSG* msg, uint32_t size, char* name);
TLV_MSG* DOM_EncodeAAAAuthorProfileNum(uint32_t number);
TLV_MSG* DOM_EncodeAAAAuthorProfileNumRequest(void);
uint32_t DOM_DecodeAAAAuthorProfileNum(TLV_MSG* msg);
TLV_MSG* DOM_EncodeAAAAuthorProfileName(const char* profile_name);
uint32_t DOM_DecodeAAAAuthorProfileName(TLV_MSG* msg, uint32_t size, char* profile_name);
TLV_MSG* DOM_EncodeAAAAuthorProfile(const AAAAuthorProfile* profile);
uint32_t DOM_DecodeAAAAuthorProfile(TLV_MSG* msg, AAAAuthorProfile* profile);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
