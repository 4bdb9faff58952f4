// Rows of record_run_db.h.
#include <aaadom/record_run_db.h>
#include <gtest/gtest.h>

#include "db/record_lists.h"
#include "fault/sweep.h"
#include "golden/sample_record.h"

namespace fault {
namespace {

constexpr uint64_t kSaved = 1;  ///< serial number of the record in each list
constexpr uint64_t kNew = 2;
constexpr uint32_t kAllLists =
    DOM_RECORD_MASK_ONLINE_FAIL | DOM_RECORD_MASK_ABNORMAL_OFFLINE | DOM_RECORD_MASK_NORMAL_OFFLINE;

/// An installed run database without lists.
void WithoutLists(Scene& scene) {
    scene.run = DOM_CreateRecordRunDB();
    DOM_SetRecordRunDBHandle(scene.run);
}
/// The buffer that calls hand on to each other is not there yet.
void WithoutBuffer(Scene&) {
    aaadom::EntryBuffer::FreeIdle();
}

const Rows handles{
    Changes("DOM_CreateRecordRunDB",
            [](Scene&) -> Outcome {
                const DBM_HANDLE handle = DOM_CreateRecordRunDB();
                if (handle == DBM_INVALID_HANDLE) return kNothing;
                DBM_Close(handle);
                return kSomething;
            })
        .On(Nothing)
        .Good(kSomething)
        .Fails({kNothing}),
    Changes("DOM_DestroyRecordRunDB",
            [](Scene& scene) {
                const DBM_HANDLE handle = DOM_DestroyRecordRunDB();
                EXPECT_EQ(fake::OpenDatabaseHandles(), 1) << "the configuration's is left";
                scene.run = Quietly(DOM_CreateRecordRunDB);
                return handle == DBM_INVALID_HANDLE;
            })
        .On(Saved)
        .Good(1)
        .NeverFails(),
    Changes("DOM_SetRecordRunDBHandle",
            [](Scene&) { return DOM_SetRecordRunDBHandle(DBM_INVALID_HANDLE), 0; })
        .On(Saved)
        .NeverFails(),
    Reads("DOM_GetRecordRunDBHandle",
          [](Scene& scene) { return DOM_GetRecordRunDBHandle() == scene.run; })
        .On(Saved)
        .Good(1),
};

Row Inserts(std::string name, uint32_t (*insert)(const UserRecord*)) {
    return Saves(std::move(name),
                 [insert](Scene&) {
                     UserRecord record = golden::SampleRecord();
                     record.serial = kNew;
                     return insert(&record);
                 })
        .After(WithoutBuffer);
}
Row Removes(std::string name, uint32_t (*remove)(uint64_t)) {
    return Saves(std::move(name), [remove](Scene&) { return remove(kSaved); }).After(WithoutBuffer);
}

const Rows records{
    // A list that cannot be looked for counts as missing, and cannot be created when it is there.
    Changes("DOM_CreateAllRecordDBAvlList/new lists",
            [](Scene&) { return DOM_CreateAllRecordDBAvlList(); })
        .After(WithoutLists)
        .On(Event::kDbm, {DOM_OK, DOM_ERR_FAILED})
        .Except("database", "one failure does not stop the others"),
    Saves("DOM_CreateAllRecordDBAvlList/lists that are there",
          [](Scene&) { return DOM_CreateAllRecordDBAvlList(); }),
    Inserts("DOM_SetAbnormalOfflineRecordInfoToRunDB", DOM_SetAbnormalOfflineRecordInfoToRunDB),
    Inserts("DOM_SetNormalOfflineRecordInfoToRunDB", DOM_SetNormalOfflineRecordInfoToRunDB),
    Inserts("DOM_SetOnlineFailedRecordInfoToRunDB", DOM_SetOnlineFailedRecordInfoToRunDB),
    Inserts("DOM_SetSingeRecordInfoToRunDB",
            [](const UserRecord* record) {
                return DOM_SetSingeRecordInfoToRunDB(DOM_RECORD_ONLINE_FAIL, record);
            }),
    Removes("DOM_DelAbnormalOfflineRecordInfoToRunDB", DOM_DelAbnormalOfflineRecordInfoToRunDB),
    Removes("DOM_DelNormalOfflineRecordInfoToRunDB", DOM_DelNormalOfflineRecordInfoToRunDB),
    Removes("DOM_DelOnlineFailedRecordInfoToRunDB", DOM_DelOnlineFailedRecordInfoToRunDB),
    Saves("DOM_ClearAllRecordInfoFromRunDB/one list",
          [](Scene&) { return DOM_ClearAllRecordInfoFromRunDB(DOM_RECORD_MASK_NORMAL_OFFLINE); }),
    Saves("DOM_ClearAllRecordInfoFromRunDB/all lists",
          [](Scene&) { return DOM_ClearAllRecordInfoFromRunDB(kAllLists); })
        .On(Event::kDbm, {DOM_OK, DOM_ERR_FAILED})
        .Except("database", "the result of the last list alone is seen, and no list waits for one"),
};

}  // namespace
}  // namespace fault
