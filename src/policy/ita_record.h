// Stored accounting policies in their current form: keys, and the value as a message whose numbers
// are in network order.
#pragma once

#include <aaadom/accounting_policy.h>
#include <aaadom/db_layout.h>
#include <platform/dbm.h>

#include <cstdint>
#include <cstring>

#include "base/text.h"
#include "policy/ita_policy.h"
#include "policy/stored_message.h"

namespace aaadom {

/// The key of a policy: a prefix and the policy's name, cut to the policy names' 31 characters,
/// with the terminator.
template <size_t N>
class ItaKey {
  public:
    ItaKey(const char* prefix, const char* name) noexcept {
        CopyText(text_, prefix);
        const size_t prefix_length = strlen(text_);
        CopyText(text_ + prefix_length, N - prefix_length, name);
        length_ = static_cast<uint32_t>(strlen(text_)) + 1;
    }
    const char* Text() const noexcept { return text_; }
    uint32_t Length() const noexcept { return length_; }
    operator StoredKey() const noexcept { return {text_, length_}; }

  private:
    char text_[N];
    uint32_t length_;
};

struct ItaRecordKey : ItaKey<DOM_DB_ITA_POLICY_KEY_SIZE> {
    explicit ItaRecordKey(const char* name) noexcept : ItaKey(DOM_DB_PREFIX_ITA_POLICY, name) {}
};
static_assert(DOM_DB_PREFIX_ITA_POLICY_LEN + DOM_ITA_NAME_SIZE == DOM_DB_ITA_POLICY_KEY_SIZE);

/// Whether a policy is saved in the current form.
bool IsItaRecordSaved(DBM_HANDLE handle, const char* name) noexcept;
/// Writes `policy` under the key of `name`; DOM_OK or DOM_ERR_FAILED.
[[nodiscard]] uint32_t StoreItaRecord(DBM_HANDLE handle, const char* name,
                                      const ItaPolicy& policy) noexcept;
/// Makes a new policy of what is saved under that name. kUnreadable: nothing is saved, or nothing
/// that is a policy, which is logged.
[[nodiscard]] Loading LoadItaRecord(DBM_HANDLE handle, const char* name,
                                    ItaPolicyPtr& policy) noexcept;

/// One line in the system log that names the key of a record that is refused.
inline constexpr const char* kNoValue = "it is empty or no binary value";
void LogRefusedItaRecord(const char* key, const char* reason) noexcept;

}  // namespace aaadom
