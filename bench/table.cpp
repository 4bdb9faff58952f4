#include "table.h"

#include <aaadom/aaadom.h>

#include <cstdio>
#include <cstring>

#include "workspace.h"

namespace bench {
namespace {

void Fill(char* field, size_t capacity, const char* text) {
    snprintf(field, capacity, "%s", text);
}

void AddMethodLists(const char* name) {
    const uint32_t kinds[] = {METHOD_SCHEME_2, METHOD_SCHEME_1, METHOD_LAST_5};
    for (uint32_t type : {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5}) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            MethodList list{};
            list.aaa_type = type;
            list.service = service;
            for (int i = 0; i < 3; ++i) {
                list.methods[i].method_kind = kinds[i];
                if (kinds[i] == METHOD_LAST_5) continue;
                Fill(list.methods[i].scheme_name, DOM_SCHEME_NAME_SIZE, "radius-main");
            }
            MethodEntry extra{};
            extra.method_kind = METHOD_SCHEME_1;
            Fill(extra.scheme_name, DOM_SCHEME_NAME_SIZE, "tacacs-backup");
            Demand(DOM_AddMethodList(name, &list, &extra) == DOM_OK, "DOM_AddMethodList");
        }
    }
}

void AddAttributes(const char* name) {
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    Fill(attributes.kind1_text, sizeof attributes.kind1_text, "acl-3000");
    Fill(attributes.kind2_text, sizeof attributes.kind2_text, "pool-north");
    Fill(attributes.kind4_text, sizeof attributes.kind4_text, "pool-south");
    Fill(attributes.kind7_text, sizeof attributes.kind7_text, "https://portal.example.net/welcome");
    Fill(attributes.kind8_text, sizeof attributes.kind8_text, "vpn-blue");
    Fill(attributes.ita_policy_name, sizeof attributes.ita_policy_name, "monthly");
    Fill(attributes.kind18_text, sizeof attributes.kind18_text, "qos-gold");
    Fill(attributes.kind20_text, sizeof attributes.kind20_text, "group-a");
    Fill(attributes.kind22_text, sizeof attributes.kind22_text, "service-7");
    Fill(attributes.author_profile_name, sizeof attributes.author_profile_name, "profile-3");
    Fill(attributes.kind26_text, sizeof attributes.kind26_text, "https://login.example.net");
    for (AttrAddress* address : {&attributes.kind5_addr, &attributes.kind6_addr,
                                 &attributes.kind16_addr, &attributes.kind17_addr}) {
        address->family = 2;
        memcpy(address->address, "\xC0\x00\x02\x35", 4);
    }
    for (uint32_t& word : attributes.kind3_words) word = 0x20010DB8;
    for (uint32_t& rate : attributes.kind21_rates) rate = 2048;
    for (uint32_t kind = 0; kind < DOM_ATTR_KINDS; ++kind) {
        Demand(DOM_AddAuthorAttr(name, &attributes, kind) == DOM_OK, "DOM_AddAuthorAttr");
    }
}

void AddSettings(const char* name) {
    EscapeRecoverAction action{};
    Fill(action.domain_name, DOM_NAME_SIZE, "recovered.example");
    Demand(DOM_SetEscapeRecoverAction(name, 1, &action) == DOM_OK, "DOM_SetEscapeRecoverAction");
    Demand(DOM_SetAuthFailDomain(name, "restricted.example", 1) == DOM_OK, "DOM_SetAuthFailDomain");
    Demand(DOM_SetSessionTime(name, 3600) == DOM_OK, "DOM_SetSessionTime");
    Demand(DOM_SetAuthRdFailPermitDomain(1, name, "guest.example") == DOM_OK,
           "DOM_SetAuthRdFailPermitDomain");
}

void MakeTypical(const char* name) {
    MethodList list{};
    list.aaa_type = AAA_TYPE_4;
    list.service = DOM_DEFAULT_SERVICE;
    list.methods[0].method_kind = METHOD_SCHEME_2;
    Fill(list.methods[0].scheme_name, DOM_SCHEME_NAME_SIZE, "radius-main");
    list.methods[1].method_kind = METHOD_DEFAULT_4;
    Demand(DOM_AddMethodList(name, &list, nullptr) == DOM_OK, "DOM_AddMethodList");
    AuthorAttr attributes{};
    DOM_InitAuthorAttr(&attributes);
    Fill(attributes.kind8_text, sizeof attributes.kind8_text, "vpn-blue");
    Demand(DOM_AddAuthorAttr(name, &attributes, 8) == DOM_OK, "DOM_AddAuthorAttr");
    Demand(DOM_SetSessionTime(name, 3600) == DOM_OK, "DOM_SetSessionTime");
}

}  // namespace

const char* SizeName(Size size) {
    switch (size) {
        case Size::kSmall:
            return "small";
        case Size::kTypical:
            return "typical";
        case Size::kLarge:
            break;
    }
    return "large";
}

std::string NameOf(int n) {
    if (n == 0) return DOM_SYSTEM_DOMAIN;
    char name[32];
    snprintf(name, sizeof name, "isp%04d.example.net", n);
    return name;
}

std::vector<std::string> ShuffledNames(int domains) {
    std::vector<std::string> names;
    // 389 is a prime: every domain comes once, whatever their number.
    for (int n = 0; n < domains; ++n) names.push_back(NameOf((n * 389) % domains));
    return names;
}

void FillTable(int domains, Size size) {
    Demand(DOM_DomainInfoTableInit() == DOM_OK, "DOM_DomainInfoTableInit");
    for (int n = 0; n < domains; ++n) {
        const std::string name = NameOf(n);
        Demand(DOM_AddDomainByName(name.c_str()) == DOM_ADD_OK, "DOM_AddDomainByName");
        if (size == Size::kSmall) continue;
        if (size == Size::kTypical) {
            MakeTypical(name.c_str());
            continue;
        }
        AddMethodLists(name.c_str());
        AddAttributes(name.c_str());
        AddSettings(name.c_str());
    }
}

std::vector<std::string> EncodedDomains(int domains) {
    std::vector<std::string> encoded;
    for (int n = 0; n < domains; ++n) {
        TLV_MSG* msg = DOM_EncodeDomain(NameOf(n).c_str());
        std::string bytes(65535, '\0');
        bytes.resize(TLV_Flush(msg, TLV_FORM_BUFFER, static_cast<uint32_t>(bytes.size()),
                               reinterpret_cast<uintptr_t>(bytes.data())));
        TLV_Destroy(msg);
        Demand(!bytes.empty(), "DOM_EncodeDomain");
        encoded.push_back(bytes);
    }
    return encoded;
}

}  // namespace bench
