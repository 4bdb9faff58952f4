// What the NAS-ID tests share: short calls and the tables' contents in chain order.
#pragma once

#include <aaadom/db_layout.h>
#include <aaadom/nas_id.h>

#include <cstring>
#include <string>
#include <vector>

#include "domain/nas_id_binding.h"
#include "domain/nas_id_profile.h"
#include "unit/domain/tables_fixture.h"

namespace aaadom {

class NasIdTest : public TablesTest {
  protected:
    static uint32_t AddProfile(const std::string& name) {
        return DOM_ProcNasIdProfileCfg(name.c_str(), 1, nullptr, nullptr);
    }
    static uint32_t DeleteProfile(const std::string& name) {
        return DOM_ProcNasIdProfileCfg(name.c_str(), 0, nullptr, nullptr);
    }
    static uint32_t Bind(const std::string& profile, const std::string& nas_id, uint16_t vlan) {
        return DOM_AddNasIdBindVlanId(profile.c_str(), nas_id.c_str(), vlan);
    }
    static uint32_t Unbind(const std::string& profile, const std::string& nas_id, uint16_t vlan) {
        return DOM_ProcNasIdBindVlanIdCfg(nas_id.c_str(), vlan, 0, profile.c_str(), nullptr);
    }
    /// The NAS-ID, or "-" when the look-up finds none.
    static std::string Lookup(const std::string& profile, uint16_t vlan) {
        char nas_id[DOM_NASID_NAME_SIZE] = "-";
        const uint32_t result = DOM_GetNasIdByProfileAndVlanId(profile.c_str(), vlan, nas_id);
        EXPECT_EQ(result, std::string(nas_id) == "-" ? DOM_ERR_FAILED : DOM_OK);
        return nas_id;
    }
    /// Names of a role's profiles, bucket by bucket from the head; checks bucket and links.
    static std::vector<std::string> Profiles(Role role) {
        std::vector<std::string> names;
        const HASH_TABLE* table = NasIdProfiles(role);
        for (uint32_t bucket = 0; bucket < table->bucket_count; ++bucket) {
            HASH_NODE* const* link = &table->buckets[bucket];
            for (; *link != nullptr; link = &(*link)->next) {
                EXPECT_EQ((*link)->prev_link, link);
                names.emplace_back(AsNasIdProfile(*link)->name);
                EXPECT_EQ(NasIdProfileBucket(names.back().c_str()), bucket);
            }
        }
        return names;
    }
    /// "vlan/profile/nas-id" of a role's bindings, bucket by bucket from the head.
    static std::vector<std::string> Bindings(Role role) {
        std::vector<std::string> texts;
        const HASH_TABLE* table = NasIdBindings(role).hash;
        for (uint32_t bucket = 0; bucket < table->bucket_count; ++bucket) {
            HASH_NODE* const* link = &table->buckets[bucket];
            for (; *link != nullptr; link = &(*link)->next) {
                EXPECT_EQ((*link)->prev_link, link);
                const NasIdBinding* binding = AsNasIdBinding(*link);
                texts.push_back(std::to_string(binding->vlan_id) + "/" + binding->profile_name +
                                "/" + binding->nas_id);
            }
        }
        return texts;
    }
    static DomDbUpdateReq Filled() {
        DomDbUpdateReq change;
        memset(&change, 0x5A, sizeof change);
        return change;
    }
    static bool Same(const DomDbUpdateReq& a, const DomDbUpdateReq& b) {
        return memcmp(&a, &b, sizeof a) == 0;
    }
};

}  // namespace aaadom
