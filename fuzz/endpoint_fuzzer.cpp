// Frames on the daemon's sockets: parsed, decided in both roles, saved, answered.
//
// Input: for each frame what it is, its operation, and a message.
#include <platform/aaa_tlv.h>

#include <vector>

#include "daemon.h"
#include "promise.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Daemon daemon;
    Input input(data, size);
    for (int frames = 0; !input.Empty() && frames < 12; ++frames) {
        const uint8_t way = input.Byte();
        const uint8_t operation = input.Byte();
        const bool to_records = (way & 1) != 0;
        if (way & 2) {  // bytes as they are
            (void)daemon.Ask(to_records, input.Take(input.Number16()));
            continue;
        }
        const Message body = TakeMessage(input);
        if (!body) continue;
        const Message request(AAA_AddOpHead(operation, body.get()));
        TLV_MSG* frame = way & 4 ? body.get() : request.get();  // 4: without a head
        std::vector<uint8_t> image(TLV_GetMsgLen(frame, TLV_FORM_BUFFER));
        const auto length = static_cast<uint32_t>(image.size());
        const auto address = reinterpret_cast<uintptr_t>(image.data());
        FUZZ_PROMISE(TLV_Flush(frame, TLV_FORM_BUFFER, length, address) == length);
        const Message reply = daemon.Ask(to_records, image);
        if (reply) WalkMessage(reply.get());
    }
    return 0;
}
