#include "nas_id_changes.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/nas_id.h>
#include <aaadom/nas_id_codec.h>

#include <cstring>

#include "request.h"
#include "short_text.h"

namespace aaad {

static_assert(sizeof(Request::name) == DOM_NASID_NAME_SIZE);

namespace {

using Name = ShortText;
static_assert(sizeof(Name) == DOM_NASID_NAME_SIZE);

uint16_t Presence(const Request& request) {
    return request.operation == DOM_OP_SET ? DOM_PRESENT : DOM_ABSENT;
}

/// What memory took and the database refused counts as applied but not saved: the transaction is
/// given up and memory is loaded again.
void Save(Request& request, DomDbUpdateReq& change) {
    request.working_result = request.result;
    if (request.result != DOM_NASID_OK) return;
    if (DOM_SetDataToDB(&change) != DOM_OK) request.result = AAAD_ERR_NOT_SAVED;
}

/// Finds the spelling under which the working role holds a profile. There is no look-up by name
/// alone; an addition tells it, and is taken back when the profile was not there.
uint32_t FindStoredSpelling(const Name& asked, Name& stored) {
    const uint32_t result = DOM_ProcNasIdProfileCfg(asked, DOM_PRESENT, stored, nullptr);
    if (result == DOM_NASID_UNCHANGED) return DOM_NASID_OK;
    if (result == DOM_NASID_OK) (void)DOM_ProcNasIdProfileCfg(asked, DOM_ABSENT, nullptr, nullptr);
    return DOM_NASID_FAILED;
}

}  // namespace

uint32_t CheckNasIdProfile(TLV_MSG* body, uint32_t) {
    return HasName(body, DOM_TLV_NASID_PROFILE) ? DOM_OK : AAAD_ERR_MALFORMED;
}

uint32_t CheckNasIdBinding(TLV_MSG* body, uint32_t operation) {
    const uint32_t result = CheckNasIdProfile(body, operation);
    if (result != DOM_OK) return result;
    ShortText nas_id;
    if (ReadShortText(body, DOM_TLV_NASID, nas_id) == ShortTextState::kUnusable) {
        return AAAD_ERR_MALFORMED;
    }
    int vlans = 0;
    for (TLV_ITER* it = TLV_GetFirst(body); it != nullptr; it = TLV_GetNext(body, it)) {
        if (TLV_GetTypeByIterator(body, it) != DOM_TLV_VLAN_ID) continue;
        if (TLV_GetLenByIterator(body, it) != sizeof(uint16_t)) return AAAD_ERR_MALFORMED;
        ++vlans;
    }
    return vlans == 1 ? DOM_OK : AAAD_ERR_MALFORMED;
}

void ApplyNasIdProfile(Request& request) {
    Name asked = {};
    (void)DOM_DecodeNasIdProfile(request.body.get(), asked);  // checked before
    Name stored = {};
    DomDbUpdateReq change{};
    request.result = DOM_ProcNasIdProfileCfg(asked, Presence(request), stored, &change);
    const char* name = request.result == DOM_NASID_OK ? change.nas_id_profile_name
                       : stored[0] != '\0'            ? stored
                                                      : asked;
    memcpy(request.name, name, sizeof request.name);
    request.name_type = DOM_TLV_NASID_PROFILE;
    Save(request, change);
}

void ApplyNasIdBinding(Request& request) {
    Name asked = {};
    Name nas_id = {};
    uint16_t vlan_id = 0;
    (void)DOM_DecodeNasIdBindVlanId(request.body.get(), asked, nas_id, &vlan_id);  // checked before
    Name stored = {};
    DomDbUpdateReq change{};
    // Database keys and the deletion of a profile compare names exactly; look-ups do not. So every
    // binding is made under the profile's own spelling.
    request.result = FindStoredSpelling(asked, stored);
    if (request.result == DOM_NASID_OK) {
        request.result =
            DOM_ProcNasIdBindVlanIdCfg(nas_id, vlan_id, Presence(request), stored, &change);
    }
    Save(request, change);
}

}  // namespace aaad
