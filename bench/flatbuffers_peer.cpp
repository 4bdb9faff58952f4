#include "flatbuffers_peer.h"

#include <aaadom/aaadom.h>

#include <cstdlib>
#include <cstring>
#include <iterator>

#include "domain_generated.h"
#include "record_fields.h"

namespace bench {
namespace {

namespace flat = aaadom_bench::flat;
using Builder = flatbuffers::FlatBufferBuilder;

flatbuffers::Offset<flat::Method> FillMethod(Builder& builder, const MethodEntry& entry) {
    const auto name = builder.CreateString(entry.scheme_name);
    return flat::CreateMethod(builder, entry.method_kind, name, entry.scheme_index);
}

flatbuffers::Offset<flat::Methods> FillMethods(Builder& builder, const MethodList& list,
                                               const MethodEntry& extra) {
    flatbuffers::Offset<flat::Method> items[DOM_METHODS];
    size_t count = 0;
    while (count < DOM_METHODS && list.methods[count].method_kind != METHOD_EMPTY) {
        items[count] = FillMethod(builder, list.methods[count]);
        ++count;
    }
    const auto vector = builder.CreateVector(items, count);
    return flat::CreateMethods(builder, list.aaa_type, list.service, vector,
                               FillMethod(builder, extra));
}

flatbuffers::Offset<flat::Attributes> FillAttributes(Builder& builder,
                                                     const AuthorAttr& attributes) {
    constexpr size_t kCount = std::size(kWords);
    uint32_t words[kCount + 1];
    for (size_t i = 0; i < kCount; ++i) words[i] = attributes.*kWords[i];
    words[kCount] = static_cast<uint32_t>(attributes.kind19_word);
    flat::Address addresses[std::size(kAddresses)];
    for (size_t i = 0; i < std::size(kAddresses); ++i) {
        const AttrAddress& address = attributes.*kAddresses[i];
        addresses[i] = flat::Address(
            address.family,
            flatbuffers::make_span(reinterpret_cast<const uint8_t(&)[16]>(address.address)));
    }
    flatbuffers::Offset<flatbuffers::String> texts[kTexts];
    size_t text = 0;
    ForEachText(attributes,
                [&](const char* field, size_t) { texts[text++] = builder.CreateString(field); });
    const flat::Words5 kind3(flatbuffers::make_span(attributes.kind3_words));
    const flat::Rates rates(flatbuffers::make_span(attributes.kind21_rates));
    const auto word_vector = builder.CreateVector(words, std::size(words));
    const auto address_vector = builder.CreateVectorOfStructs(addresses, std::size(addresses));
    const auto text_vector = builder.CreateVector(texts, kTexts);
    return flat::CreateAttributes(builder, word_vector, &kind3, address_vector, text_vector,
                                  &rates);
}

MethodEntry TakeMethod(const flat::Method& method) {
    MethodEntry entry{};
    entry.method_kind = method.kind();
    if (method.scheme_name() != nullptr) {
        CopyText(entry.scheme_name, sizeof entry.scheme_name, method.scheme_name()->string_view());
    }
    entry.scheme_index = method.scheme_index();
    return entry;
}

bool TakeAttributes(AuthorAttr& attributes, const flat::Attributes& in) {
    constexpr size_t kCount = std::size(kWords);
    if (in.words() == nullptr || in.words()->size() != kCount + 1 || in.addresses() == nullptr ||
        in.addresses()->size() != std::size(kAddresses) || in.texts() == nullptr ||
        in.texts()->size() != kTexts || in.kind3_words() == nullptr || in.rates() == nullptr) {
        return false;
    }
    for (uint32_t i = 0; i < kCount; ++i) attributes.*kWords[i] = in.words()->Get(i);
    attributes.kind19_word = static_cast<int32_t>(in.words()->Get(kCount));
    memcpy(attributes.kind3_words, in.kind3_words()->words()->Data(),
           sizeof attributes.kind3_words);
    memcpy(attributes.kind21_rates, in.rates()->rates()->Data(), sizeof attributes.kind21_rates);
    for (uint32_t i = 0; i < std::size(kAddresses); ++i) {
        AttrAddress& address = attributes.*kAddresses[i];
        address.family = in.addresses()->Get(i)->family();
        memcpy(address.address, in.addresses()->Get(i)->address()->Data(), sizeof address.address);
    }
    uint32_t text = 0;
    ForEachText(attributes, [&](char* field, size_t capacity) {
        CopyText(field, capacity, in.texts()->Get(text++)->string_view());
    });
    return true;
}

void TakeText(char (&field)[DOM_NAME_SIZE], const flatbuffers::String* text) {
    if (text != nullptr) CopyText(field, DOM_NAME_SIZE, text->string_view());
}

bool TakeMethods(DomainInfo& domain, const flat::Methods& methods) {
    MethodList* list = ListToFill(domain, methods.aaa_type(), methods.service());
    if (list == nullptr) return false;
    uint32_t position = 0;
    if (methods.items() != nullptr) {
        for (const flat::Method* item : *methods.items()) {
            if (position < DOM_METHODS) list->methods[position++] = TakeMethod(*item);
        }
    }
    if (methods.extra() != nullptr && methods.extra()->kind() != METHOD_EMPTY) {
        domain.service_extras[methods.service()] = TakeMethod(*methods.extra());
    }
    return true;
}

}  // namespace

void FlatbuffersEncode(const DomainInfo& domain, Builder& builder) {
    builder.Clear();
    flatbuffers::Offset<flat::Methods> lists[DOM_AAA_TYPES * DOM_SERVICES];
    size_t count = 0;
    for (const auto& row : domain.method_lists) {
        for (const MethodList* list : row) {
            if (list == nullptr) continue;
            lists[count++] = FillMethods(builder, *list, domain.service_extras[list->service]);
        }
    }
    const auto attributes = FillAttributes(builder, domain.author_attr);
    const auto name = builder.CreateString(domain.name);
    const auto permit = builder.CreateString(domain.auth_rd_fail_permit_domain);
    const auto escape = builder.CreateString(domain.escape_recover.domain_name);
    const auto auth_fail = builder.CreateString(domain.auth_fail_domain);
    const auto methods = builder.CreateVector(lists, count);
    flat::DomainBuilder out(builder);
    out.add_name(name);
    out.add_slot(domain.slot);
    out.add_limit_value(domain.limit_value);
    out.add_second_value(domain.second_value);
    out.add_state(domain.state);
    out.add_session_time(domain.session_time);
    out.add_user_addr_type(domain.user_addr_type);
    out.add_acct_dual_stack_mode(domain.acct_dual_stack_mode);
    out.add_redirect_code(domain.redirect_code);
    out.add_permit_domain(permit);
    out.add_escape_setting(domain.escape_recover.setting);
    out.add_escape_domain(escape);
    out.add_escape_second(domain.escape_recover.second_setting);
    out.add_auth_fail_domain(auth_fail);
    out.add_auth_fail_kind(domain.auth_fail_domain_kind);
    out.add_methods(methods);
    out.add_attributes(attributes);
    builder.Finish(out.Finish());
}

DomainInfo* FlatbuffersDecode(const void* bytes, size_t length) {
    flatbuffers::Verifier verifier(static_cast<const uint8_t*>(bytes), length);
    if (!flat::VerifyDomainBuffer(verifier)) return nullptr;
    const flat::Domain& in = *flat::GetDomain(bytes);
    auto* domain = static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo)));
    if (domain == nullptr) return nullptr;
    TakeText(domain->name, in.name());
    domain->slot = in.slot();
    domain->limit_value = in.limit_value();
    domain->second_value = in.second_value();
    domain->state = static_cast<uint16_t>(in.state());
    domain->session_time = static_cast<uint16_t>(in.session_time());
    domain->user_addr_type = in.user_addr_type();
    domain->acct_dual_stack_mode = in.acct_dual_stack_mode();
    domain->redirect_code = in.redirect_code();
    TakeText(domain->auth_rd_fail_permit_domain, in.permit_domain());
    domain->escape_recover.setting = static_cast<uint16_t>(in.escape_setting());
    TakeText(domain->escape_recover.domain_name, in.escape_domain());
    domain->escape_recover.second_setting = static_cast<uint16_t>(in.escape_second());
    TakeText(domain->auth_fail_domain, in.auth_fail_domain());
    domain->auth_fail_domain_kind = static_cast<uint16_t>(in.auth_fail_kind());
    bool good = in.attributes() != nullptr && TakeAttributes(domain->author_attr, *in.attributes());
    if (in.methods() != nullptr) {
        for (const flat::Methods* methods : *in.methods()) good &= TakeMethods(*domain, *methods);
    }
    return WholeOrNone(domain, good);
}

}  // namespace bench
