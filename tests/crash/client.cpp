#include "client.h"

#include <platform/aaa_tlv.h>
#include <platform/lipc.h>
#include <unistd.h>

#include "daemon/record_list_keys.h"
#include "domain_facts.h"
#include "golden/sample_policy.h"
#include "integration/record_query_client.h"

using namespace daemon_test;

namespace crash {

namespace {

constexpr uint32_t kAddPolicy = 1;  // of the policy codes 1 sets and 0 deletes
constexpr uint32_t kDropPolicy = 0;
constexpr uint32_t kDomains = 6;
constexpr uint32_t kProfiles = 2;
constexpr uint32_t kVpns = 3;
constexpr uint32_t kLevels = 4;
constexpr size_t kFullList = 40;  // records; then the list is cleared

/// Sends a report; the result, and the number that the record got. Unlike other reports this one
/// may meet a daemon that is just being killed.
uint32_t SendReport(TLV_MSG* report, uint64_t& serial) {
    const Message owned(report);
    const int32_t fd = LIPC_Socket(DOM_LIPC_FAMILY, DOM_LIPC_TYPE, DOM_LIPC_PROTOCOL);
    LIPC_ADDRESS address{};
    address.length = DOM_LIPC_ADDR_LEN;
    address.family = DOM_LIPC_FAMILY;
    address.endpoint = DOM_LIPC_ENDPOINT;
    address.sub_endpoint = DOM_LIPC_RECORD_SUB_ENDPOINT;
    uint32_t result = kNoReply;
    const std::vector<uint8_t> bytes = Image(report);
    if (LIPC_Connect(fd, &address, DOM_LIPC_ADDR_LEN) == 0 &&
        write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())) {
        const Message reply(
            TLV_CreateReceiveMsg(TLV_FORM_DESCRIPTOR, static_cast<uintptr_t>(fd), 20000));
        const Message body(reply ? AAA_GetSubTlv(reply.get(), TLV_GetFirst(reply.get())) : nullptr);
        if (body && DOM_lipc_ReplyMsgProc(body.get(), &result) != DOM_OK) result = kNoReply;
        TLV_ITER* it = body ? TLV_GetIteratorByType(body.get(), DOM_TLV_RECORD_SERIAL) : nullptr;
        if (it != nullptr) serial = AAA_GetUINT64TlvValue(body.get(), it);
    }
    LIPC_Close(fd);
    return result;
}

uint32_t ResetCode(uint32_t list) {
    switch (list) {
        case DOM_RECORD_ONLINE_FAIL:
            return DOM_MSG_RESET_ONLINE_FAIL;
        case DOM_RECORD_ABNORMAL_OFFLINE:
            return DOM_MSG_RESET_OFFLINE_ABNORMAL;
        default:
            return DOM_MSG_RESET_OFFLINE_NORMAL;
    }
}

template <size_t size>
void Copy(char (&field)[size], const std::string& text) {
    snprintf(field, size, "%s", text.c_str());
}

}  // namespace

Client::Client(size_t number, uint64_t seed, const Facts& fresh_domain, const std::string& history)
    : number_(number), random_(seed), fresh_domain_(fresh_domain), history_(history) {
    expected_.owner = OwnerName(number);
}

void Client::Note(const std::string& line) {
    history_ << line << std::endl;
}

void Client::Run() {
    for (;;) {
        const Step step = Next();
        expected_.after = expected_.known;
        step.apply(*expected_.after);
        expected_.in_flight = step.text;
        Note("sent: " + step.text);
        const uint32_t result = step.send();
        if (result == kNoReply) return;
        Note("answered: " + std::to_string(result));
        if (result != DOM_OK) {
            faults_.push_back(expected_.owner + ": " + step.text + " was answered with " +
                              std::to_string(result));
            return;
        }
        expected_.known = *expected_.after;
        expected_.after.reset();
        Learn(Outcome::kDone);
        ++answered_;
    }
}

void Client::Learn(Outcome outcome) {
    if (outcome == Outcome::kDone && serial_in_flight_ != 0) last_serial_ = serial_in_flight_;
    serial_in_flight_ = 0;
}

std::string Client::Name(const char* kind, uint32_t count) {
    return OwnerName(number_) + "-" + kind + std::to_string(Below(count));
}

Step Client::Next() {
    const uint32_t dice = Below(16);
    if (dice < 5) return DomainStep();
    if (dice < 7) return NasIdStep();
    if (dice < 9) return ProfileStep(false);
    if (dice < 10) return ProfileStep(true);
    if (dice < 12) return PolicyStep();
    if (dice < 13 && number_ == 0) return DeviceStep();
    if (number_ < std::size(aaad::kRecordListKeys)) return RecordStep();
    return DomainStep();
}

Step Client::DomainStep() {
    const std::string name = Name("d", kDomains);
    const std::string key = FactKey("domain", name);
    if (!Has(key)) {
        return {"create domain " + name,
                [name] { return Change(DOM_EncodeDomainName(name.c_str())); },
                [key, this](Facts& facts) {
                    facts[key] = "";
                    for (const auto& [detail, value] : fresh_domain_)
                        facts[key + "/" + detail] = value;
                }};
    }
    const auto set = [&](const char* detail, const std::string& value,
                         std::function<TLV_MSG*()> make) {
        return Step{"set " + key + "/" + detail + " to " + value,
                    [make = std::move(make)] { return Change(make()); },
                    [key, detail, value](Facts& facts) { facts[key + "/" + detail] = value; }};
    };
    const uint32_t number = Below(30000) + 1;
    switch (Below(8)) {
        case 0:
            return {"delete domain " + name,
                    [name] { return Change(DOM_EncodeDomainName(name.c_str()), DOM_OP_DELETE); },
                    [key](Facts& facts) { Erase(facts, key); }};
        case 1: {
            const uint16_t state = Below(2) == 0 ? 0 : 2;
            return set("state", std::to_string(state),
                       [=] { return DOM_EncodeState(name.c_str(), state); });
        }
        case 2: {
            const uint32_t type = Below(7) + 1;
            return set("addresses", std::to_string(type),
                       [=] { return DOM_EncodeUserAddrType(name.c_str(), type); });
        }
        case 3: {
            const uint32_t mode = Below(2) + 1;
            return set("stack", std::to_string(mode),
                       [=] { return DOM_EncodeAcctDualStackMode(name.c_str(), mode); });
        }
        case 4: {
            const std::string policy = "p" + std::to_string(number);
            return set("policy", policy, [=] {
                AuthorAttr attributes{};
                DOM_InitAuthorAttr(&attributes);
                Copy(attributes.ita_policy_name, policy);
                constexpr uint32_t kPolicyAttribute = 12;
                return DOM_EncodeAuthorAttr(kPolicyAttribute, name.c_str(), &attributes);
            });
        }
        case 5: {
            const std::string scheme = "radius-" + std::to_string(number);
            return set("scheme", scheme, [=] {
                MethodList list{};
                list.aaa_type = AAA_TYPE_0;
                list.service = DOM_DEFAULT_SERVICE;
                list.methods[0].method_kind = METHOD_SCHEME_2;
                Copy(list.methods[0].scheme_name, scheme);
                list.methods[1].method_kind = METHOD_DEFAULT_4;
                const MethodEntry no_extra{};
                return DOM_EncodeMethList(name.c_str(), &list, &no_extra);
            });
        }
        default:
            return set("time", std::to_string(number), [=] {
                return DOM_EncodeSessionTime(name.c_str(), static_cast<uint16_t>(number));
            });
    }
}

Step Client::NasIdStep() {
    const std::string profile = Name("n", kProfiles);
    const std::string key = FactKey("nas", profile);
    if (!Has(key)) {
        return {"create NAS-ID profile " + profile,
                [profile] { return Change(DOM_EncodeNasIdProfile(profile.c_str())); },
                [key](Facts& facts) { facts[key] = ""; }};
    }
    if (Below(8) == 0) {
        return {
            "delete NAS-ID profile " + profile,
            [profile] { return Change(DOM_EncodeNasIdProfile(profile.c_str()), DOM_OP_DELETE); },
            [key](Facts& facts) { Erase(facts, key); }};
    }
    const auto vlan = static_cast<uint16_t>(Below(kVlans));
    const std::string binding = key + "/" + std::to_string(vlan);
    if (Has(binding) && Below(3) == 0) {
        const std::string nas_id = expected_.known.at(binding);
        return {"unbind " + binding,
                [=] {
                    return Change(DOM_EncodeNasidBindVlanId(profile.c_str(), nas_id.c_str(), vlan),
                                  DOM_OP_DELETE);
                },
                [binding](Facts& facts) { facts.erase(binding); }};
    }
    // A number that does not come again: the same binding once more has a result of its own.
    const std::string nas_id = "nas-" + std::to_string(random_() % 1000000000);
    return {
        "bind " + binding + " to " + nas_id,
        [=] { return Change(DOM_EncodeNasidBindVlanId(profile.c_str(), nas_id.c_str(), vlan)); },
        [=](Facts& facts) { facts[binding] = nas_id; }};
}

Step Client::ProfileStep(bool critical) {
    const std::string profile = Name(critical ? "k" : "a", kProfiles);
    const std::string key = FactKey(critical ? "critical" : "author", profile);
    const auto name_message = [=] {
        return critical ? DOM_clitical_tlv_EncodeCriticalProfile(profile.c_str())
                        : DOM_author_tlv_EncodeAuthorProfile(profile.c_str());
    };
    if (!Has(key)) {
        return {"create profile " + key, [=] { return Change(name_message()); },
                [key](Facts& facts) { facts[key] = "0 "; }};
    }
    if (Below(8) == 0) {
        return {"delete profile " + key, [=] { return Change(name_message(), DOM_OP_DELETE); },
                [key](Facts& facts) { Erase(facts, key); }};
    }
    // Number and text belong together: one without the other is half a change.
    const uint32_t id = Below(30000) + 1;
    const std::string segment = "seg" + std::to_string(id);
    const bool of_vpn = Below(3) != 0;
    const std::string vpn = of_vpn ? "vpn" + std::to_string(Below(kVpns)) : "";
    const std::string detail = of_vpn ? key + "/" + vpn : key;
    const bool drop = of_vpn && Has(detail) && Below(3) == 0;
    const auto make = [=]() -> TLV_MSG* {
        if (critical) {
            CriticalProfileMsg message{};
            Copy(message.profile_name, profile);
            Copy(message.vpn_name, vpn);
            Copy(message.segment_name, segment);
            message.segment_id = id;
            message.value16 = 1;
            return of_vpn ? DOM_critical_tlv_EncodeCriticalVpn(&message)
                          : DOM_critical_tlv_EncodeDefaultCritical(&message);
        }
        AuthorProfileMsg message{};
        Copy(message.profile_name, profile);
        Copy(message.vpn_name, vpn);
        Copy(message.segment_name, segment);
        message.segment_id = id;
        return of_vpn ? DOM_author_tlv_EncodeAuthorVpn(&message)
                      : DOM_author_tlv_EncodeDefaultAuthor(&message);
    };
    if (drop) {
        return {"drop " + detail, [=] { return Change(make(), DOM_OP_DELETE); },
                [detail](Facts& facts) { facts.erase(detail); }};
    }
    const std::string value = std::to_string(id) + " " + segment;
    return {"set " + detail + " to " + value, [=] { return Change(make()); },
            [=](Facts& facts) { facts[detail] = value; }};
}

Step Client::PolicyStep() {
    const std::string policy = Name("p", kProfiles);
    const std::string key = FactKey("policy", policy);
    if (!Has(key)) {
        return {
            "create policy " + policy,
            [policy] { return Change(DOM_ita_tlv_EncodePolicyName(policy.c_str()), kAddPolicy); },
            [key](Facts& facts) { facts[key] = ""; }};
    }
    if (Below(6) == 0) {
        return {
            "delete policy " + policy,
            [policy] { return Change(DOM_ita_tlv_EncodePolicyName(policy.c_str()), kDropPolicy); },
            [key](Facts& facts) { Erase(facts, key); }};
    }
    const uint32_t level = Below(kLevels) + 1;
    const std::string detail = key + "/level" + std::to_string(level);
    const uint32_t value = Below(1000000) + 1;
    const bool drop = Has(detail) && Below(3) == 0;
    const auto send = [=] {
        return Change(
            DOM_ita_tlv_EncodeAcctLevel(policy.c_str(), level, value, 0, DOM_ITA_PAIR_UNSET,
                                        DOM_ITA_PAIR_UNSET, DOM_ITA_PAIR_UNSET, DOM_ITA_PAIR_UNSET),
            drop ? kDropPolicy : kAddPolicy);
    };
    if (drop) return {"drop " + detail, send, [detail](Facts& facts) { facts.erase(detail); }};
    return {"set " + detail + " to " + std::to_string(value), send,
            [=](Facts& facts) { facts[detail] = std::to_string(value); }};
}

Step Client::DeviceStep() {
    const uint32_t number = Below(1000000) + 1;
    switch (Below(4)) {
        case 0:
            return {"set device identifier to " + std::to_string(number),
                    [=] { return Change(DOM_EncodeDeviceID(number)); },
                    [=](Facts& facts) {
                        facts[FactKey("device", kDevice, "id")] = std::to_string(number);
                    }};
        case 1: {
            const std::string name = "unknown" + std::to_string(number);
            return {
                "set unknown domain to " + name,
                [=] { return Change(DOM_EncodeUnknownDomain(name.c_str())); },
                [=](Facts& facts) { facts[FactKey("device", kDevice, "unknown-domain")] = name; }};
        }
        case 2:
            return RecordingStep();
        default:
            return {"set session limit 21 to " + std::to_string(number),
                    [=] { return Change(DOM_EncodeSessionLimit(SESSION_CLASS_21, number)); },
                    [=](Facts& facts) {
                        facts[FactKey("limit", kDevice, "21")] = std::to_string(number);
                    }};
    }
}

Step Client::RecordingStep() {
    const std::string key = FactKey("recording", kDevice);
    if (Has(key) && Below(3) == 0) {
        return {"delete the recording policy",
                [] { return Change(DOM_Rec_tlv_EncodePolicyType(0), DOM_OP_DELETE); },
                [key](Facts& facts) { facts.erase(key); }};
    }
    // Made with its scheme in one change, or the scheme of one that is there.
    const bool whole = !Has(key) || Below(2) == 0;
    RecPolicy policy{};
    policy.acct_scheme[0].method_kind = METHOD_SCHEME_2;
    Copy(policy.acct_scheme[0].scheme_name, "recorder" + std::to_string(Below(1000000)));
    policy.acct_scheme[1].method_kind = METHOD_DEFAULT_4;
    const std::string scheme = std::to_string(METHOD_SCHEME_2) + ":" +
                               policy.acct_scheme[0].scheme_name + " " +
                               std::to_string(METHOD_DEFAULT_4) + ": ";
    return {"set the recording policy to " + scheme,
            [=] {
                return Change(whole ? DOM_Rec_tlv_EncodePolicy(&policy)
                                    : DOM_Rec_tlv_EncodeAcctScheme(0, policy.acct_scheme));
            },
            [=](Facts& facts) { facts[key] = scheme; }};
}

Step Client::RecordStep() {
    const uint32_t list = aaad::kRecordListKeys[number_].list;
    const std::string owner = OwnerName(number_);
    const size_t stored = OfKind(expected_.known, "record").size();
    if (stored > kFullList || (stored > 0 && Below(40) == 0)) {
        return {"clear list " + std::to_string(list),
                [list] { return ResetRecords(ResetCode(list)); },
                [owner](Facts& facts) { Erase(facts, owner + "/record"); }};
    }
    const std::string user = owner + "-user" + std::to_string(random_() % 1000000000);
    const std::string detail(Below(4) == 0 ? 3000 : 20, static_cast<char>('a' + Below(26)));
    serial_in_flight_ = last_serial_ + 1;
    const uint64_t serial = serial_in_flight_;
    const std::string key = FactKey("record", RecordList(list), std::to_string(serial));
    return {"report " + user + " to list " + std::to_string(list),
            [=]() -> uint32_t {
                UserRecordSource record{};
                Copy(record.second_name, user);
                Copy(record.first_name, "isp");
                record.first_number = 1700000000;
                record.detail = const_cast<char*>(detail.c_str());
                record.detail_len = static_cast<uint32_t>(detail.size() + 1);
                uint64_t given = 0;
                const uint32_t result = SendReport(PAM_EncUserRecordMsg(list, 0, &record), given);
                if (result != DOM_OK) return result;
                return given == serial ? DOM_OK : DOM_ERR_FAILED;
            },
            [=](Facts& facts) { facts[key] = user + " " + detail; }};
}

void Client::PutFormerPolicy(DBM_HANDLE handle) {
    const std::string policy = Name("p", kProfiles);
    const std::string key = FactKey("policy", policy);
    const ItaPolicy sample = golden::SamplePolicy(policy.c_str());
    if (!golden::PutOldBlock(handle, policy, golden::OldBlock(sample))) {
        faults_.push_back(expected_.owner + ": former policy " + policy + " cannot be stored");
        return;
    }
    Note("put former policy " + policy);
    // A change in flight may have made or deleted this policy; both ends of it get the policy.
    Facts all;
    AddPolicy(sample, all);
    const Facts made = Known(all, expected_.owner);
    for (Facts* facts : {&expected_.known, expected_.after ? &*expected_.after : nullptr}) {
        if (facts == nullptr || facts->count(key) != 0) continue;  // the current one is the newer
        facts->insert(made.begin(), made.end());
    }
}

}  // namespace crash
