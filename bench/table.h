// The domains that everything is measured with, in this process's table.
#pragma once

#include <aaadom/types.h>

#include <string>
#include <vector>

namespace bench {

enum class Size {
    kSmall,    // as it is created: 3 lists, every setting its default
    kTypical,  // one list, one attribute and one setting changed
    kLarge     // 36 lists of 3 methods, every setting and attribute set
};

const char* SizeName(Size size);

/// Name of the n-th domain. The first is the one that a daemon would otherwise create itself.
std::string NameOf(int n);
/// The names of that many domains in an order without pattern.
std::vector<std::string> ShuffledNames(int domains);
/// Fills this process's table; once a process.
void FillTable(int domains, Size size);
/// The messages of the first so many domains of the table, as they are stored.
std::vector<std::string> EncodedDomains(int domains);

}  // namespace bench
