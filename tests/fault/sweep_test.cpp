// The sweep finds what it is there to find.
#include <aaadom/domain.h>
#include <aaadom/settings.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "fault/sweep.h"

namespace fault {
namespace {

/// What the sweep of a row complains about.
std::string Complaints(const Row& row) {
    testing::TestPartResultArray results;
    {
        testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        SweepRow(row);
    }
    std::string text;
    for (int i = 0; i < results.size(); ++i) text += results.GetTestPartResult(i).message();
    return text;
}

bool Contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

TEST(FaultSweep, ACallThatKeepsItsRowPasses) {
    EXPECT_EQ(Complaints(Changes("DOM_AddDomainByName",
                                 [](Scene&) { return DOM_AddDomainByName("new.example"); })
                             .Fails({DOM_ADD_FAILED})),
              "");
}

TEST(FaultSweep, FindsABlockThatLeaks) {
    static std::vector<void*> lost;
    const std::string complaints = Complaints(Reads("leaks", [](Scene&) {
                                                  lost.push_back(std::malloc(16));
                                                  return lost.back() == nullptr ? 1 : 0;
                                              }).Fails({1}));
    for (void* block : lost) std::free(block);
    EXPECT_TRUE(Contains(complaints, "blocks leaked"));
}

TEST(FaultSweep, FindsAMessageThatIsLeft) {
    EXPECT_TRUE(
        Contains(Complaints(Reads(
                     "leaves", [](Scene& scene) { return scene.Keep(TLV_Create()) == nullptr; })),
                 "1 messages"));
}

TEST(FaultSweep, FindsALockThatIsHeld) {
    EXPECT_TRUE(Contains(Complaints(Reads("locks",
                                          [](Scene& scene) {
                                              static pthread_mutex_t mutex;
                                              pthread_mutex_init(&mutex, nullptr);
                                              scene.AtEnd([] { pthread_mutex_unlock(&mutex); });
                                              return pthread_mutex_lock(&mutex);
                                          })),
                         "1 locks"));
}

TEST(FaultSweep, FindsAResultThatIsNotStated) {
    EXPECT_TRUE(
        Contains(Complaints(Changes("fails otherwise",
                                    [](Scene&) { return DOM_AddDomainByName("new.example"); })),
                 "is none of"));
}

TEST(FaultSweep, FindsWhatAFailureChanged) {
    EXPECT_TRUE(Contains(Complaints(Changes("changes",
                                            [](Scene&) {
                                                DOM_SetState(kDomain, 9);
                                                return DOM_AddDomainByName("new.example");
                                            })
                                        .Fails({DOM_ADD_FAILED})),
                         "changed by a failure"));
}

TEST(FaultSweep, FindsASuccessThatDidNothing) {
    EXPECT_TRUE(Contains(Complaints(Changes("pretends",
                                            [](Scene&) {
                                                (void)DOM_AddDomainByName("new.example");
                                                return 0;
                                            })
                                        .NeverFails()),
                         "not done by a success"));
}

TEST(FaultSweep, FindsAReaderThatChanges) {
    EXPECT_TRUE(
        Contains(Complaints(Reads("changes", [](Scene&) { return DOM_SetState(kDomain, 9), 0; })),
                 "config.domains"));
}

}  // namespace
}  // namespace fault
