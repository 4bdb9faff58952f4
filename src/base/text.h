// Fixed-size texts: copied with truncation, always terminated, never read past their field.
#pragma once

#include <strings.h>

#include <cstddef>
#include <cstring>

namespace aaadom {

/// Length of the text in a field of `capacity` bytes that may lack its terminator.
inline size_t BoundedLength(const char* field, size_t capacity) noexcept {
    // A terminated text may be shorter than the bound; the compiler takes that for an overread.
#pragma GCC diagnostic push
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wstringop-overread"
#endif
    return strnlen(field, capacity);
#pragma GCC diagnostic pop
}

/// Copies at most `capacity` - 1 characters and terminates; bytes after the terminator stay as they
/// were. Reads at most `source_capacity` bytes of `source`. Null source copies an empty text.
inline void CopyBounded(char* destination, size_t capacity, const char* source,
                        size_t source_capacity) noexcept {
    if (destination == nullptr || capacity == 0) return;
    size_t length = source == nullptr ? 0 : BoundedLength(source, source_capacity);
    if (length > capacity - 1) length = capacity - 1;
    if (length != 0) memmove(destination, source, length);
    destination[length] = '\0';
}

/// CopyBounded for a terminated source of any length.
inline void CopyText(char* destination, size_t capacity, const char* source) noexcept {
    CopyBounded(destination, capacity, source, capacity);
}

template <size_t N>
void CopyText(char (&destination)[N], const char* source) noexcept {
    CopyText(destination, N, source);
}

/// Copies one fixed field into another; either may be full and unterminated.
template <size_t N, size_t M>
void CopyField(char (&destination)[N], const char (&source)[M]) noexcept {
    CopyBounded(destination, N, source, M);
}

inline bool EqualIgnoringCase(const char* a, const char* b) noexcept {
    return strcasecmp(a, b) == 0;
}

inline bool IsEmpty(const char* text) noexcept {
    return text == nullptr || text[0] == '\0';
}

}  // namespace aaadom
