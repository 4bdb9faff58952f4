// Tables of both roles, an empty saved configuration and a way to hand one message to the applier.
#pragma once

#include <aaadom/codes.h>
#include <aaadom/database.h>
#include <aaadom/db_layout.h>
#include <aaadom/domain.h>
#include <aaadom/domain_codec.h>
#include <aaadom/domain_table.h>
#include <aaadom/restore.h>
#include <aaadom/results.h>
#include <aaadom/settings.h>
#include <aaadom/settings_codec.h>
#include <platform/aaa_tlv.h>

#include <string>

#include "base/message.h"
#include "unit/both_roles.h"

namespace aaadom {

class RestoreTest : public SavedRolesTest<DOM_SetDomainDBMHandle> {
  protected:
    /// `body` is consumed.
    uint32_t Restore(TLV_MSG* body, uint32_t op, uint16_t save) {
        const TlvPtr inner(body);
        const TlvPtr msg(AAA_AddOpHead(op, inner.get()));
        return DOM_RestoreData(msg.get(), save, sizeof name1_, sizeof name2_, name1_, name2_);
    }
    uint32_t Set(TLV_MSG* body, uint16_t save = 0) { return Restore(body, DOM_OP_SET, save); }
    uint32_t Delete(TLV_MSG* body, uint16_t save = 0) { return Restore(body, DOM_OP_DELETE, save); }

    /// A message of one code without anything else.
    static TLV_MSG* CodeAlone(uint32_t code) { return MessageBuilder(code).Build(); }

    static void AddDomain(const char* name) { ASSERT_EQ(DOM_AddDomainByName(name), DOM_ADD_OK); }
    static uint32_t SlotOf(const char* name) {
        DOM_DomainInfoTableLock();
        const DomainInfo* domain = DOM_FindDomainByName(name);
        const uint32_t slot = domain == nullptr ? UINT32_MAX : domain->slot;
        DOM_DomainInfoTableUnlock();
        return slot;
    }
    static uint64_t CountOf() {
        uint64_t count = 0;
        DOM_DomainInfoTableLock();
        for (DomainInfo* domain = DOM_GetFirstDomain(); domain != nullptr;
             domain = DOM_GetNextDomain(domain->name))
            ++count;
        DOM_DomainInfoTableUnlock();
        return count;
    }
    /// Calls of the database that write.
    static size_t Writes() {
        return fake::DbmCalls("DBM_SetArray").size() + fake::DbmCalls("DBM_SetBinary").size();
    }

    char name1_[DOM_NAME_SIZE] = "untouched";
    char name2_[32] = "untouched";
};

}  // namespace aaadom
