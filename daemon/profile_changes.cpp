#include "profile_changes.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>
#include <platform/aaa_tlv.h>

#include <cstring>

#include "request.h"
#include "short_text.h"

namespace aaad {

static_assert(sizeof(ShortText) == DOM_PROFILE_NAME_SIZE);
static_assert(sizeof(Request::name) == DOM_PROFILE_NAME_SIZE);

namespace {

bool IsUsable(TLV_MSG* body, uint16_t type) {
    ShortText text;
    return ReadShortText(body, type, text) != ShortTextState::kUnusable;
}

void NameProfile(Request& request, uint16_t type, const char* (*stored_spelling)(const char*)) {
    (void)ReadShortText(request.body.get(), type, request.name);
    const char* stored = stored_spelling(request.name);
    if (stored != nullptr) memcpy(request.name, stored, sizeof request.name);
    request.name_type = type;
}

/// `body` is consumed. Without memory the request has no message, and the applier refuses it.
void Replace(Request& request, TLV_MSG* body) {
    request.body.reset(body);
    request.message.reset(AAA_AddOpHead(request.operation, body));
}

}  // namespace

uint32_t CheckCriticalProfile(TLV_MSG* body, uint32_t) {
    return HasName(body, DOM_TLV_CRITICAL_PROFILE_NAME) ? DOM_OK : AAAD_ERR_MALFORMED;
}

uint32_t CheckCriticalVpn(TLV_MSG* body, uint32_t) {
    // A walk asks for the first VPN with an empty name, so it would never get past such an entry.
    return HasName(body, DOM_TLV_CRITICAL_PROFILE_NAME) &&
                   HasName(body, DOM_TLV_CRITICAL_VPN_NAME) &&
                   IsUsable(body, DOM_TLV_CRITICAL_SEGMENT_NAME)
               ? DOM_OK
               : AAAD_ERR_MALFORMED;
}

uint32_t CheckCriticalSegment(TLV_MSG* body, uint32_t) {
    return HasName(body, DOM_TLV_CRITICAL_PROFILE_NAME) &&
                   IsUsable(body, DOM_TLV_CRITICAL_SEGMENT_NAME)
               ? DOM_OK
               : AAAD_ERR_MALFORMED;
}

uint32_t CheckAuthorProfile(TLV_MSG* body, uint32_t) {
    return HasName(body, DOM_TLV_AUTHOR_PROFILE_NAME) ? DOM_OK : AAAD_ERR_MALFORMED;
}

uint32_t CheckAuthorVpn(TLV_MSG* body, uint32_t) {
    return HasName(body, DOM_TLV_AUTHOR_PROFILE_NAME) && HasName(body, DOM_TLV_AUTHOR_VPN_NAME) &&
                   IsUsable(body, DOM_TLV_AUTHOR_SEGMENT_NAME)
               ? DOM_OK
               : AAAD_ERR_MALFORMED;
}

uint32_t CheckAuthorSegment(TLV_MSG* body, uint32_t) {
    return HasName(body, DOM_TLV_AUTHOR_PROFILE_NAME) && IsUsable(body, DOM_TLV_AUTHOR_SEGMENT_NAME)
               ? DOM_OK
               : AAAD_ERR_MALFORMED;
}

void NameCriticalProfile(Request& request) {
    NameProfile(request, DOM_TLV_CRITICAL_PROFILE_NAME, [](const char* name) -> const char* {
        const CriticalProfile* profile = DOM_critical_FindProfile(name);
        return profile != nullptr ? profile->name : nullptr;
    });
}

void NameAuthorProfile(Request& request) {
    NameProfile(request, DOM_TLV_AUTHOR_PROFILE_NAME, [](const char* name) -> const char* {
        const AuthorProfile* profile = DOM_author_FindProfile(name);
        return profile != nullptr ? profile->name : nullptr;
    });
}

void ClearDeletedCriticalSegment(Request& request) {
    if (request.operation == DOM_OP_SET) return;
    CriticalProfileMsg cleared{};
    (void)ReadShortText(request.body.get(), DOM_TLV_CRITICAL_PROFILE_NAME, cleared.profile_name);
    Replace(request, DOM_critical_tlv_EncodeDefaultCritical(&cleared));
}

void ClearDeletedAuthorSegment(Request& request) {
    if (request.operation == DOM_OP_SET) return;
    AuthorProfileMsg cleared{};
    (void)ReadShortText(request.body.get(), DOM_TLV_AUTHOR_PROFILE_NAME, cleared.profile_name);
    Replace(request, DOM_author_tlv_EncodeDefaultAuthor(&cleared));
}

}  // namespace aaad
