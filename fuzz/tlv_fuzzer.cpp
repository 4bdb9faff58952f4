// A message as received: read in every way, written back, changed at random places.
//
// Input: a message, then steps: what to do, which TLV, and what it takes.
#include <vector>

#include "message.h"
#include "promise.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const Message msg = TakeMessage(input);
    if (!msg) return 0;
    WalkMessage(msg.get());
    const uint32_t length = TLV_GetMsgLen(msg.get(), TLV_FORM_BUFFER);
    std::vector<uint8_t> image(length);
    const auto address = reinterpret_cast<uintptr_t>(image.data());
    FUZZ_PROMISE(TLV_Flush(msg.get(), TLV_FORM_BUFFER, length - 1, address) == 0);
    FUZZ_PROMISE(TLV_Flush(msg.get(), TLV_FORM_BUFFER, length, address) == length);
    const Message copy(TLV_CreateReceiveMsg(TLV_FORM_BUFFER, address, length));
    FUZZ_PROMISE(copy && TLV_GetMsgLen(copy.get(), TLV_FORM_BUFFER) == length);
    ChangeMessage(msg.get(), copy.get(), input);
    return 0;
}
