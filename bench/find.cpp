// Finding a domain by name, ignoring case, with the table's lock taken for each look-up: the
// library's index, a hash map of pointers to the same records, a scan in slot order.
#include <aaadom/aaadom.h>
#include <absl/container/flat_hash_map.h>
#include <absl/hash/hash.h>
#include <absl/strings/match.h>
#include <absl/strings/string_view.h>
#include <strings.h>

#include <memory>

#include "race.h"
#include "table.h"
#include "timing.h"
#include "workspace.h"

namespace bench {
namespace {

struct HashIgnoringCase {
    size_t operator()(absl::string_view name) const {
        char folded[DOM_NAME_SIZE];
        const size_t length = std::min(name.size(), sizeof folded);
        // Without a branch or a table, so that the compiler can fold 16 characters at once.
        for (size_t i = 0; i < length; ++i) {
            const char c = name[i];
            folded[i] =
                static_cast<char>(c | (static_cast<unsigned char>(c - 'A') < 26 ? 0x20 : 0));
        }
        return absl::HashOf(absl::string_view(folded, length));
    }
};
struct EqualIgnoringCase {
    bool operator()(absl::string_view a, absl::string_view b) const {
        return absl::EqualsIgnoreCase(a, b);
    }
};
using Map =
    absl::flat_hash_map<absl::string_view, DomainInfo*, HashIgnoringCase, EqualIgnoringCase>;

struct Stage {
    explicit Stage(int domains) {
        FillTable(domains, Size::kSmall);
        names = ShuffledNames(domains);
        // The keys are the records' own names: no memory beside what the library's index uses.
        for (DomainInfo* domain = DOM_GetFirstDomain(); domain != nullptr;
             domain = DOM_GetNextDomain(domain->name)) {
            slots.push_back(domain);
            map.emplace(domain->name, domain);
        }
        Demand(map.size() == names.size(), "filling the map");
    }
    std::vector<std::string> names;
    std::vector<DomainInfo*> slots;
    Map map;
};

DomainInfo* Scan(const std::vector<DomainInfo*>& slots, const char* name) {
    for (DomainInfo* domain : slots) {
        if (strcasecmp(domain->name, name) == 0) return domain;
    }
    return nullptr;
}

/// `find` gets the name as a caller has it, a C string.
template <typename Find>
Window LookUps(std::shared_ptr<Stage> stage, Find find) {
    return [stage, find](double seconds) {
        const size_t count = stage->names.size();
        uint64_t missing = 0;
        size_t next = 0;
        const double ns = TimeLoop<ThreadClock>(seconds, [&](uint64_t) {
            DOM_DomainInfoTableLock();
            missing += find(*stage, stage->names[next].c_str()) == nullptr;
            DOM_DomainInfoTableUnlock();
            if (++next == count) next = 0;
        });
        Demand(missing == 0, "finding a domain");
        return ns;
    };
}

std::vector<Contestant> Prepare(int domains) {
    auto stage = std::make_shared<Stage>(domains);
    return {
        {"aaadom",
         LookUps(stage, [](Stage&, const char* name) { return DOM_FindDomainByName(name); })},
        {"absl::flat_hash_map", LookUps(stage,
                                        [](Stage& s, const char* name) -> DomainInfo* {
                                            const auto found = s.map.find(absl::string_view(name));
                                            return found == s.map.end() ? nullptr : found->second;
                                        })},
        {"linear scan",
         LookUps(stage, [](Stage& s, const char* name) { return Scan(s.slots, name); })}};
}

}  // namespace

void AddFindRaces(const Extent& extent, std::vector<Race>& races) {
    for (int domains : extent.Loads()) {
        races.push_back({"find",
                         "Find a domain by name",
                         "look-up",
                         domains,
                         "domains",
                         {{"absl::flat_hash_map", Goal::kCostAtMost, 0.75}},
                         extent.Seconds(0.08),
                         [=] { return Prepare(domains); }});
    }
}

}  // namespace bench
