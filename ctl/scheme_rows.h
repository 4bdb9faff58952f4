// Rows of the scheme table: one method of one default list of a domain.
#pragma once

#include <aaadom/types.h>

#include <optional>
#include <string>

#include "client.h"
#include "output.h"

namespace aaactl {

struct SchemeKey {
    std::string domain;  // empty: before the first row
    uint32_t scheme_index = 0;
};

/// Rows ascend by length of the domain's name, then its text, then the scheme index.
bool operator<(const SchemeKey& a, const SchemeKey& b);

/// The row behind a key; none at the end.
std::optional<MibSchemeRow> NextSchemeRow(Client& client, const SchemeKey& key);
/// The row of a key, the domain's name in any letter case; none when there is no such row.
std::optional<MibSchemeRow> FindSchemeRow(Client& client, const SchemeKey& key);

Json SchemeRowToJson(const MibSchemeRow& row);
std::string SchemeRowLine(const MibSchemeRow& row);

}  // namespace aaactl
