// Rules of domain names.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// Length is not judged: a longer name is cut when it is stored. Empty names pass.
bool HasForbiddenCharacter(const char* name) noexcept;
/// Whether a fixed field holds exactly `text`; the field may be full and unterminated.
bool FieldEquals(const char* field, size_t capacity, const char* text) noexcept;

}  // namespace aaadom
