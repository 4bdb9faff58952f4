#include <aaadom/domain.h>
#include <gtest/gtest.h>

#include "fault/sweep.h"

namespace fault {
namespace {

Row Plain(std::string name, Call call) {
    Row row;
    row.name = std::move(name);
    row.call = std::move(call);
    return row;
}

Row Failing(std::string name, Call call) {
    return Plain(std::move(name), std::move(call)).Fails({DOM_ERR_FAILED});
}

}  // namespace

Outcome Made(TLV_MSG* msg) {
    if (msg == nullptr) return kNothing;
    Outcome outcome(kSomething, Quietly([msg] { return fake::ImageOf(msg); }));
    TLV_Destroy(msg);
    return outcome;
}

Outcome Made(DomainInfo* domain) {
    if (domain == nullptr) return kNothing;
    Outcome outcome(kSomething, domain->name);
    DOM_DestroyDomain(domain);
    return outcome;
}

Row Reads(std::string name, Call call) {
    Row row = Plain(std::move(name), std::move(call));
    row.reads = true;
    return row;
}

Row Changes(std::string name, Call call) {
    return Failing(std::move(name), std::move(call));
}

Row Encodes(std::string name, std::function<TLV_MSG*(Scene&)> encode) {
    Row row = Reads(std::move(name), [encode](Scene& scene) { return Made(encode(scene)); });
    return std::move(row).Good(kSomething).Fails({kNothing});
}

Row Appends(std::string name, std::function<uint32_t(TLV_MSG*)> append) {
    Row row = Failing(std::move(name), [append](Scene& scene) -> Outcome {
        const std::string before = fake::ImageOf(scene.message);
        const uint32_t result = append(scene.message);
        const std::string after = fake::ImageOf(scene.message);
        if (result != DOM_OK) {
            EXPECT_EQ(after, before) << "changed by a failure";
        }
        return {result, after};
    });
    row.reads = true;
    return std::move(row).After([](Scene& scene) { scene.message = scene.Keep(TLV_Create()); });
}

Row Decodes(std::string name, std::string file, std::function<Outcome(Scene&, TLV_MSG*)> decode) {
    Row row =
        Failing(std::move(name), [decode](Scene& scene) { return decode(scene, scene.message); });
    row.reads = true;
    return std::move(row).After([file](Scene& scene) { scene.message = scene.Golden(file); });
}

Row Requests(std::string name, Call call) {
    Row row = Failing(std::move(name), std::move(call));
    row.reads = true;
    return std::move(row).On(Nothing).After([](Scene& scene) { scene.ServeResult(DOM_OK); });
}

Row Asks(std::string name, std::string reply_file, Call call) {
    Row row = Failing(std::move(name), std::move(call));
    row.reads = true;
    return std::move(row).On(Nothing).After(
        [reply_file](Scene& scene) { scene.ServeData(reply_file); });
}

Row Saves(std::string name, Call call) {
    return Failing(std::move(name), std::move(call)).On(Saved);
}

Row Loads(std::string name, Call call) {
    Row row = Saves(std::move(name), std::move(call));
    row.reads = true;
    return row;
}

}  // namespace fault
