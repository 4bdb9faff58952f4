#include "facts.h"

namespace crash {

std::string OwnerOf(const std::string& object) {
    const size_t end = object.find('-');
    if (end == std::string::npos || end < 2 || object[0] != 'c') return "?";
    return object.substr(0, end);
}

std::string FactKey(const std::string& kind, const std::string& object, const std::string& detail) {
    const std::string key = OwnerOf(object) + "/" + kind + "/" + object;
    return detail.empty() ? key : key + "/" + detail;
}

namespace {

bool IsUnder(const std::string& key, const std::string& prefix) {
    return key.compare(0, prefix.size(), prefix) == 0 &&
           (key.size() == prefix.size() || key[prefix.size()] == '/');
}

}  // namespace

Facts Known(const Facts& facts, const std::string& prefix) {
    Facts found;
    for (const auto& [key, value] : facts) {
        if (IsUnder(key, prefix) && key.find("/~") == std::string::npos) found[key] = value;
    }
    return found;
}

Facts OfKind(const Facts& facts, const std::string& kind) {
    Facts found;
    for (const auto& [key, value] : facts) {
        const size_t begin = key.find('/') + 1;
        if (key.compare(begin, kind.size() + 1, kind + "/") == 0) found[key] = value;
    }
    return found;
}

void Erase(Facts& facts, const std::string& prefix) {
    std::erase_if(facts, [&](const auto& fact) { return IsUnder(fact.first, prefix); });
}

std::vector<std::string> Differences(const std::string& left_name, const Facts& left,
                                     const std::string& right_name, const Facts& right,
                                     size_t limit) {
    std::vector<std::string> lines;
    const auto text = [](const Facts& facts, const std::string& key) {
        const auto found = facts.find(key);
        return found == facts.end() ? std::string("nothing") : "\"" + found->second + "\"";
    };
    const auto compare = [&](const std::string& key) {
        const std::string one = text(left, key);
        const std::string other = text(right, key);
        if (one != other && lines.size() < limit) {
            lines.push_back(key + ": " + left_name + " " + one + ", " + right_name + " " + other);
        }
    };
    for (const auto& [key, value] : left) compare(key);
    for (const auto& [key, value] : right) {
        if (left.count(key) == 0) compare(key);
    }
    return lines;
}

}  // namespace crash
