#include "protobuf_peer.h"

#include <aaadom/aaadom.h>

#include <cstdlib>
#include <cstring>

#include "domain.pb.h"
#include "record_fields.h"

namespace bench {
namespace {

void FillMethod(aaadom_bench::Method& out, const MethodEntry& entry, uint32_t position) {
    out.set_position(position);
    out.set_kind(entry.method_kind);
    out.set_scheme_name(entry.scheme_name);
    out.set_scheme_index(entry.scheme_index);
}

MethodEntry TakeMethod(const aaadom_bench::Method& method) {
    MethodEntry entry{};
    entry.method_kind = method.kind();
    CopyText(entry.scheme_name, sizeof entry.scheme_name, method.scheme_name());
    entry.scheme_index = method.scheme_index();
    return entry;
}

void FillMethods(aaadom_bench::Domain& out, const DomainInfo& domain) {
    for (const auto& row : domain.method_lists) {
        for (const MethodList* list : row) {
            if (list == nullptr) continue;
            aaadom_bench::Methods& methods = *out.add_methods();
            methods.set_aaa_type(list->aaa_type);
            methods.set_service(list->service);
            for (uint32_t i = 0; i < DOM_METHODS && list->methods[i].method_kind != 0; ++i) {
                FillMethod(*methods.add_items(), list->methods[i], i);
            }
            FillMethod(*methods.mutable_extra(), domain.service_extras[list->service], 0);
        }
    }
}

void FillAttributes(aaadom_bench::Attributes& out, const AuthorAttr& attributes) {
    for (auto word : kWords) out.add_words(attributes.*word);
    out.add_words(static_cast<uint32_t>(attributes.kind19_word));
    out.add_words(attributes.kind3_words[4]);
    out.set_kind3_block(attributes.kind3_words, 16);
    for (auto address : kAddresses) out.add_addresses(&(attributes.*address), sizeof(AttrAddress));
    ForEachText(attributes, [&](const char* text, size_t) { out.add_texts(text); });
    for (uint32_t rate : attributes.kind21_rates) out.add_rates(rate);
    for (uint32_t rate : attributes.kind21_rates) out.add_rates(rate * 1024);
}

bool TakeAttributes(AuthorAttr& attributes, const aaadom_bench::Attributes& in) {
    const int words = static_cast<int>(std::size(kWords));
    if (in.words_size() != words + 2 || in.addresses_size() != 4 || in.rates_size() != 8 ||
        in.texts_size() != static_cast<int>(kTexts) || in.kind3_block().size() != 16) {
        return false;
    }
    for (int i = 0; i < words; ++i) attributes.*kWords[i] = in.words(i);
    attributes.kind19_word = static_cast<int32_t>(in.words(words));
    memcpy(attributes.kind3_words, in.kind3_block().data(), 16);
    attributes.kind3_words[4] = in.words(words + 1);
    for (int i = 0; i < 4; ++i) {
        if (in.addresses(i).size() != sizeof(AttrAddress)) return false;
        memcpy(&(attributes.*kAddresses[i]), in.addresses(i).data(), sizeof(AttrAddress));
    }
    int text = 0;
    ForEachText(attributes,
                [&](char* field, size_t capacity) { CopyText(field, capacity, in.texts(text++)); });
    for (int i = 0; i < 4; ++i) attributes.kind21_rates[i] = in.rates(i);
    return true;
}

}  // namespace

size_t ProtobufEncode(const DomainInfo& domain, void* buffer, size_t room,
                      google::protobuf::Arena& arena) {
    auto& out = *google::protobuf::Arena::CreateMessage<aaadom_bench::Domain>(&arena);
    out.set_name(domain.name);
    out.set_slot(domain.slot);
    out.set_limit_value(domain.limit_value);
    out.set_second_value(domain.second_value);
    out.set_state(domain.state);
    out.set_session_time(domain.session_time);
    out.set_user_addr_type(domain.user_addr_type);
    out.set_acct_dual_stack_mode(domain.acct_dual_stack_mode);
    out.set_redirect_code(domain.redirect_code);
    out.set_permit_domain(domain.auth_rd_fail_permit_domain);
    out.set_escape_setting(domain.escape_recover.setting);
    out.set_escape_domain(domain.escape_recover.domain_name);
    out.set_escape_second(domain.escape_recover.second_setting);
    out.set_auth_fail_domain(domain.auth_fail_domain);
    out.set_auth_fail_kind(domain.auth_fail_domain_kind);
    FillMethods(out, domain);
    FillAttributes(*out.mutable_attributes(), domain.author_attr);
    const size_t length = out.ByteSizeLong();
    if (length > room) return 0;
    out.SerializeWithCachedSizesToArray(static_cast<uint8_t*>(buffer));
    return length;
}

DomainInfo* ProtobufDecode(const void* bytes, size_t length, google::protobuf::Arena& arena) {
    auto& in = *google::protobuf::Arena::CreateMessage<aaadom_bench::Domain>(&arena);
    if (!in.ParseFromArray(bytes, static_cast<int>(length))) return nullptr;
    auto* domain = static_cast<DomainInfo*>(calloc(1, sizeof(DomainInfo)));
    if (domain == nullptr) return nullptr;
    CopyText(domain->name, sizeof domain->name, in.name());
    domain->slot = in.slot();
    domain->limit_value = in.limit_value();
    domain->second_value = in.second_value();
    domain->state = static_cast<uint16_t>(in.state());
    domain->session_time = static_cast<uint16_t>(in.session_time());
    domain->user_addr_type = in.user_addr_type();
    domain->acct_dual_stack_mode = in.acct_dual_stack_mode();
    domain->redirect_code = in.redirect_code();
    CopyText(domain->auth_rd_fail_permit_domain, DOM_NAME_SIZE, in.permit_domain());
    domain->escape_recover.setting = static_cast<uint16_t>(in.escape_setting());
    CopyText(domain->escape_recover.domain_name, DOM_NAME_SIZE, in.escape_domain());
    domain->escape_recover.second_setting = static_cast<uint16_t>(in.escape_second());
    CopyText(domain->auth_fail_domain, DOM_NAME_SIZE, in.auth_fail_domain());
    domain->auth_fail_domain_kind = static_cast<uint16_t>(in.auth_fail_kind());
    bool good = in.has_attributes() && TakeAttributes(domain->author_attr, in.attributes());
    for (const auto& methods : in.methods()) {
        MethodList* list = ListToFill(*domain, methods.aaa_type(), methods.service());
        if (list == nullptr) {
            good = false;
            break;
        }
        for (const auto& item : methods.items()) {
            if (item.position() < DOM_METHODS) list->methods[item.position()] = TakeMethod(item);
        }
        if (methods.extra().kind() != 0) {
            domain->service_extras[methods.service()] = TakeMethod(methods.extra());
        }
    }
    return WholeOrNone(domain, good);
}

}  // namespace bench
