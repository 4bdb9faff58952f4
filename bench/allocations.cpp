// Counts the calls of malloc that a message costs once the pools are warm. Appends lines of JSON to
// the file of results. Usage: aaadom_bench_allocations RESULTS_FILE
#include <aaadom/aaadom.h>
#include <platform/aaa_tlv.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);

static thread_local uint64_t allocations;

// Every allocation of the process and its libraries comes here; freeing is the C library's.
__attribute__((visibility("default"))) void* malloc(size_t size) {
    ++allocations;
    return __libc_malloc(size);
}
__attribute__((visibility("default"))) void* calloc(size_t count, size_t size) {
    ++allocations;
    return __libc_calloc(count, size);
}
__attribute__((visibility("default"))) void* realloc(void* block, size_t size) {
    ++allocations;
    return __libc_realloc(block, size);
}
}

namespace {

constexpr int kWarmUp = 100;
constexpr int kMessages = 1000;
constexpr const char* kSmall = "small.example.net";
constexpr const char* kLarge = "large.example.net";

struct Image {
    char bytes[65535];
    uint32_t length = 0;
};
Image small_image;
Image large_image;
Image change_image;

/// The message is consumed.
void Flush(TLV_MSG* msg, Image& image) {
    image.length = TLV_Flush(msg, TLV_FORM_BUFFER, sizeof image.bytes,
                             reinterpret_cast<uintptr_t>(image.bytes));
    TLV_Destroy(msg);
}

TLV_MSG* Receive(const Image& image) {
    return TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(image.bytes),
                                image.length);
}

bool EncodeSmall() {
    Flush(DOM_EncodeDomain(kSmall), small_image);
    return small_image.length != 0;
}

bool EncodeLarge() {
    Flush(DOM_EncodeDomain(kLarge), large_image);
    return large_image.length != 0;
}

/// Every TLV of the message with its value.
bool Read(const Image& image) {
    TLV_MSG* msg = Receive(image);
    static char value[65535];
    int items = 0;
    for (TLV_ITER* it = TLV_GetFirst(msg); it != nullptr; it = TLV_GetNext(msg, it)) {
        TLV_GetValueByIterator(msg, it, sizeof value, value);
        ++items;
    }
    TLV_Destroy(msg);
    return items > 10;
}

bool Decode(const Image& image) {
    TLV_MSG* msg = Receive(image);
    DomainInfo* domain = DOM_DecodeDomain(msg);
    TLV_Destroy(msg);
    const bool good = domain != nullptr;
    DOM_DestroyDomain(domain);
    return good;
}

bool EncodeChange() {
    TLV_MSG* body = DOM_EncodeSessionTime(kLarge, 30);
    Flush(AAA_AddOpHead(DOM_OP_SET, body), change_image);
    TLV_Destroy(body);
    return change_image.length != 0;
}

bool Apply() {
    TLV_MSG* request = Receive(change_image);
    char name[DOM_NAME_SIZE];
    const uint32_t result = DOM_RestoreData(request, 0, sizeof name, 0, name, nullptr);
    TLV_Destroy(request);
    return result == DOM_OK;
}

struct Case {
    const char* what;
    bool (*work)();
    uint64_t own;  // allocations of the record that the work is to make
};

/// A record and its lists are the caller's to keep: one allocation with room for the lists that
/// every domain has, a second one for all others.
constexpr uint64_t kSmallRecord = 1;
constexpr uint64_t kLargeRecord = 2;

constexpr Case kCases[] = {
    {"encode a small domain", EncodeSmall, 0},
    {"encode a large domain", EncodeLarge, 0},
    {"read every TLV of a small domain", [] { return Read(small_image); }, 0},
    {"read every TLV of a large domain", [] { return Read(large_image); }, 0},
    {"decode a small domain, beside its record", [] { return Decode(small_image); }, kSmallRecord},
    {"decode a large domain, beside its record", [] { return Decode(large_image); }, kLargeRecord},
    {"encode a change", EncodeChange, 0},
    {"receive a change and apply it", Apply, 0},
};

bool Fill() {
    if (DOM_DomainInfoTableInit() != DOM_OK || DOM_AddDomainByName(kSmall) != DOM_ADD_OK ||
        DOM_AddDomainByName(kLarge) != DOM_ADD_OK) {
        return false;
    }
    for (uint32_t type : {AAA_TYPE_0, AAA_TYPE_4, AAA_TYPE_5}) {
        for (uint32_t service = 0; service < DOM_SERVICES; ++service) {
            MethodList list{};
            list.aaa_type = type;
            list.service = service;
            for (int i = 0; i < 3; ++i) {
                list.methods[i].method_kind = METHOD_SCHEME_1;
                snprintf(list.methods[i].scheme_name, DOM_SCHEME_NAME_SIZE, "scheme-%d", i);
            }
            if (DOM_AddMethodList(kLarge, &list, nullptr) != DOM_OK) return false;
        }
    }
    return true;
}

/// Allocations of all messages beside those of their records; negative when the work failed.
int64_t Count(const Case& one) {
    for (int i = 0; i < kWarmUp; ++i) {
        if (!one.work()) return -1;
    }
    const uint64_t before = allocations;
    for (int i = 0; i < kMessages; ++i) {
        if (!one.work()) return -1;
    }
    return static_cast<int64_t>(allocations - before - one.own * kMessages);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: aaadom_bench_allocations RESULTS_FILE\n");
        return 2;
    }
    FILE* results = fopen(argv[1], "a");
    if (results == nullptr || !Fill()) {
        fprintf(stderr, "aaadom_bench_allocations: cannot write %s or fill the table\n", argv[1]);
        return 1;
    }
    int failed = 0;
    for (const Case& one : kCases) {
        const int64_t count = Count(one);
        if (count < 0) {
            fprintf(stderr, "aaadom_bench_allocations: %s: failed\n", one.what);
            ++failed;
            continue;
        }
        printf("malloc per message, %s: %g\n", one.what, static_cast<double>(count) / kMessages);
        fprintf(results, "{\"allocations\":\"%s\",\"calls\":%lld,\"messages\":%d}\n", one.what,
                static_cast<long long>(count), kMessages);
    }
    if (fclose(results) != 0) ++failed;
    return failed == 0 ? 0 : 1;
}
