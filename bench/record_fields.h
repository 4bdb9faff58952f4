// The fields of the attribute block by their type, so that each peer carries all of them.
#pragma once

#include <aaadom/aaadom.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace bench {

constexpr uint32_t AuthorAttr::*kWords[] = {
    &AuthorAttr::kind0_word1, &AuthorAttr::kind0_word2,  &AuthorAttr::kind0_word3,
    &AuthorAttr::kind9_word,  &AuthorAttr::kind10_word,  &AuthorAttr::kind11_word,
    &AuthorAttr::kind13_word, &AuthorAttr::kind14_word1, &AuthorAttr::kind14_word2,
    &AuthorAttr::kind15_word, &AuthorAttr::kind23_word,  &AuthorAttr::kind24_word};
constexpr AttrAddress AuthorAttr::*kAddresses[] = {&AuthorAttr::kind5_addr, &AuthorAttr::kind6_addr,
                                                   &AuthorAttr::kind16_addr,
                                                   &AuthorAttr::kind17_addr};
constexpr uint32_t kTexts = 11;

/// Calls visit(field, capacity) for every text field.
template <typename Attributes, typename Visit>
void ForEachText(Attributes& attributes, Visit&& visit) {
    visit(attributes.kind1_text, sizeof attributes.kind1_text);
    visit(attributes.kind2_text, sizeof attributes.kind2_text);
    visit(attributes.kind4_text, sizeof attributes.kind4_text);
    visit(attributes.kind7_text, sizeof attributes.kind7_text);
    visit(attributes.kind8_text, sizeof attributes.kind8_text);
    visit(attributes.ita_policy_name, sizeof attributes.ita_policy_name);
    visit(attributes.kind18_text, sizeof attributes.kind18_text);
    visit(attributes.kind20_text, sizeof attributes.kind20_text);
    visit(attributes.kind22_text, sizeof attributes.kind22_text);
    visit(attributes.author_profile_name, sizeof attributes.author_profile_name);
    visit(attributes.kind26_text, sizeof attributes.kind26_text);
}

inline void CopyText(char* field, size_t capacity, std::string_view text) {
    const size_t length = std::min(text.size(), capacity - 1);
    memcpy(field, text.data(), length);
    field[length] = '\0';
}

/// The list that a decoded message fills, made when it is the first for its place. Null when the
/// place does not exist, and for want of memory.
inline MethodList* ListToFill(DomainInfo& domain, uint32_t aaa_type, uint32_t service) {
    if (aaa_type >= DOM_AAA_TYPES || service >= DOM_SERVICES) return nullptr;
    MethodList*& list = domain.method_lists[aaa_type][service];
    if (list == nullptr) list = DOM_CreateMethodList();
    if (list == nullptr) return nullptr;
    list->aaa_type = aaa_type;
    list->service = service;
    return list;
}

/// The decoded domain; destroyed, and null, when a part of it was not good.
inline DomainInfo* WholeOrNone(DomainInfo* domain, bool good) {
    if (good) return domain;
    DOM_DestroyDomain(domain);
    return nullptr;
}

}  // namespace bench
