// The whole configuration as a document: exported, compared, checked.
#pragma once

#include <vector>

#include "client.h"
#include "output.h"

namespace aaactl {

inline constexpr int kConfigVersion = 1;

/// The settings of the whole device with all domains, ascending by name.
Json ReadConfig(Client& client);
/// Refuses a document that is no complete, valid configuration.
void CheckConfig(const Json& document);

/// One setting that differs.
struct Difference {
    std::string path;
    Json here;
    Json there;
};
std::vector<Difference> Compare(const Json& here, const Json& there);

}  // namespace aaactl
