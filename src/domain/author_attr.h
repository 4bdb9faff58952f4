// Which fields of a domain's authorization attributes belong to which attribute kind, and how each
// is set and reset.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

void InitAuthorAttr(AuthorAttr& block) noexcept;
/// Copies the fields of `kind`; DOM_ERR_FAILED for a kind of 27 and more.
uint32_t CopyAuthorAttr(AuthorAttr& to, const AuthorAttr& from, uint32_t kind) noexcept;
/// Gives the fields of `kind` their initial values, except small numbers that stand beside a text.
uint32_t ResetAuthorAttr(AuthorAttr& block, uint32_t kind) noexcept;

}  // namespace aaadom
