#include "verdict.h"

#include <set>

namespace crash {

namespace {

constexpr char kSystemDomain[] = "?/domain/system";

void Append(std::vector<std::string>& all, const std::vector<std::string>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

void CompareRole(const std::string& role, const Facts& facts, const Facts& database,
                 const std::vector<std::string>& kinds, std::vector<std::string>& wrong) {
    for (const std::string& kind : kinds) {
        Append(wrong, Differences(role, OfKind(facts, kind), "database", OfKind(database, kind)));
    }
}

Outcome Settle(const Facts& database, Expectation& expected, std::vector<std::string>& wrong) {
    const Facts seen = Known(database, expected.owner);
    if (seen == expected.known) {
        const bool flew = expected.after.has_value();
        expected.after.reset();
        return flew ? Outcome::kUndone : Outcome::kNothingInFlight;
    }
    if (expected.after && seen == *expected.after) {
        expected.known = seen;
        expected.after.reset();
        return Outcome::kDone;
    }
    Append(wrong, Differences("answered", expected.known, "found", seen));
    if (expected.after) {
        wrong.push_back(expected.owner + " had in flight: " + expected.in_flight);
        Append(wrong, Differences("with it", *expected.after, "found", seen));
    }
    return Outcome::kUndone;
}

void FindStrangers(const Facts& database, const std::vector<Expectation*>& expectations,
                   std::vector<std::string>& wrong) {
    std::set<std::string> owners;
    for (const Expectation* expected : expectations) owners.insert(expected->owner);
    for (const auto& [key, value] : database) {
        const bool system = key.compare(0, sizeof kSystemDomain - 1, kSystemDomain) == 0;
        if (!system && owners.count(key.substr(0, key.find('/'))) == 0) {
            wrong.push_back(key + ": nobody made it");
        }
    }
    if (database.count(kSystemDomain) == 0) wrong.push_back("the domain \"system\" is missing");
}

}  // namespace

std::vector<std::string> Judge(const Snapshot& snapshot, std::vector<Expectation*> expectations,
                               std::vector<Outcome>* outcomes) {
    std::vector<std::string> wrong;
    CompareRole("configuration role", snapshot.configuration, snapshot.database,
                kKindsOfConfiguration, wrong);
    CompareRole("working role", snapshot.working, snapshot.database, kKindsOfWorking, wrong);
    for (Expectation* expected : expectations) {
        const Outcome outcome = Settle(snapshot.database, *expected, wrong);
        if (outcomes != nullptr) outcomes->push_back(outcome);
    }
    FindStrangers(snapshot.database, expectations, wrong);
    return wrong;
}

}  // namespace crash
