#include "profile_changes.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/profile.h>
#include <aaadom/profile_codec.h>

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

uint32_t CheckCriticalSegment(TLV_MSG* body, uint32_t operation) {
    CriticalProfileMsg segment{};
    if (!HasName(body, DOM_TLV_CRITICAL_PROFILE_NAME) ||
        !IsUsable(body, DOM_TLV_CRITICAL_SEGMENT_NAME) ||
        DOM_critical_tlv_DecodeDefaultCritical(body, &segment) != DOM_OK) {
        return AAAD_ERR_MALFORMED;
    }
    // The store takes over what is sent whatever the operation; the database drops the segment.
    // With an identifier the two would differ until the next start.
    return operation == DOM_OP_SET || segment.segment_id == 0 ? DOM_OK : AAAD_ERR_MALFORMED;
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

uint32_t CheckAuthorSegment(TLV_MSG* body, uint32_t operation) {
    AuthorProfileMsg segment{};
    if (!HasName(body, DOM_TLV_AUTHOR_PROFILE_NAME) ||
        !IsUsable(body, DOM_TLV_AUTHOR_SEGMENT_NAME) ||
        DOM_author_tlv_DecodeDefaultAuthor(body, &segment) != DOM_OK) {
        return AAAD_ERR_MALFORMED;
    }
    return operation == DOM_OP_SET || segment.segment_id == 0 ? DOM_OK : AAAD_ERR_MALFORMED;
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

}  // namespace aaad
