#include "domain/domain_name.h"

#include <cstring>

#include "base/text.h"

namespace aaadom {

bool HasForbiddenCharacter(const char* name) noexcept {
    return strpbrk(name, "\\/:*?\"<>|@") != nullptr;
}

bool FieldEquals(const char* field, size_t capacity, const char* text) noexcept {
    size_t length = BoundedLength(field, capacity);
    return strncmp(field, text, length) == 0 && strnlen(text, length + 1) == length;
}

}  // namespace aaadom
