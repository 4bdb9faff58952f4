#include <aaadom/user_record.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "userrecord/reason_texts.h"

using namespace aaadom;

extern "C" uint32_t AAA_GetRecordReasonString(uint32_t code, uint32_t buffer_size,
                                              char* buffer) noexcept {
    if (buffer == nullptr || buffer_size == 0) return 0;
    const char* const text = TextOfReason(code);
    const int length =
        text != nullptr ? snprintf(buffer, buffer_size, "%s", text)
                        : snprintf(buffer, buffer_size, "Unknown reason code %" PRIu32 ".", code);
    // What stands in the buffer, not what would have stood there with room for it.
    return length < 0 ? 0 : std::min(static_cast<uint32_t>(length), buffer_size - 1);
}
