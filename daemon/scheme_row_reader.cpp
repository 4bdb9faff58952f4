#include "scheme_row_reader.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/domain_codec.h>
#include <aaadom/method_list.h>
#include <aaadom/rows.h>

#include "stored_spelling.h"

namespace aaad {
namespace {

Message ExactRow(const DomainNameBuffer& asked, uint32_t scheme_index, uint32_t& refusal) {
    refusal = AAAD_ERR_NO_OBJECT;
    DomainNameBuffer domain = {};
    uint32_t aaa_type = 0;
    uint32_t position = 0;
    MethodList list{};
    if (!FindStoredSpelling(asked, domain) ||
        DOM_GetAAAType(domain, scheme_index, &aaa_type) != DOM_OK ||
        DOM_GetMethodIndex(domain, scheme_index, &position) != DOM_OK || position >= DOM_METHODS ||
        DOM_GetMethodList(domain, aaa_type, DOM_DEFAULT_SERVICE, &list, nullptr) != DOM_OK) {
        return nullptr;
    }
    const MethodEntry& entry = list.methods[position];
    Message row(DOM_EncodeDomainSchemeFlag(0, domain, DOM_ROW_ACTIVE, aaa_type, scheme_index,
                                           entry.method_kind, entry.scheme_name));
    if (!row) refusal = DOM_ERR_FAILED;
    return row;
}

}  // namespace

Message ReadSchemeRow(const Question& question, uint32_t& refusal) {
    DomainNameBuffer domain = {};
    uint32_t name_length = 0;
    uint32_t scheme_index = 0;
    if (DOM_DecodeSchemeIndex(question.body, sizeof domain, domain, &name_length, &scheme_index) !=
        DOM_OK) {
        refusal = AAAD_ERR_MALFORMED;
        return nullptr;
    }
    if (question.operation == DOM_OP_GET) return ExactRow(domain, scheme_index, refusal);

    uint32_t status = DOM_WALK_OK;
    Message row;
    if (name_length == 0) {
        row.reset(DOM_EncodeMibSchemeTable(&status));
        // The library takes a table whose first domain has no default list for empty; the rows of
        // the domains behind it are there all the same.
        domain[0] = '\0';
        scheme_index = 0;
    }
    if (!row) row.reset(DOM_EncodeMibNextSchemeTable(domain, name_length, scheme_index, &status));
    if (!row) refusal = status != DOM_WALK_OK ? status : DOM_ERR_FAILED;
    return row;
}

}  // namespace aaad
