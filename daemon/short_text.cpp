#include "short_text.h"

#include <platform/aaa_tlv.h>

#include <cstring>

namespace aaad {

ShortTextState ReadShortText(TLV_MSG* body, uint16_t type, ShortText& text) {
    memset(text, 0, sizeof text);
    char read[kShortTextSize + 1] = {};
    ShortTextState state = ShortTextState::kMissing;
    for (TLV_ITER* it = TLV_GetFirst(body); it != nullptr; it = TLV_GetNext(body, it)) {
        if (TLV_GetTypeByIterator(body, it) != type) continue;
        if (state != ShortTextState::kMissing ||
            AAA_GetStrTlvValue(body, it, sizeof read, read) != 0 ||
            read[kShortTextSize - 1] != '\0') {
            return ShortTextState::kUnusable;
        }
        state = ShortTextState::kWhole;
    }
    memcpy(text, read, sizeof text);
    return state;
}

bool HasName(TLV_MSG* body, uint16_t type) {
    ShortText name;
    return ReadShortText(body, type, name) == ShortTextState::kWhole && name[0] != '\0';
}

}  // namespace aaad
