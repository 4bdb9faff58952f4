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
    std::string name;
    FieldKind type;
    size_t offset;
    size_t size;
};

/// Members of one type. An array of numbers has as many fields, numbered from 1.
struct Member {
    uint32_t kind;
    const char* name;
    size_t offset;
    size_t size;
};
#define AAACTL_AT(member) offsetof(AuthorAttr, member), sizeof(AuthorAttr::member)

constexpr Member kNumbers[] = {
    {0, "word1", AAACTL_AT(kind0_word1)},   {0, "word2", AAACTL_AT(kind0_word2)},
    {0, "word3", AAACTL_AT(kind0_word3)},   {3, "word", AAACTL_AT(kind3_words)},
    {9, "word", AAACTL_AT(kind9_word)},     {10, "word", AAACTL_AT(kind10_word)},
    {11, "word", AAACTL_AT(kind11_word)},   {13, "word", AAACTL_AT(kind13_word)},
    {14, "word1", AAACTL_AT(kind14_word1)}, {14, "word2", AAACTL_AT(kind14_word2)},
    {15, "word", AAACTL_AT(kind15_word)},   {21, "rate", AAACTL_AT(kind21_rates)},
    {23, "word", AAACTL_AT(kind23_word)},   {24, "word", AAACTL_AT(kind24_word)},
};
constexpr Member kSignedNumbers[] = {{19, "word", AAACTL_AT(kind19_word)}};
constexpr Member kTexts[] = {
    {1, "text", AAACTL_AT(kind1_text)},   {2, "text", AAACTL_AT(kind2_text)},
    {4, "text", AAACTL_AT(kind4_text)},   {7, "text", AAACTL_AT(kind7_text)},
    {8, "text", AAACTL_AT(kind8_text)},   {12, "policy", AAACTL_AT(ita_policy_name)},
    {18, "text", AAACTL_AT(kind18_text)}, {20, "text", AAACTL_AT(kind20_text)},
    {22, "text", AAACTL_AT(kind22_text)}, {25, "profile", AAACTL_AT(author_profile_name)},
    {26, "text", AAACTL_AT(kind26_text)},
};
constexpr Member kAddresses[] = {
    {5, "address", AAACTL_AT(kind5_addr)},
    {6, "address", AAACTL_AT(kind6_addr)},
    {16, "address", AAACTL_AT(kind16_addr)},
    {17, "address", AAACTL_AT(kind17_addr)},
};
constexpr Member kSelectors[] = {{26, "selector", AAACTL_AT(kind26_selector)}};

template <size_t N>
void AddFields(std::vector<Field>& fields, const Member (&members)[N], FieldKind type) {
    for (const Member& member : members) {
        const size_t count = type == FieldKind::kU32 ? member.size / sizeof(uint32_t) : 1;
        const size_t size = member.size / count;
        for (size_t i = 0; i < count; ++i) {
            fields.push_back({member.kind,
                              count == 1 ? member.name : member.name + std::to_string(i + 1), type,
                              member.offset + i * size, size});
        }
    }
}

/// Fields of a kind stand in the order in which they are shown.
const std::vector<Field>& Fields() {
    static const std::vector<Field> fields = [] {
        std::vector<Field> all;
        AddFields(all, kNumbers, FieldKind::kU32);
        AddFields(all, kSignedNumbers, FieldKind::kI32);
        AddFields(all, kTexts, FieldKind::kText);
        AddFields(all, kAddresses, FieldKind::kAddress);
        AddFields(all, kSelectors, FieldKind::kSelector);
        return all;
    }();
    return fields;
}

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
        memcpy(bytes, word.c_str(), word.size() + 1);
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
    for (const Field& field : Fields()) {
        if (field.kind != kind) continue;
        if (name == field.name) return field;
        known += (known.empty() ? "" : ", ") + field.name;
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
    for (const Field& field : Fields()) {
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
        for (const Field& field : Fields()) {
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
        for (const Field& field : Fields()) {
            if (field.kind == kind) text += " " + field.name;
        }
        text += "\n";
    }
    return text;
}

}  // namespace aaactl
