#include "scheme_rows.h"

#include <aaadom/aaad_results.h>

#include "names.h"
#include "texts.h"

namespace aaactl {
namespace {

MibSchemeRow Decode(TLV_MSG* reply) {
    MibSchemeRow row{};
    if (DOM_DecodeMibSchemeTable(reply, &row) != DOM_OK) {
        throw Failure(kExitRefused, "scheme rows", "the daemon's answer cannot be read",
                      "Use the aaactl of the daemon's release");
    }
    return row;
}

std::string MethodOf(const MibSchemeRow& row) {
    MethodEntry entry{};
    entry.method_kind = row.method_kind;
    std::copy(std::begin(row.scheme_name), std::end(row.scheme_name), entry.scheme_name);
    return MethodName(entry);
}

TLV_MSG* Encode(const SchemeKey& key) {
    return DOM_EncodeSchemeIndex(key.domain.c_str(), static_cast<uint32_t>(key.domain.size()),
                                 key.scheme_index);
}

}  // namespace

bool operator<(const SchemeKey& a, const SchemeKey& b) {
    if (a.domain.size() != b.domain.size()) return a.domain.size() < b.domain.size();
    if (a.domain != b.domain) return a.domain < b.domain;
    return a.scheme_index < b.scheme_index;
}

std::optional<MibSchemeRow> NextSchemeRow(Client& client, const SchemeKey& key) {
    const Reply reply = client.Read(Encode(key), DOM_OP_GET_NEXT);
    if (!reply.data) {
        if (reply.refusal != DOM_WALK_NONE && reply.refusal != DOM_WALK_NO_MESSAGE) {
            throw Refused("scheme rows", reply.refusal);
        }
        return std::nullopt;
    }
    const MibSchemeRow row = Decode(reply.data.get());
    // Keys ascend, so a walk ends whatever other clients change meanwhile.
    if (!(key < SchemeKey{row.domain_name, row.scheme_index})) {
        throw Failure(kExitRefused, "scheme rows", "the daemon's answer is not in order",
                      "Use the aaactl of the daemon's release");
    }
    return row;
}

std::optional<MibSchemeRow> FindSchemeRow(Client& client, const SchemeKey& key) {
    const Reply reply = client.Read(Encode(key), DOM_OP_GET);
    if (!reply.data) {
        if (reply.refusal != AAAD_ERR_NO_OBJECT) throw Refused("scheme row", reply.refusal);
        return std::nullopt;
    }
    return Decode(reply.data.get());
}

Json SchemeRowToJson(const MibSchemeRow& row) {
    return {{"domain", row.domain_name},
            {"index", row.scheme_index},
            {"type", AaaTypeName(row.aaa_type)},
            {"method", MethodOf(row)}};
}

std::string SchemeRowLine(const MibSchemeRow& row) {
    return Printable(row.domain_name) + "  " + std::to_string(row.scheme_index) + "  " +
           AaaTypeName(row.aaa_type) + "  " + Printable(MethodOf(row));
}

}  // namespace aaactl
