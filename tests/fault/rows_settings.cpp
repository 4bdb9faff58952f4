// Rows of settings.h.
#include <aaadom/settings.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/settings_codec.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>

#include "fault/sweep.h"
#include "base/text.h"

namespace fault {
namespace {

const Rows rows{
    Reads("DOM_GetState", [](Scene&) { return DOM_GetState(kDomain); }).Good(DOM_DEF_STATE),
    Saves("DOM_SetDataToDB/domain", [](Scene&) { DomDbUpdateReq c{}; c.object_type = DOM_DB_DOMAIN; c.operation=1; aaadom::CopyText(c.object_name, kDomain); return DOM_SetDataToDB(&c); }).After([](Scene&){ DOM_SetState(kDomain, 0);}),
    Changes("DOM_AddDomainByName", [](Scene&) { return DOM_AddDomainByName("new"); }).Fails({DOM_ADD_FAILED}),
};

}  // namespace
}  // namespace fault
