// Management reads of a profile store: one object by name, and the object after a name.
#pragma once

#include <aaadom/codes.h>

#include "profile/profile_store.h"

namespace aaadom {

template <typename Kind>
struct ProfileRead {
    using Store = ProfileStore<Kind>;
    using Head = typename Kind::Head;
    using Profile = typename Kind::Profile;
    using Vpn = typename Kind::Vpn;

    /// The default segment of a profile, set or not.
    static TLV_MSG* Get(const Head& head, const char* name, uint16_t* flag_out) noexcept {
        const Profile* profile = Store::Find(head, name);
        return profile == nullptr ? Refuse(flag_out) : Kind::kEncodeDefault(profile);
    }
    static TLV_MSG* GetVpn(const Head& head, const char* profile_name, const char* vpn_name,
                           uint16_t* flag_out) noexcept {
        Profile* profile = Store::Find(head, profile_name);
        const Vpn* vpn = Store::FindVpn(profile, vpn_name);
        TLV_MSG* msg = vpn == nullptr ? nullptr : Kind::kEncodeVpn(vpn, profile->name);
        return msg == nullptr ? Refuse(flag_out) : msg;
    }

    static TLV_MSG* GetNext(const Head& head, const char* name) noexcept {
        const Profile* profile = NextProfile(head, name);
        return profile == nullptr ? nullptr : Kind::kEncodeDefault(profile);
    }
    /// The VPN after a VPN of a profile, over the ends of profiles. `vpn_name` is emptied when the
    /// walk enters another profile; the caller takes the next name from the message.
    static TLV_MSG* GetNextVpn(const Head& head, const char* profile_name,
                               char* vpn_name) noexcept {
        if (vpn_name == nullptr) return nullptr;
        // An empty name finds a profile without a name, if any: the first one in either order.
        Profile* profile = Store::Find(head, profile_name);
        if (profile == nullptr) profile = NextProfile(head, profile_name);
        if (profile == nullptr) return nullptr;
        const Vpn* vpn = VpnAfter(*profile, vpn_name);
        while (vpn == nullptr) {
            // Not NextProfile, which would begin again behind a profile whose name is empty.
            profile = Store::FindBigger(head.first_profile, profile->name);
            if (profile == nullptr) return nullptr;
            vpn_name[0] = '\0';
            vpn = Kind::First(Kind::ListOf(*profile));
        }
        return Kind::kEncodeVpn(vpn, profile->name);
    }

  private:
    /// The end message of a read that found nothing; the flag says that the reply holds a result.
    static TLV_MSG* Refuse(uint16_t* flag_out) noexcept {
        if (flag_out != nullptr) *flag_out = DOM_REPLY_KIND_RESULT;
        return Kind::kEncodeEnd(Kind::kMissing);
    }
    static Profile* NextProfile(const Head& head, const char* name) noexcept {
        if (name != nullptr && name[0] == '\0') return head.first_profile;
        return Store::FindBigger(head.first_profile, name);
    }
    /// The first VPN after an empty name, the successor of one that exists, else the next bigger.
    static const Vpn* VpnAfter(Profile& profile, const char* vpn_name) noexcept {
        const auto& list = Kind::ListOf(profile);
        if (vpn_name[0] == '\0') return Kind::First(list);
        const Vpn* vpn = Store::FindVpn(&profile, vpn_name);
        return vpn != nullptr ? Kind::Next(list, *vpn) : Store::FindBiggerVpn(list, vpn_name);
    }
};

}  // namespace aaadom
