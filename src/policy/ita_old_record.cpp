#include "policy/ita_old_record.h"

#include <cstdlib>

#include "base/text.h"

namespace aaadom {
namespace {

constexpr int32_t kReadWhole = 0;
constexpr uint32_t kMethodKindLimit = 32;  // kinds are bits of a word

static_assert(DOM_DB_OLD_ITA_METHOD_COUNT == DOM_METHODS);
static_assert(DOM_DB_OLD_ITA_LEVEL_ENTRIES == DOM_ITA_LEVELS);
static_assert(DOM_DB_OLD_ITA_METHODS + DOM_METHODS * DOM_DB_OLD_ITA_METHOD_SIZE ==
              DOM_DB_OLD_ITA_LEVEL_COUNT);
static_assert(DOM_DB_OLD_ITA_LEVELS + DOM_ITA_LEVELS * DOM_DB_OLD_ITA_LEVEL_SIZE ==
              DOM_DB_OLD_ITA_TOGETHER_STATE);

/// The block, which is read by offset: in memory a policy has other places and another byte order.
class Block {
  public:
    char* Bytes() noexcept { return bytes_; }
    uint32_t U16(size_t offset) const noexcept { return Byte(offset) << 8 | Byte(offset + 1); }
    uint32_t U32(size_t offset) const noexcept { return U16(offset) << 16 | U16(offset + 2); }
    const char* Text(size_t offset) const noexcept { return bytes_ + offset; }

    const char* Name() const noexcept { return Text(DOM_DB_OLD_ITA_NAME); }
    static constexpr size_t Method(uint32_t index) noexcept {
        return DOM_DB_OLD_ITA_METHODS + index * DOM_DB_OLD_ITA_METHOD_SIZE;
    }
    uint32_t MethodKind(uint32_t index) const noexcept {
        return U32(Method(index) + DOM_DB_OLD_ITA_METHOD_KIND);
    }
    const char* MethodName(uint32_t index) const noexcept {
        return Text(Method(index) + DOM_DB_OLD_ITA_METHOD_NAME);
    }

  private:
    uint32_t Byte(size_t offset) const noexcept {
        return static_cast<unsigned char>(bytes_[offset]);
    }
    char bytes_[DOM_DB_OLD_ITA_SIZE] = {};  // what the stored value lacks is zero
};

bool IsPrintable(const char* field, size_t size) noexcept {
    const size_t length = BoundedLength(field, size);
    for (size_t i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(field[i]);
        if (byte < ' ' || byte == 0x7F) return false;
    }
    return true;
}

/// What no release can have written; null when there is nothing.
const char* FindDamage(const Block& block, uint32_t length, const char* wanted_name) noexcept {
    if (!IsPrintable(block.Name(), DOM_DB_OLD_ITA_NAME_SIZE)) return "its name is no text";
    for (uint32_t i = 0; i < DOM_METHODS; ++i) {
        if (block.MethodKind(i) >= kMethodKindLimit) return "it has an impossible method";
        if (!IsPrintable(block.MethodName(i), DOM_DB_OLD_ITA_METHOD_NAME_SIZE))
            return "a scheme name is no text";
    }
    // The policy's own name vouches for a block that is cut off or has another one's size. A whole
    // block is taken under whatever key it lies, and gets that key's name.
    char name[DOM_ITA_NAME_SIZE];
    CopyBounded(name, sizeof name, block.Name(), DOM_DB_OLD_ITA_NAME_SIZE);
    if (strncmp(name, wanted_name, sizeof name - 1) == 0) return nullptr;
    if (length < DOM_DB_OLD_ITA_USED) return "it is too short and of another name";
    return name[0] == '\0' ? "it has no name" : nullptr;
}

ItaPolicy* Parse(const Block& block) noexcept {
    auto* policy = static_cast<ItaPolicy*>(calloc(1, sizeof(ItaPolicy)));
    if (policy == nullptr) return nullptr;
    CopyBounded(policy->name, sizeof policy->name, block.Name(), DOM_DB_OLD_ITA_NAME_SIZE);
    for (uint32_t i = 0; i < DOM_METHODS; ++i) {
        MethodEntry& method = policy->acct_scheme[i];
        method.method_kind = block.MethodKind(i);
        CopyBounded(method.scheme_name, sizeof method.scheme_name, block.MethodName(i),
                    DOM_DB_OLD_ITA_METHOD_NAME_SIZE);
        method.scheme_index = block.U32(Block::Method(i) + DOM_DB_OLD_ITA_METHOD_INDEX);
    }
    policy->level_count = block.U32(DOM_DB_OLD_ITA_LEVEL_COUNT);
    for (uint32_t i = 0; i < DOM_ITA_LEVELS; ++i) {
        const size_t at = DOM_DB_OLD_ITA_LEVELS + i * DOM_DB_OLD_ITA_LEVEL_SIZE;
        const auto word = [&](size_t n) { return block.U32(at + n * sizeof(uint32_t)); };
        policy->levels[i] = {word(0), word(1), {word(2), word(3)}, {word(4), word(5)}};
    }
    policy->together_state = static_cast<uint16_t>(block.U16(DOM_DB_OLD_ITA_TOGETHER_STATE));
    policy->separation_state = static_cast<uint16_t>(block.U16(DOM_DB_OLD_ITA_SEPARATION_STATE));
    policy->quota_out_state = static_cast<uint16_t>(block.U16(DOM_DB_OLD_ITA_QUOTA_OUT_STATE));
    return policy;
}

}  // namespace

ItaPolicy* LoadOldItaRecord(DBM_HANDLE handle, const char* name) noexcept {
    const ItaOldRecordKey key(name);
    const int32_t stored = DBM_GetBinaryLen(handle, key.Text(), key.Length());
    Block block;
    const int32_t read = DBM_GetBinary(handle, key.Text(), key.Length(), kReadWhole,
                                       DOM_DB_OLD_ITA_SIZE, block.Bytes());
    if (read <= 0) {
        if (static_cast<uint16_t>(DBM_IsKeyExist(handle, key.Text(), key.Length())) == 1)
            LogRefusedItaRecord(key.Text(), kNoValue);
        return nullptr;
    }
    const char* damage = stored > int32_t{DOM_DB_OLD_ITA_SIZE}
                             ? "it is longer than a policy"
                             : FindDamage(block, static_cast<uint32_t>(read), name);
    if (damage != nullptr) {
        LogRefusedItaRecord(key.Text(), damage);
        return nullptr;
    }
    return Parse(block);
}

}  // namespace aaadom
