// Accounting policies: read, changed, and as documents.
#pragma once

#include <aaadom/accounting_policy.h>

#include <optional>
#include <string>
#include <vector>

#include "client.h"
#include "output.h"

namespace aaactl {

/// Names are found exactly, letter case included.
std::optional<ItaPolicy> FindAccountingPolicy(Client& client, const std::string& name);
/// Throws when there is none of that name.
ItaPolicy NeedAccountingPolicy(Client& client, const std::string& name);
/// The policy behind a name, the first one behind an empty name; none at the end.
std::optional<ItaPolicy> NextAccountingPolicy(Client& client, const std::string& name);

/// {"scheme": ["METHOD"], "levels": {"ID": {"value": 5, "first_pair": [1, 2], "second_pair":
/// null}}, "together": 0, "separation": 0, "quota_out": 1}; null stands for what is not set.
Json AccountingPolicyToJson(const ItaPolicy& policy);
/// All policies, ascending by name: {"NAME": as AccountingPolicyToJson}.
Json ReadAccountingPolicies(Client& client);
/// Refuses a document that ReadAccountingPolicies could not have made.
void CheckAccountingPolicies(const Json& document);
/// Brings policies that leave members out to what an import would make of them.
Json CompletedAccountingPolicies(const Json& document);
/// Gives every policy of `wanted` exactly its settings. Policies that `wanted` lacks stay, or go
/// when `replace` is set.
void ApplyAccountingPolicies(Client& client, const Json& wanted, bool replace);

/// Refuses a name that the daemon would not take.
void CheckPolicyName(const std::string& name);
/// Refuses an identifier that stands for no level.
uint32_t ParseLevelId(const std::string& word);

/// Sends a change of one policy; `message` is of the codes 23 to 28.
uint32_t ChangeAccountingPolicy(Client& client, TLV_MSG* message, bool set);
/// Throws what a refusal of a change of policy `name` means.
[[noreturn]] void RefuseAccountingPolicy(Client& client, const std::string& name, uint32_t code);

void CreateAccountingPolicy(Client& client, const std::string& name);
void DeleteAccountingPolicy(Client& client, const std::string& name);

/// Six items for the methods that the words name.
MethodList ParseScheme(const std::vector<std::string>& words);

/// A domain's methods by the policy that it names; none when the policy does not exist.
std::optional<std::vector<std::string>> EffectiveMethods(Client& client, const std::string& domain);

}  // namespace aaactl
