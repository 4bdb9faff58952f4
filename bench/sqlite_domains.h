// Domains in SQLite as its users would keep them: a column a field, a row a method.
#pragma once

#include <aaadom/types.h>

#include <string>
#include <vector>

namespace bench {

/// Makes the file. False on failure.
bool SaveToSqlite(const std::string& path, const std::vector<const DomainInfo*>& domains);
/// Selects everything into records of their own, which are never freed; their number, -1 on
/// failure.
int LoadFromSqlite(const std::string& path);

}  // namespace bench
