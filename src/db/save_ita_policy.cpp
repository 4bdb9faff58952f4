// Accounting policies: one record a policy, written and deleted by the policies' own functions
// through their own handle.
#include <aaadom/accounting_policy_codec.h>

#include "base/text.h"
#include "db/save.h"

namespace aaadom {

/// A deletion fails also when it worked: that is what its callers get from every deletion of an
/// accounting policy, and what makes them look for the key.
uint32_t SaveItaPolicy(const DomDbUpdateReq& request) {
    char name[DOM_ITA_NAME_SIZE];
    CopyField(name, request.ita_policy_name);
    return DOM_ita_db_SetPolicy(name, request.operation);
}

}  // namespace aaadom
