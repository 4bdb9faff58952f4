#include <aaadom/codes.h>
#include <aaadom/rows.h>

#include "mgmt/rows.h"

using namespace aaadom;

extern "C" {

uint32_t DOM_ProcDomainTable(TLV_MSG* msg, DomDbUpdateReq* change) noexcept {
    DomDbUpdateReq unasked{};
    return ApplyDomainRow(msg, change == nullptr ? unasked : *change);
}

uint32_t DOM_ProcSchemeTable(TLV_MSG* msg, uint16_t op, DomDbUpdateReq* change) noexcept {
    DomDbUpdateReq unasked{};
    return ApplySchemeRow(msg, op == DOM_PRESENT, change == nullptr ? unasked : *change);
}

}  // extern "C"
