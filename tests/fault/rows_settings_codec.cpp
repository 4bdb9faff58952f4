// Rows of settings_codec.h.
#include <aaadom/diagnostics.h>
#include <aaadom/settings_codec.h>

#include "fault/outputs.h"
#include "fault/sweep.h"

namespace fault {
namespace {

const Rows rows{
    Encodes("DOM_EncodeDeviceID", [](Scene&) { return DOM_EncodeDeviceID(20); }),
    Decodes("DOM_DecodeDeviceID", "msg_020_device_id", Into(DOM_DecodeDeviceID)),
    Encodes("DOM_EncodeUserAddrType", [](Scene&) { return DOM_EncodeUserAddrType(kDomain, 7); }),
    Decodes("DOM_DecodeUserAddrType", "msg_021_user_addr_type", Into(DOM_DecodeUserAddrType)),
    Encodes("DOM_EncodeAcctDualStackMode",
            [](Scene&) { return DOM_EncodeAcctDualStackMode(kDomain, 1); }),
    Decodes("DOM_DecodeAcctDualStackMode", "msg_030_acct_dual_stack",
            Into(DOM_DecodeAcctDualStackMode)),
    Encodes("DOM_EncodeDebugFlag", [](Scene&) { return DOM_EncodeDebugFlag(AAA_DBG_EVENT_BIT); }),
    Decodes("DOM_DecodeDebugFlag", "msg_145_debug_flag", Into(DOM_DecodeDebugFlag)),
    Encodes("DOM_EncodeAuthenEscapeRecover",
            [](Scene&) { return DOM_EncodeAuthenEscapeRecover(kDomain, 1, kOtherDomain, 2, 0); }),
    Decodes("DOM_DecodeAuthenEscapeRecover", "msg_144_escape_recover",
            Into(DOM_DecodeAuthenEscapeRecover)),
    Encodes("DOM_EncodeAuthRdFailPermitDomain",
            [](Scene&) { return DOM_EncodeAuthRdFailPermitDomain(kDomain, kOtherDomain, 0); }),
    Decodes("DOM_DecodeAuthRdFailPermitDomain", "msg_143_permit_domain",
            Into(DOM_DecodeAuthRdFailPermitDomain)),
    Encodes("DOM_EncodeAuthFailDomain",
            [](Scene&) { return DOM_EncodeAuthFailDomain(kDomain, kOtherDomain, 0, 2); }),
    Decodes("DOM_DecodeAuthFailDomain", "msg_132_auth_fail_domain", Into(DOM_DecodeAuthFailDomain)),
};

}  // namespace
}  // namespace fault
