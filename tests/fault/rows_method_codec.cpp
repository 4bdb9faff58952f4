// Rows of method_codec.h.
#include <aaadom/method_codec.h>

#include "base/text.h"
#include "fault/outputs.h"
#include "fault/sweep.h"

namespace fault {
namespace {

MethodEntry Item(const char* scheme_name) {
    MethodEntry item{};
    item.method_kind = METHOD_SCHEME_2;
    aaadom::CopyText(item.scheme_name, scheme_name);
    item.scheme_index = 4;
    return item;
}

/// Two methods.
struct Items {
    MethodEntry items[DOM_METHODS] = {Item("radius-a"), Item("radius-b")};
};

void WithMessage(Scene& scene) {
    scene.message = scene.Keep(TLV_Create());
}
void WithItem(Scene& scene) {
    WithMessage(scene);
    const MethodEntry item = Item("radius-a");
    (void)DOM_EncapMethodToTLVItem(1, &item, scene.message);
}

/// What stands in the message is the output; the next call starts with an empty message.
Outcome Appended(Scene& scene, uint32_t result) {
    return Quietly([&]() -> Outcome {
        const Outcome outcome(result, fake::ImageOf(scene.message));
        EXPECT_EQ(DOM_ClearTlv(scene.message), DOM_OK);
        return outcome;
    });
}

const Rows rows{
    Decodes("DOM_ClearTlv", "msg_004_method_list",
            [](Scene&, TLV_MSG* msg) -> Outcome {
                const uint32_t result = DOM_ClearTlv(msg);
                return {result, fake::ImageOf(msg)};
            }),
    Reads("DOM_EncodeMultiMethods",
          [](Scene& scene) {
              return Appended(scene, DOM_EncodeMultiMethods(scene.message, Items().items));
          })
        .After(WithMessage)
        .Fails({DOM_ERR_FAILED}),
    Decodes("DOM_DecodeMultiMethods", "msg_004_method_list", Into(DOM_DecodeMultiMethods)),
    Reads("DOM_EncapMethodToTLVItem",
          [](Scene& scene) {
              const MethodEntry item = Item("radius-a");
              return Appended(scene, DOM_EncapMethodToTLVItem(1, &item, scene.message));
          })
        .After(WithMessage)
        .Fails({DOM_ERR_FAILED}),
    Reads("DOM_DecapTLVItemToMethod",
          [](Scene& scene) { return Into(DOM_DecapTLVItemToMethod)(scene, scene.message); })
        .After(WithItem)
        .Fails({DOM_ERR_FAILED}),
};

}  // namespace
}  // namespace fault
