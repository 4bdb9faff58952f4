#include "stage.h"

#include <aaadom/accounting_policy_codec.h>
#include <aaadom/cmd_author_fail.h>
#include <aaadom/database.h>
#include <aaadom/record_run_db.h>
#include <aaadom/recording_policy.h>
#include <stdlib.h>

#include <filesystem>

#include "fakes/role.h"
#include "promise.h"

namespace fuzz {
namespace {

class Directory {
  public:
    Directory() {
        char in_memory[] = "/dev/shm/aaadom-fuzz-XXXXXX";
        char elsewhere[] = "/tmp/aaadom-fuzz-XXXXXX";
        const char* made = mkdtemp(in_memory);
        if (made == nullptr) made = mkdtemp(elsewhere);
        FUZZ_PROMISE(made != nullptr);
        path = made;
    }
    ~Directory() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::string path;
};

struct Databases {
    Databases() {
        const char* root = TemporaryDirectory().c_str();
        FUZZ_PROMISE(DBM_SetRoot(root, root) == 0);
        configuration = DOM_CreateDomainDBM();
        records = DOM_CreateRecordRunDB();
        FUZZ_PROMISE(configuration != DBM_INVALID_HANDLE && records != DBM_INVALID_HANDLE);
        DOM_SetDomainDBMHandle(configuration);
        DOM_ita_db_SetGlobalHandle(configuration);
        DOM_Rec_db_SetGlobalHandle(configuration);
        DOM_SetRecordRunDBHandle(records);
    }
    ~Databases() {
        (void)DBM_Close(configuration);
        (void)DBM_Close(records);
    }
    DBM_HANDLE configuration;
    DBM_HANDLE records;
};

const Databases& TheDatabases() {
    (void)TemporaryDirectory();  // made before, so removed after
    static const Databases databases;
    return databases;
}

}  // namespace

const std::string& TemporaryDirectory() {
    static const Directory directory;
    return directory.path;
}

Stage::Stage(Tables tables) : tables_(tables) {
    FUZZ_PROMISE(DBM_Begin(Configuration()) == 0 && DBM_Begin(Records()) == 0);
    FUZZ_PROMISE(DOM_CreateAllRecordDBAvlList() == 0);
    const AAADService service = fake::RoleService();
    DOM_SetAAADService(&service);
    if (tables_ == Tables::kEmpty) FUZZ_PROMISE(fake::InitBothRoles() == 0);
    (void)DOM_CmdAuthorFailRecInit();
    TakeRole(fake::kConfigRole);
}

Stage::~Stage() {
    DOM_CmdAuthorFailRecFini();
    if (tables_ == Tables::kEmpty) FUZZ_PROMISE(fake::FiniBothRoles() == 0);
    DOM_ResetAAADService();
    FUZZ_PROMISE(DBM_Abort(Records()) == 0 && DBM_Abort(Configuration()) == 0);
}

DBM_HANDLE Stage::Configuration() const {
    return TheDatabases().configuration;
}

DBM_HANDLE Stage::Records() const {
    return TheDatabases().records;
}

void Stage::TakeRole(uint32_t role) {
    fake::role_of_this_thread = role;
}

}  // namespace fuzz
