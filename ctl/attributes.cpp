#include "attributes.h"

#include <aaadom/domain.h>
#include <arpa/inet.h>
#include <strings.h>

#include <cstring>

#include "client.h"
#include "names.h"

namespace aaactl {
namespace {

enum class FieldKind { kU32, kI32, kSelector, kText, kAddress };

struct Field {
    uint32_t kind;
    const char* name;
    FieldKind type;
    size_t offset;
    size_t size;
};

#define AAACTL_FIELD(kind, name, type, member) \
    { kind, name, FieldKind::type, offsetof(AuthorAttr, member), sizeof(AuthorAttr::member) }
#define AAACTL_WORD(kind, name, member, index) \
    { kind, name, FieldKind::kU32, offsetof(AuthorAttr, member) + 4 * (index), 4 }

constexpr Field kFields[] = {
    AAACTL_FIELD(0, "word1", kU32, kind0_word1),
    AAACTL_FIELD(0, "word2", kU32, kind0_word2),
    AAACTL_FIELD(0, "word3", kU32, kind0_word3),
    AAACTL_FIELD(1, "text", kText, kind1_text),
    AAACTL_FIELD(2, "text", kText, kind2_text),
    AAACTL_WORD(3, "word1", kind3_words, 0),
    AAACTL_WORD(3, "word2", kind3_words, 1),
    AAACTL_WORD(3, "word3", kind3_words, 2),
    AAACTL_WORD(3, "word4", kind3_words, 3),
    AAACTL_WORD(3, "word5", kind3_words, 4),
    AAACTL_FIELD(4, "text", kText, kind4_text),
    AAACTL_FIELD(5, "address", kAddress, kind5_addr),
    AAACTL_FIELD(6, "address", kAddress, kind6_addr),
    AAACTL_FIELD(7, "text", kText, kind7_text),
    AAACTL_FIELD(8, "text", kText, kind8_text),
    AAACTL_FIELD(9, "word", kU32, kind9_word),
    AAACTL_FIELD(10, "word", kU32, kind10_word),
    AAACTL_FIELD(11, "word", kU32, kind11_word),
    AAACTL_FIELD(12, "policy", kText, ita_policy_name),
    AAACTL_FIELD(13, "word", kU32, kind13_word),
    AAACTL_FIELD(14, "word1", kU32, kind14_word1),
    AAACTL_FIELD(14, "word2", kU32, kind14_word2),
    AAACTL_FIELD(15, "word", kU32, kind15_word),
    AAACTL_FIELD(16, "address", kAddress, kind16_addr),
    AAACTL_FIELD(17, "address", kAddress, kind17_addr),
    AAACTL_FIELD(18, "text", kText, kind18_text),
    AAACTL_FIELD(19, "word", kI32, kind19_word),
    AAACTL_FIELD(20, "text", kText, kind20_text),
    AAACTL_WORD(21, "rate1", kind21_rates, 0),
    AAACTL_WORD(21, "rate2", kind21_rates, 1),
    AAACTL_WORD(21, "rate3", kind21_rates, 2),
    AAACTL_WORD(21, "rate4", kind21_rates, 3),
    AAACTL_FIELD(22, "text", kText, kind22_text),
    AAACTL_FIELD(23, "word", kU32, kind23_word),
    AAACTL_FIELD(24, "word", kU32, kind24_word),
    AAACTL_FIELD(25, "profile", kText, author_profile_name),
    AAACTL_FIELD(26, "text", kText, kind26_text),
    AAACTL_FIELD(26, "selector", kSelector, kind26_selector),
};

struct KindName {
    uint32_t kind;
    const char* name;
};
constexpr KindName kKindNames[] = {
    {12, "accounting-policy"}, {21, "rates"}, {25, "author-profile"}};

const char* At(const AuthorAttr& attributes, const Field& field) {
    return reinterpret_cast<const char*>(&attributes) + field.offset;
}

char* At(AuthorAttr& attributes, const Field& field) {
    return reinterpret_cast<char*>(&attributes) + field.offset;
}

template <typename T>
T Load(const char* bytes) {
    T value;
    memcpy(&value, bytes, sizeof value);
    return value;
}

constexpr uint16_t kFamilyIpv4 = 2;
constexpr uint16_t kFamilyIpv6 = 10;

Json AddressToJson(const AttrAddress& address) {
    char text[INET6_ADDRSTRLEN] = "";
    if (address.family == kFamilyIpv4) {
        inet_ntop(AF_INET, address.address, text, sizeof text);
    } else if (address.family != 0) {
        inet_ntop(AF_INET6, address.address, text, sizeof text);
    }
    return text;
}

AttrAddress ParseAddress(const std::string& text) {
    AttrAddress address{};
    if (text.empty()) return address;
    if (inet_pton(AF_INET, text.c_str(), address.address) == 1) {
        address.family = kFamilyIpv4;
    } else if (inet_pton(AF_INET6, text.c_str(), address.address) == 1) {
        address.family = kFamilyIpv6;
    } else {
        RefuseUsage("address \"" + text + "\"", "it is neither an IPv4 nor an IPv6 address",
                    "Write it like 192.0.2.1 or 2001:db8::1");
    }
    return address;
}

Json FieldToJson(const AuthorAttr& attributes, const Field& field) {
    const char* bytes = At(attributes, field);
    switch (field.type) {
        case FieldKind::kU32:
            return Load<uint32_t>(bytes);
        case FieldKind::kI32:
            return Load<int32_t>(bytes);
        case FieldKind::kSelector:
            return Load<uint16_t>(bytes);
        case FieldKind::kText:
            return std::string(bytes, strnlen(bytes, field.size));
        case FieldKind::kAddress:
            return AddressToJson(Load<AttrAddress>(bytes));
    }
    return nullptr;
}

std::string FieldName(const Field& field) {
    return "attribute " + std::to_string(field.kind) + " field " + field.name;
}

void SetField(AuthorAttr& attributes, const Field& field, const std::string& word) {
    char* bytes = At(attributes, field);
    const std::string what = FieldName(field);
    if (field.type == FieldKind::kText) {
        CheckFits(what, word, field.size);
        memset(bytes, 0, field.size);
        memcpy(bytes, word.data(), word.size());
    } else if (field.type == FieldKind::kAddress) {
        const AttrAddress address = ParseAddress(word);
        memcpy(bytes, &address, sizeof address);
    } else if (field.type == FieldKind::kI32 && word[0] == '-') {
        const uint32_t value = 0u - ParseNumber(what, word.substr(1), 0x80000000u);
        memcpy(bytes, &value, sizeof value);
    } else if (field.type == FieldKind::kI32) {
        const uint32_t value = ParseNumber(what, word, INT32_MAX);
        memcpy(bytes, &value, sizeof value);
    } else {
        // The only field of two bytes chooses between two forms of its text.
        const uint32_t maximum = field.type == FieldKind::kU32 ? UINT32_MAX : 1;
        const uint32_t value = ParseNumber(what, word, maximum);
        memcpy(bytes, &value, field.size);  // little-endian, like every number on the wire
    }
}

const Field& FindField(uint32_t kind, const std::string& name) {
    std::string known;
    for (const Field& field : kFields) {
        if (field.kind != kind) continue;
        if (name == field.name) return field;
        known += (known.empty() ? "" : ", ") + std::string(field.name);
    }
    RefuseUsage("field \"" + name + "\"",
                "attribute " + std::to_string(kind) + " has no such field",
                "Its fields are " + known);
}

}  // namespace

AuthorAttr DefaultAttributes() {
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    return attributes;
}

bool SameKind(const AuthorAttr& a, const AuthorAttr& b, uint32_t kind) {
    for (const Field& field : kFields) {
        if (field.kind == kind && FieldToJson(a, field) != FieldToJson(b, field)) return false;
    }
    return true;
}

Json AttributesToJson(const AuthorAttr& attributes) {
    const AuthorAttr defaults = DefaultAttributes();
    Json kinds = Json::object();
    for (uint32_t kind = 0; kind < DOM_ATTR_KINDS; ++kind) {
        if (SameKind(attributes, defaults, kind)) continue;
        Json fields = Json::object();
        for (const Field& field : kFields) {
            if (field.kind == kind) fields[field.name] = FieldToJson(attributes, field);
        }
        kinds[std::to_string(kind)] = fields;
    }
    return kinds;
}

void SetFieldsFromJson(AuthorAttr& attributes, uint32_t kind, const Json& fields) {
    if (!fields.is_object()) {
        RefuseUsage("attribute " + std::to_string(kind), "its value is no object",
                    "Write {\"field\": value}");
    }
    for (const auto& [name, value] : fields.items()) {
        if (!value.is_string() && !value.is_number_integer()) {
            RefuseUsage("attribute " + std::to_string(kind) + " field " + name,
                        "its value is neither text nor a whole number", "Mend the file");
        }
        SetField(attributes, FindField(kind, name),
                 value.is_string() ? value.get<std::string>() : value.dump());
    }
}

void SetFieldsFromWords(AuthorAttr& attributes, uint32_t kind,
                        const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        const size_t equals = word.find('=');
        if (equals == std::string::npos) {
            RefuseUsage("\"" + word + "\"", "it is not of the form field=value",
                        "See aaactl domain set attribute --help");
        }
        SetField(attributes, FindField(kind, word.substr(0, equals)), word.substr(equals + 1));
    }
}

uint32_t ParseKind(const std::string& word) {
    for (const KindName& name : kKindNames) {
        if (word == name.name) return name.kind;
    }
    return ParseNumber("attribute kind", word, DOM_ATTR_KINDS - 1);
}

void SendAttribute(Client& client, const std::string& domain, uint32_t kind,
                   const AuthorAttr& current, const AuthorAttr& wanted) {
    const AuthorAttr defaults = DefaultAttributes();
    const bool back = SameKind(wanted, defaults, kind);
    // The daemon takes a change of letter case alone for no change in these two texts.
    const bool case_only = (kind == 2 && strcasecmp(current.kind2_text, wanted.kind2_text) == 0) ||
                           (kind == 4 && strcasecmp(current.kind4_text, wanted.kind4_text) == 0);
    if (!back && case_only && !SameKind(current, wanted, kind)) {
        client.ChangeDomain(domain, DOM_EncodeAuthorAttr(kind, domain.c_str(), &defaults),
                            DOM_OP_DELETE);
    }
    client.ChangeDomain(domain, DOM_EncodeAuthorAttr(kind, domain.c_str(), &wanted),
                        back ? DOM_OP_DELETE : DOM_OP_SET);
}

std::string DescribeKinds() {
    std::string text;
    for (uint32_t kind = 0; kind < DOM_ATTR_KINDS; ++kind) {
        text += "  " + std::to_string(kind);
        for (const KindName& name : kKindNames) {
            if (name.kind == kind) text += " (" + std::string(name.name) + ")";
        }
        text += ":";
        for (const Field& field : kFields) {
            if (field.kind == kind) text += " " + std::string(field.name);
        }
        text += "\n";
    }
    return text;
}

}  // namespace aaactl
