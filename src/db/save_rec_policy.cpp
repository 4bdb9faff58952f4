// The recording policy, which its own store writes and deletes through its own handle.
#include <aaadom/recording_policy.h>

#include "db/save.h"

namespace aaadom {

uint32_t SaveRecPolicy(const DomDbUpdateReq& request) {
    return DOM_Rec_db_SetPolicy(request.rec_policy_index, request.operation);
}

}  // namespace aaadom
