// The two orders in which management walks the domains: the length-first order of rows (MIB) and
// the plain strcmp order (NetConf).
#pragma once

#include <aaadom/types.h>

#include "domain/tables.h"

namespace aaadom {

/// Links `node` before the first node whose name is not less; equal names go before existing ones.
void InsertMibNode(DomainTable& table, ZorvDomain* node) noexcept AAADOM_REQUIRES(table.mutex);
/// First node of exactly this name, or null.
ZorvDomain* FindMibNode(DomainTable& table, const char* name) noexcept AAADOM_REQUIRES(table.mutex);
/// Unlinks and returns the first node of exactly this name, or null; its scheme indexes stay with
/// it.
ZorvDomain* TakeMibNode(DomainTable& table, const char* name) noexcept AAADOM_REQUIRES(table.mutex);
/// First node from `head` on that follows (`name`, `name_length`) in row order, or null. Only the
/// given length is compared with the nodes' lengths; it never indexes `name`.
const ZorvDomain* NextMibNode(const ZorvDomain* head, const char* name,
                              uint32_t name_length) noexcept;

/// The node of the working role's row order from which a search for the key or for what follows it
/// may start: the head, or where the last walk stood when that is not behind the key.
const ZorvDomain* MibWalkStart(const char* name, uint32_t name_length) noexcept;
/// Remembers where a walk stands. Only the working role's own thread may: others would write beside
/// its lock.
void RememberMibWalk(const ZorvDomain* node) noexcept;

/// A zero-filled NetConf node of that name (cut to 255 characters), or null.
NetConfDomain* CreateNetConfNode(const char* name) noexcept;
/// Links `node` before the first node whose name is greater; equal names go after existing ones.
void InsertNetConfNode(DomainTable& table, NetConfDomain* node) noexcept
    AAADOM_REQUIRES(table.mutex);
/// Unlinks and frees the first node of exactly this name.
void RemoveNetConfNode(DomainTable& table, const char* name) noexcept AAADOM_REQUIRES(table.mutex);
/// Makes the sentinel point at itself.
void ResetNetConfOrder(DomainTable& table) noexcept AAADOM_REQUIRES(table.mutex);
/// First node whose name is greater than `name` (null = the first node), or null.
const NetConfDomain* NextNetConfNode(const NetConfDomain* sentinel, const char* name) noexcept;

}  // namespace aaadom
