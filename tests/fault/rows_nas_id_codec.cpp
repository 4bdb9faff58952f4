// Rows of nas_id_codec.h.
#include <aaadom/nas_id_codec.h>

#include "fault/outputs.h"
#include "fault/sweep.h"

namespace fault {
namespace {

const Rows rows{
    Encodes("DOM_EncodeNasIdProfile", [](Scene&) { return DOM_EncodeNasIdProfile(kNasIdProfile); }),
    Decodes("DOM_DecodeNasIdProfile", "msg_016_nas_id_profile", Into(DOM_DecodeNasIdProfile)),
    Encodes("DOM_EncodeNasidBindVlanId",
            [](Scene&) { return DOM_EncodeNasidBindVlanId(kNasIdProfile, "nas-7", 7); }),
    Decodes("DOM_DecodeNasIdBindVlanId", "msg_017_nas_id_binding", Into(DOM_DecodeNasIdBindVlanId)),
};

}  // namespace
}  // namespace fault
