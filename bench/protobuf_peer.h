// The same record through protobuf: from a DomainInfo to bytes and back to a DomainInfo.
#pragma once

#include <aaadom/types.h>

#include <cstddef>
#include <vector>

namespace google::protobuf {
class Arena;
}

namespace bench {

/// Bytes written; 0 on failure.
size_t ProtobufEncode(const DomainInfo& domain, void* buffer, size_t room,
                      google::protobuf::Arena& arena);
/// A new record, destroyed with DOM_DestroyDomain; null on failure.
DomainInfo* ProtobufDecode(const void* bytes, size_t length, google::protobuf::Arena& arena);

}  // namespace bench
