// Messages through the applier, in both roles, with a database behind it; then everything is read.
//
// Input: for each message what to do with it, its operation, and the message without a head.
#include <aaadom/restore.h>
#include <platform/aaa_tlv.h>

#include "message.h"
#include "read_back.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Stage stage;
    Input input(data, size);
    for (int messages = 0; !input.Empty() && messages < 16; ++messages) {
        const uint8_t way = input.Byte();
        const uint8_t operation = input.Byte();
        const Message body = TakeMessage(input);
        if (!body) continue;
        const Message request(AAA_AddOpHead(operation, body.get()));
        std::string name1(way & 64 ? 256 : 7, 'x');
        std::string name2(way & 64 ? 32 : 1, 'x');
        const auto cap1 = static_cast<uint32_t>(name1.size());
        const auto cap2 = static_cast<uint32_t>(name2.size());
        Stage::TakeRole(way & 1);
        // Bare, as it may come from a foreign sender; else with its head, as every channel gives
        // it.
        TLV_MSG* message = way & 2 ? body.get() : request.get();
        (void)DOM_RestoreData(message, way & 4 ? 0 : 1, cap1, cap2, name1.data(), name2.data());
        if ((way & 8) == 0) continue;
        Stage::TakeRole(~way & 1);
        const Message forwarded(AAA_AddAaadHead(5, 4, message));
        (void)DOM_UpdateCfgData(forwarded.get(), cap1, cap2, name1.data(), name2.data());
    }
    ReadTables();
    ReadDatabases(stage);
    return 0;
}
