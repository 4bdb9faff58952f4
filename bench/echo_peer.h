// A process that answers every request on the daemon's transport with the same bytes.
#pragma once

#include <platform/tlv.h>

#include <cstdint>

namespace bench {

/// Serves one of the runtime directory's endpoints as long as the object lives.
class Echo {
  public:
    /// `reply` is borrowed.
    explicit Echo(TLV_MSG* reply);
    ~Echo();
    Echo(const Echo&) = delete;
    Echo& operator=(const Echo&) = delete;
    /// A request on a socket of its own, as the library sends it; the reply is returned, destroy
    /// with TLV_Destroy, null on failure. `request` is borrowed.
    static TLV_MSG* Ask(TLV_MSG* request, uint32_t operation);

  private:
    int32_t pid_ = -1;
};

}  // namespace bench
