// A domain and the whole configuration as documents: shown, exported, compared, imported.
#pragma once

#include "client.h"
#include "output.h"

namespace aaactl {

inline constexpr int kConfigVersion = 1;

/// Names that differ in letter case alone name one domain; their common form.
std::string FoldedName(std::string name);

Json DomainToJson(const DomainInfo& domain);
/// Checks a document completely; the record is a new domain with the document's settings.
DomainPtr DomainFromJson(const Json& document);

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

/// Sends every setting of `wanted` that differs from `current`.
void ApplyDomain(Client& client, const DomainInfo& current, const DomainInfo& wanted);

}  // namespace aaactl
