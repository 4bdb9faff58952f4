// What is known of a configuration: one text a detail of an object. Two sources agree when their
// facts are equal.
//
// A key is OWNER/KIND/OBJECT[/DETAIL]. The owner is the client that alone changes the object, and
// stands at the beginning of the object's name ("c2-corp"), or is "?" for what no client made. A
// detail that begins with '~' is no client's to know; sources agree on it all the same.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace crash {

using Facts = std::map<std::string, std::string>;

/// A client's number as it begins the names of its objects.
inline std::string OwnerName(size_t client) {
    return "c" + std::to_string(client);
}
std::string OwnerOf(const std::string& object);
std::string FactKey(const std::string& kind, const std::string& object,
                    const std::string& detail = "");

/// The facts under a prefix, details with '~' left out.
Facts Known(const Facts& facts, const std::string& prefix);
/// Those of one kind, of all owners.
Facts OfKind(const Facts& facts, const std::string& kind);
void Erase(Facts& facts, const std::string& prefix);

/// One line for each key in which the two differ; at most `limit`.
std::vector<std::string> Differences(const std::string& left_name, const Facts& left,
                                     const std::string& right_name, const Facts& right,
                                     size_t limit = 10);

}  // namespace crash
