// One message through one decoder, or through every one.
//
// Input: the decoder's number from 1 on, other numbers mean all; capacity of texts less 1; the
// message.
#include "decoders.h"
#include "message.h"
#include "stage.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const size_t chosen = input.Byte();
    const uint32_t capacity = input.Byte() + 1u;
    const Message msg = TakeMessage(input);
    if (!msg) return 0;
    static const Stage stage;
    if (chosen >= 1 && chosen <= DecoderCount()) {
        Decode(chosen - 1, msg.get(), capacity);
    } else {
        for (size_t decoder = 0; decoder < DecoderCount(); ++decoder)
            Decode(decoder, msg.get(), capacity);
    }
    return 0;
}
