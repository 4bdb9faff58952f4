// A full domain from the table to bytes and back to a record, against protobuf with an arena.
#include <benchmark/benchmark.h>
#include <google/protobuf/arena.h>

#include "protobuf_peer.h"
#include "stage.h"

namespace bench {
namespace {

constexpr uint32_t kRoom = DOM_DB_VALUE_MAX;

void EncodeDomain(benchmark::State& state) {
    FillTable();
    static char buffer[kRoom];
    uint32_t length = 0;
    for (auto _ : state) {
        TLV_MSG* msg = DOM_EncodeDomain(kFullDomain);
        length = TLV_Flush(msg, TLV_FORM_BUFFER, kRoom, reinterpret_cast<uintptr_t>(buffer));
        TLV_Destroy(msg);
        benchmark::DoNotOptimize(buffer);
    }
    state.counters["bytes"] = length;
}
BENCHMARK(EncodeDomain);

void EncodeProtobuf(benchmark::State& state) {
    FillTable();
    static char buffer[kRoom];
    static char arena_block[256 * 1024];
    google::protobuf::ArenaOptions options;
    options.initial_block = arena_block;
    options.initial_block_size = sizeof arena_block;
    google::protobuf::Arena arena(options);
    size_t length = 0;
    for (auto _ : state) {
        DOM_DomainInfoTableLock();
        const DomainInfo* domain = DOM_FindDomainByName(kFullDomain);
        length = ProtobufEncode(*domain, buffer, kRoom, arena);
        DOM_DomainInfoTableUnlock();
        arena.Reset();
        benchmark::DoNotOptimize(buffer);
    }
    if (length == 0) state.SkipWithError("protobuf encoding failed");
    state.counters["bytes"] = static_cast<double>(length);
}
BENCHMARK(EncodeProtobuf);

void DecodeDomain(benchmark::State& state) {
    FillTable();
    static char buffer[kRoom];
    TLV_MSG* encoded = DOM_EncodeDomain(kFullDomain);
    const uint32_t length =
        TLV_Flush(encoded, TLV_FORM_BUFFER, kRoom, reinterpret_cast<uintptr_t>(buffer));
    TLV_Destroy(encoded);
    for (auto _ : state) {
        TLV_MSG* msg =
            TLV_CreateReceiveMsg(TLV_FORM_BUFFER, reinterpret_cast<uintptr_t>(buffer), length);
        DomainInfo* domain = DOM_DecodeDomain(msg);
        if (domain == nullptr) state.SkipWithError("decoding failed");
        DOM_DestroyDomain(domain);
        TLV_Destroy(msg);
    }
}
BENCHMARK(DecodeDomain);

void DecodeProtobuf(benchmark::State& state) {
    FillTable();
    static char buffer[kRoom];
    static char arena_block[256 * 1024];
    google::protobuf::ArenaOptions options;
    options.initial_block = arena_block;
    options.initial_block_size = sizeof arena_block;
    google::protobuf::Arena arena(options);
    DOM_DomainInfoTableLock();
    const size_t length = ProtobufEncode(*DOM_FindDomainByName(kFullDomain), buffer, kRoom, arena);
    DOM_DomainInfoTableUnlock();
    for (auto _ : state) {
        DomainInfo* domain = ProtobufDecode(buffer, length, arena);
        if (domain == nullptr) state.SkipWithError("protobuf decoding failed");
        DOM_DestroyDomain(domain);
        arena.Reset();
    }
}
BENCHMARK(DecodeProtobuf);

}  // namespace
}  // namespace bench
