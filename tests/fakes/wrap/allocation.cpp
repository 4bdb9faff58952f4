// The allocation calls of the whole test program, turned here by the linker's --wrap, and the
// operators new that return null on failure.
#include <cstdlib>
#include <cstring>
#include <new>

#include "fakes/state.h"

extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);
void* __wrap_malloc(size_t size);
void* __wrap_calloc(size_t count, size_t size);
void* __wrap_realloc(void* block, size_t size);
void __wrap_free(void* block);
char* __wrap_strdup(const char* text);
char* __wrap_strndup(const char* text, size_t most);
}

namespace {
bool Refused() {
    return fake::Hit(fake::Event::kAllocation);
}

void* Noted(void* block) {
    fake::NoteBlock(block);
    return block;
}
}  // namespace

void* __wrap_malloc(size_t size) {
    return Refused() ? nullptr : Noted(__real_malloc(size));
}

void* __wrap_calloc(size_t count, size_t size) {
    return Refused() ? nullptr : Noted(__real_calloc(count, size));
}

void* __wrap_realloc(void* block, size_t size) {
    if (Refused()) return nullptr;
    fake::NoteFree(block);
    void* moved = __real_realloc(block, size);
    fake::NoteBlock(moved == nullptr && size != 0 ? block : moved);
    return moved;
}

void __wrap_free(void* block) {
    fake::NoteFree(block);
    __real_free(block);
}

char* __wrap_strndup(const char* text, size_t most) {
    if (Refused()) return nullptr;
    const size_t length = strnlen(text, most);
    auto* copy = static_cast<char*>(Noted(__real_malloc(length + 1)));
    if (copy == nullptr) return nullptr;
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

char* __wrap_strdup(const char* text) {
    return __wrap_strndup(text, std::strlen(text));
}

// Throwing new belongs to the tests and to the test framework: it neither counts nor fails, unless
// the code under test uses it, too.
void* operator new(size_t size) {
    if (fake::IsThrowingNewCounted() && Refused()) throw std::bad_alloc();
    if (void* block = __real_malloc(size == 0 ? 1 : size)) return block;
    std::abort();
}
void* operator new[](size_t size) {
    return operator new(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Refused() ? nullptr : Noted(__real_malloc(size == 0 ? 1 : size));
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return Refused() ? nullptr : Noted(__real_malloc(size == 0 ? 1 : size));
}
void operator delete(void* block) noexcept {
    fake::NoteFree(block);
    __real_free(block);
}
void operator delete[](void* block) noexcept {
    operator delete(block);
}
void operator delete(void* block, size_t) noexcept {
    operator delete(block);
}
void operator delete[](void* block, size_t) noexcept {
    operator delete(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    operator delete(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    operator delete(block);
}
