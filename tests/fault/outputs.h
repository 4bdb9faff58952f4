// Calls of the decoders in one word: every output is given, and its bytes are compared.
#pragma once

#include <aaadom/types.h>
#include <platform/tlv.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>

#include "fault/sweep.h"

namespace fault {

/// The output behind a pointer.
template <typename Argument>
struct Output;

template <typename T>
struct Output<T*> {
    T value;
    Output() { memset(&value, 0, sizeof value); }
    T* Pass() { return &value; }
    std::string Bytes() const { return BytesOf(value); }
};
/// A text has room for every name.
template <>
struct Output<char*> {
    char text[DOM_NAME_SIZE] = "untouched";
    char* Pass() { return text; }
    std::string Bytes() const { return text + std::string(1, '\n'); }
};
/// Methods come in sixes.
template <>
struct Output<MethodEntry*> {
    MethodEntry items[DOM_METHODS] = {};
    MethodEntry* Pass() { return items; }
    std::string Bytes() const { return BytesOf(items); }
};
/// A number that is handed over is the capacity of the text after it.
template <>
struct Output<uint32_t> {
    uint32_t Pass() const { return DOM_NAME_SIZE; }
    std::string Bytes() const { return {}; }
};

/// The call of a decoder that gives its result.
template <typename... Arguments>
auto Into(uint32_t (*decode)(TLV_MSG*, Arguments...)) {
    return [decode](Scene&, TLV_MSG* msg) -> Outcome {
        std::tuple<Output<Arguments>...> outputs;
        return std::apply(
            [&](auto&... output) -> Outcome {
                const uint32_t result = decode(msg, output.Pass()...);
                return {result, (std::string() + ... + output.Bytes())};
            },
            outputs);
    };
}

}  // namespace fault
