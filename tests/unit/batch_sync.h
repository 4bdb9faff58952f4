// What the synchronisation tests look at: the heads around a message, and the daemon's slots that a
// batch to a descriptor leaves alone.
#pragma once

#include <aaadom/service.h>
#include <gtest/gtest.h>
#include <platform/aaa_tlv.h>

#include <string>

#include "base/message.h"
#include "fakes/fake_platform.h"
#include "fakes/role.h"

namespace aaadom {

/// The message inside both heads.
inline TlvPtr BodyInHeads(const std::string& image, uint32_t want_type, uint32_t want_sub_type,
                          uint32_t want_operation) {
    const TlvPtr record(fake::Parse(image));
    TLV_ITER* it = TLV_GetFirst(record.get());
    EXPECT_EQ(AAA_GetUINTTlvValue(record.get(), it), want_type);
    it = TLV_GetNext(record.get(), it);
    EXPECT_EQ(AAA_GetUINTTlvValue(record.get(), it), want_sub_type);
    const TlvPtr request(AAA_DelAaadHead(record.get()));
    uint32_t operation = 99;
    TlvPtr body(AAA_DelOpHead(request.get(), &operation));
    EXPECT_EQ(operation, want_operation);
    return body;
}

/// Calls of slots 12 and 14 since CountSlotCalls().
inline int to_config_thread = 0;
inline int to_pam = 0;
/// Takes the daemon's table: both roles, and the two slots counted.
inline void CountSlotCalls() {
    to_config_thread = to_pam = 0;
    AAADService service = fake::RoleService();
    service.sync_msg_to_cfg_thr = [](uint32_t, uint32_t, TLV_MSG* msg) {
        ++to_config_thread;
        TLV_Destroy(msg);
        return 0u;
    };
    service.cfg_thr_msg_to_pam = [](uint32_t, TLV_MSG*) {
        ++to_pam;
        return 0u;
    };
    DOM_SetAAADService(&service);
}

}  // namespace aaadom
