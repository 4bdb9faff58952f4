// The stage of a fault row: what stands in tables and databases before the call, and how it is
// cleared away.
#pragma once

#include <aaadom/types.h>
#include <platform/dbm.h>
#include <platform/tlv.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_platform.h"

namespace fault {

// Names that stand on Tables and Saved; the golden messages speak of the same ones.
inline constexpr char kDomain[] = "isp-a.example";        ///< names the policy kPolicy
inline constexpr char kOtherDomain[] = "isp-b.example";   ///< is the default domain
inline constexpr char kNasIdProfile[] = "office";         ///< binds VLAN 7 to "nas-7"
inline constexpr char kCriticalProfile[] = "Quarantine";  ///< VPN "vpn-0" and a default segment
inline constexpr char kAuthorProfile[] = "Staff";         ///< VPN "vpn-0" and a default segment
inline constexpr char kPolicy[] = "gold";                 ///< accounting policy with level 3

/// Builds the stage of one run and clears it away: afterwards the process is as it was at its
/// start.
class Scene {
  public:
    Scene();
    ~Scene();
    Scene(const Scene&) = delete;

    /// A service table whose slots 0, 10, 12, 13, 14 and 19 are filled.
    void InstallService();
    /// The same, and the tables of both roles.
    void InitRoles();
    /// The same domains, profiles, policies and switches in both roles' tables.
    void FillRoles();
    /// Opens the configuration and the run database and installs their handles.
    void OpenDatabases();
    /// Saves what stands in the configuration role's tables, and three user records.
    void SaveAll();

    /// Every request is answered with this reply; `body` is called for each.
    void Serve(uint16_t kind, std::function<TLV_MSG*()> body);
    /// Every request is answered with this result.
    void ServeResult(uint32_t result);
    /// Every request is answered with the message of a golden file.
    void ServeData(std::string file);

    /// A message that the scene destroys at the end.
    TLV_MSG* Keep(TLV_MSG* msg);
    /// The message of a golden file, kept.
    TLV_MSG* Golden(const std::string& file) { return Keep(Parse(file)); }
    /// The message of a golden file; the caller destroys it.
    static TLV_MSG* Parse(const std::string& file);
    /// Done before anything is cleared away.
    void AtEnd(std::function<void()> action) { at_end_.push_back(std::move(action)); }

    DBM_HANDLE config = DBM_INVALID_HANDLE;  ///< the configuration database, installed everywhere
    DBM_HANDLE run = DBM_INVALID_HANDLE;     ///< the run database, installed
    TLV_MSG* message = nullptr;              ///< what a step has made for the call

  private:
    bool roles_ = false;
    std::vector<TLV_MSG*> messages_;
    std::vector<std::function<void()>> at_end_;
};

/// Makes inputs of a call: nothing in it counts or is refused.
template <typename Make>
auto Quietly(Make&& make) {
    fake::Quiet quiet;
    return make();
}

// Stages. What stands on Tables and Saved is written down in scene.cpp.

/// No tables, no service table, no database.
void Nothing(Scene& scene);
/// A service table alone.
void ServiceAlone(Scene& scene);
/// Both roles' tables, empty.
void EmptyTables(Scene& scene);
/// Both roles' tables, filled alike; no database.
void Tables(Scene& scene);
/// As Tables, and everything saved in the databases.
void Saved(Scene& scene);

}  // namespace fault
