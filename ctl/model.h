// A domain as a document: shown, exported, compared, imported.
#pragma once

#include "client.h"
#include "output.h"

namespace aaactl {

/// Names that differ in letter case alone name one domain; their common form.
std::string FoldedName(std::string name);

Json DomainToJson(const DomainInfo& domain);
/// Checks a document completely; the record is a new domain with the document's settings.
DomainPtr DomainFromJson(const Json& document);

/// Sends every setting of `wanted` that differs from `current`.
void ApplyDomain(Client& client, const DomainInfo& current, const DomainInfo& wanted);

}  // namespace aaactl
