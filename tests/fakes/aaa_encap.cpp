// Structures to and from nested messages by the caller's functions.
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "fakes/message.h"
#include "fakes/state.h"

using fake::Event;
using fake::Hit;
using fake::kFailed;
using fake::Quiet;

extern "C" void* AAA_EncapStructToTLVBuf(const AAA_ENCAP_STEP* steps, uint32_t step_count,
                                         uint32_t* length_out) noexcept {
    if (length_out != nullptr) *length_out = 0;
    if (Hit(Event::kMessage)) return nullptr;
    if (steps == nullptr && step_count != 0) return nullptr;
    Quiet quiet;
    TLV_MSG* out = fake::NewMessage();
    bool failed = false;
    for (uint32_t s = 0; s < step_count && !failed; ++s) {
        const AAA_ENCAP_STEP& step = steps[s];
        failed = step.count != 0 && step.first == nullptr;
        for (uint32_t i = 0; i < step.count && !failed; ++i) {
            const void* item = static_cast<const char*>(step.first) + size_t{i} * step.stride;
            if (step.encap == nullptr) {
                const auto* number = static_cast<const uint8_t*>(item);
                fake::AddItem(out, step.type, std::string(number, number + 4));
                std::reverse(out->items.back()->value.begin(), out->items.back()->value.end());
                continue;
            }
            TLV_MSG* sub = fake::NewMessage();
            {
                fake::Outside outside;
                failed = step.encap(i, item, sub) != 0;
            }
            if (!failed) fake::AddItem(out, step.type, fake::MakeImage(sub));
            fake::DestroyMessage(sub);
        }
    }
    const std::string image = fake::MakeImage(out);
    fake::DestroyMessage(out);
    if (failed) return nullptr;
    void* buffer = std::malloc(image.size());
    std::memcpy(buffer, image.data(), image.size());
    if (length_out != nullptr) *length_out = static_cast<uint32_t>(image.size());
    return buffer;
}

extern "C" uint32_t AAA_DecapSubTLVToStruct(TLV_MSG* msg, TLV_ITER* it, AAA_DECAP_FN decap,
                                            void* object) noexcept {
    if (Hit(Event::kMessage) || decap == nullptr) return kFailed;
    const TLV_ITER* item = fake::Readable(msg, it);
    if (item == nullptr) return kFailed;
    Quiet quiet;
    TLV_MSG* sub = fake::ParseImage(item->value);
    if (sub == nullptr) return kFailed;
    uint32_t result;
    {
        fake::Outside outside;
        result = decap(sub, object);
    }
    fake::DestroyMessage(sub);
    return result;
}
