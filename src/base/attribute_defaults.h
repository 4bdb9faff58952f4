// The values that authorization attributes have until somebody sets them.
#pragma once

#include <aaadom/types.h>

namespace aaadom {

/// Completes attributes whose bytes are all 0.
constexpr void PresetAttributes(AuthorAttr& zeroed) noexcept {
    zeroed.kind0_word2 = 10240;
    zeroed.kind9_word = 4;
    zeroed.kind10_word = 4;
    zeroed.kind14_word2 = 1;
    zeroed.kind15_word = 1;
    zeroed.kind19_word = -1;
    zeroed.kind23_word = 65535;
}

}  // namespace aaadom
