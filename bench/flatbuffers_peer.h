// The same record through flatbuffers: from a DomainInfo to bytes and back to a DomainInfo.
#pragma once

#include <aaadom/types.h>
#include <flatbuffers/flatbuffers.h>

#include <cstddef>

namespace bench {

/// Builds the message in the builder, whose buffer holds it until the next call.
void FlatbuffersEncode(const DomainInfo& domain, flatbuffers::FlatBufferBuilder& builder);
/// Verifies the message and makes a record, destroyed with DOM_DestroyDomain; null on failure.
DomainInfo* FlatbuffersDecode(const void* bytes, size_t length);

}  // namespace bench
