#include "names.h"

#include <cstdlib>
#include <cstring>

#include "client.h"

namespace aaactl {
namespace {

struct Word {
    const char* name;
    uint32_t number;
};

constexpr Word kAaaTypes[] = {
    {"authentication", AAA_TYPE_0}, {"authorization", AAA_TYPE_4}, {"accounting", AAA_TYPE_5}};
constexpr Word kMethods[] = {{"scheme1", METHOD_SCHEME_1},
                             {"scheme2", METHOD_SCHEME_2},
                             {"scheme3", METHOD_SCHEME_3},
                             {"local", METHOD_DEFAULT_4},
                             {"none", METHOD_LAST_5}};
constexpr Word kStates[] = {{"blocked", 0}, {"active", 1}};

template <size_t N>
const Word* FindWord(const Word (&words)[N], const std::string& name) {
    for (const Word& word : words) {
        if (name == word.name) return &word;
    }
    return nullptr;
}

template <size_t N>
std::string NameOf(const Word (&words)[N], uint32_t number) {
    for (const Word& word : words) {
        if (number == word.number) return word.name;
    }
    return std::to_string(number);
}

bool TakesScheme(uint32_t kind) {
    return kind >= METHOD_SCHEME_1 && kind <= METHOD_SCHEME_3;
}

}  // namespace

uint32_t ParseNumber(const std::string& what, const std::string& word, uint32_t maximum) {
    char* end = nullptr;
    errno = 0;
    // Leading zeros do not make a number octal, and a sign or a blank makes it none.
    const bool hexadecimal = word.size() > 2 && word[0] == '0' && (word[1] | 0x20) == 'x';
    const unsigned long long number = strtoull(word.c_str(), &end, hexadecimal ? 16 : 10);
    const bool begins = !word.empty() && word[0] >= '0' && word[0] <= '9';
    if (!begins || end != word.c_str() + word.size() || errno != 0 || number > maximum) {
        RefuseUsage(what + " \"" + word + "\"",
                    "it is no number from 0 to " + std::to_string(maximum),
                    "Give a decimal number, or a hexadecimal one with 0x");
    }
    return static_cast<uint32_t>(number);
}

uint32_t ParseAaaType(const std::string& word) {
    if (const Word* type = FindWord(kAaaTypes, word)) return type->number;
    RefuseUsage("AAA type \"" + word + "\"", "there is no such type",
                "Give authentication, authorization or accounting");
}

std::string AaaTypeName(uint32_t aaa_type) {
    return NameOf(kAaaTypes, aaa_type);
}

uint32_t ParseService(const std::string& word) {
    if (word == "default") return DOM_DEFAULT_SERVICE;
    return ParseNumber("service", word, DOM_SERVICES - 1);
}

std::string ServiceName(uint32_t service) {
    return service == DOM_DEFAULT_SERVICE ? "default" : std::to_string(service);
}

MethodEntry ParseMethod(const std::string& word) {
    const size_t colon = word.find(':');
    const std::string kind = word.substr(0, colon);
    const Word* method = FindWord(kMethods, kind);
    const std::string object = "method \"" + word + "\"";
    if (method == nullptr) {
        RefuseUsage(object, "there is no such method",
                    "Give scheme1:NAME, scheme2:NAME, scheme3:NAME, local or none");
    }
    const std::string scheme = colon == std::string::npos ? "" : word.substr(colon + 1);
    if (TakesScheme(method->number) != !scheme.empty()) {
        RefuseUsage(object,
                    TakesScheme(method->number) ? "the scheme name is missing"
                                                : "this method takes no scheme name",
                    TakesScheme(method->number) ? "Write " + kind + ":NAME" : "Write " + kind);
    }
    CheckFits("scheme name", scheme, DOM_SCHEME_NAME_SIZE);
    MethodEntry entry{};
    entry.method_kind = method->number;
    memcpy(entry.scheme_name, scheme.c_str(), scheme.size() + 1);
    return entry;
}

std::string MethodName(const MethodEntry& entry) {
    std::string name = NameOf(kMethods, entry.method_kind);
    const size_t length = strnlen(entry.scheme_name, sizeof entry.scheme_name);
    if (length != 0) name += ":" + std::string(entry.scheme_name, length);
    return name;
}

std::vector<std::string> MethodNames(const MethodEntry (&methods)[DOM_METHODS]) {
    std::vector<std::string> names;
    for (const MethodEntry& entry : methods) {
        if (entry.method_kind == METHOD_EMPTY) break;
        names.push_back(MethodName(entry));
    }
    return names;
}

MethodList ParseMethodList(uint32_t aaa_type, uint32_t service,
                           const std::vector<std::string>& words) {
    const std::string object =
        "methods of " + AaaTypeName(aaa_type) + ", service " + ServiceName(service);
    if (words.empty() || words.size() > DOM_METHODS) {
        RefuseUsage(object, std::to_string(words.size()) + " methods were given",
                    "Give one to six methods");
    }
    MethodList list{};
    list.aaa_type = aaa_type;
    list.service = service;
    for (size_t i = 0; i < words.size(); ++i) {
        list.methods[i] = ParseMethod(words[i]);
        const uint32_t kind = list.methods[i].method_kind;
        if (DOM_IsServiceSupportTheMethod(service, aaa_type, kind) == 0) {
            RefuseUsage(object, "this service does not support " + NameOf(kMethods, kind),
                        "See aaactl domain set methods --help for what each service supports");
        }
        for (size_t j = 0; j < i; ++j) {
            if (list.methods[j].method_kind == kind) {
                RefuseUsage(object, NameOf(kMethods, kind) + " is given twice",
                            "Give each kind of method once");
            }
            if (list.methods[j].method_kind == METHOD_LAST_5) {
                RefuseUsage(object, "none is not the last method", "Put none at the end");
            }
        }
    }
    return list;
}

uint16_t ParseState(const std::string& word) {
    if (const Word* state = FindWord(kStates, word)) return static_cast<uint16_t>(state->number);
    if (word.empty() || word.find_first_not_of("0123456789") != std::string::npos) {
        RefuseUsage("state \"" + word + "\"", "there is no such state",
                    "Give active, blocked or a number up to 65535");
    }
    return static_cast<uint16_t>(ParseNumber("state", word, UINT16_MAX));
}

std::string StateName(uint16_t state) {
    return NameOf(kStates, state);
}

uint32_t ParseSessionClass(const std::string& word) {
    const uint32_t session_class = ParseNumber("session class", word, UINT32_MAX);
    if (session_class < SESSION_CLASS_19 || session_class > SESSION_CLASS_23) {
        RefuseUsage("session class \"" + word + "\"", "there is no such class",
                    "Give 19, 20, 21, 22 or 23");
    }
    return session_class;
}

}  // namespace aaactl
