#include "configuration.h"

#include <aaadom/aaad_results.h>
#include <aaadom/codes.h>
#include <aaadom/restore.h>
#include <platform/aaa_tlv.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <new>

#include "code_table.h"
#include "endpoint.h"
#include "failure.h"
#include "memory_watch.h"

namespace aaad {
namespace {

/// For want of memory.
void Refuse(Request& request) {
    request.kind = Request::Kind::kAnswered;
    request.result = DOM_ERR_FAILED;
    request.data.reset();
}

/// Whether `work` could be done; else the request is refused.
template <typename Callable>
bool WithMemory(Request& request, Callable&& work) {
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
        Refuse(request);
        return false;
    }
}

}  // namespace

Configuration::Configuration(DBM_HANDLE handle, std::string state_dir,
                             Administrators& administrators, WorkingThread& working,
                             RecordStore& records)
    : handle_(handle),
      state_dir_(std::move(state_dir)),
      administrators_(administrators),
      working_(working),
      records_(records) {
    if (!MakeRoomFor(kBatchSize)) throw std::bad_alloc();
}

Configuration::~Configuration() {
    Unload();
}

void Configuration::Serve(std::vector<Request>& requests) {
    changes_.clear();
    reads_.clear();
    const bool has_room = MakeRoomFor(requests.size());
    for (Request& request : requests) {
        if (!has_room) {
            Refuse(request);
            continue;
        }
        WithMemory(request, [&] { Classify(request); });
        if (request.kind == Request::Kind::kChange) changes_.push_back(&request);
        if (request.kind == Request::Kind::kRead) reads_.push_back(&request);
    }
    if (!changes_.empty()) {
        Change(changes_);
        records_.TakeSwitches();
    }
    for (Request& request : requests) {
        if (request.kind != Request::Kind::kRecordChange) continue;
        WithMemory(request, [&] { request.row->apply_to_records(records_, request); });
    }
    if (!reads_.empty()) Read(reads_);
}

bool Configuration::MakeRoomFor(size_t requests) {
    try {
        for (std::vector<Request*>* list : {&changes_, &reads_, &to_hand_over_}) {
            list->reserve(requests);
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

/// Finds out what a request wants and whether its peer may have it.
void Configuration::Classify(Request& request) {
    request.kind = Request::Kind::kAnswered;
    request.result = AAAD_ERR_MALFORMED;
    if (!request.message) return;
    const MemoryWatch memory;
    request.body.reset(AAA_DelOpHead(request.message.get(), &request.operation));
    if (!request.body) {
        if (memory.RanShort()) Refuse(request);
        return;
    }
    // A request may carry a second code for its front end; the first one counts.
    TLV_ITER* code = TLV_GetIteratorByType(request.body.get(), DOM_TLV_MSG_CODE);
    if (TLV_GetLenByIterator(request.body.get(), code) != sizeof(uint32_t)) return;
    request.code = AAA_GetUINTTlvValue(request.body.get(), code);
    request.row = FindCode(request.code);
    if (request.row == nullptr) return;

    if (request.row->TakesRead(request.operation)) {
        request.kind = Request::Kind::kRead;
    } else if (request.row->TakesChange(request.operation)) {
        if (administrators_.MayChange(request.peer)) {
            request.kind = request.row->procedure == Procedure::kRecordStore
                               ? Request::Kind::kRecordChange
                               : Request::Kind::kChange;
            return;
        }
        request.result = AAAD_ERR_DENIED;
        uint32_t suppressed = 0;
        if (denied_limit_.Allows(suppressed)) {
            Log(Severity::kWarning,
                "change refused: process %d of user %u may not change the configuration (code %u, "
                "operation %u); %u earlier refusals not shown",
                request.peer.pid, request.peer.uid, request.code, request.operation, suppressed);
        }
    }
}

void Configuration::Change(Requests changes) {
    switch (TryChange(changes)) {
        case Outcome::kCommitted:
            return;
        case Outcome::kNotSaved:
            RefuseUnsaved(changes);
            return;
        case Outcome::kRolesDiffer:
            break;
    }
    if (changes.size() == 1) {
        RefuseUnsaved(changes);
        return;
    }
    // One change of the batch must not cost the others their place.
    for (Request* const& request : changes) Change({&request, 1});
}

/// All changes in one transaction. Afterwards memory holds what the database holds, whatever the
/// outcome.
Configuration::Outcome Configuration::TryChange(Requests changes) {
    if (DBM_Begin(handle_) != 0) {
        for (Request* request : changes) request->result = AAAD_ERR_NOT_SAVED;
        return Outcome::kNotSaved;
    }
    for (Request* request : changes) Apply(*request);
    HandOver();

    bool roles_agree = true;
    for (const Request* request : changes) {
        roles_agree &= !request->incomplete;
        if (!request->handed_over) continue;
        roles_agree &= (request->result == DOM_OK) == (request->working_result == DOM_OK);
    }
    if (!roles_agree) {
        (void)DBM_Abort(handle_);  // nothing of the scope is kept either way
        Load();
        return Outcome::kRolesDiffer;
    }
    if (DBM_Commit(handle_) != 0) {
        Load();
        return Outcome::kNotSaved;
    }
    return Outcome::kCommitted;
}

/// The one place where a change is applied to the configuration role: a journal, a standby or a
/// metric belongs here.
void Configuration::Apply(Request& request) {
    const CodeRow& row = *request.row;
    request.handed_over = false;
    request.incomplete = false;
    if (row.check_reads_working_role && request.operation != DOM_OP_SET) HandOver();
    request.result = DOM_OK;
    const MemoryWatch memory;
    const bool prepared = WithMemory(request, [&] {
        if (row.check != nullptr) {
            request.result = row.check(request.body.get(), request.operation);
        }
        if (request.result == DOM_OK && row.prepare != nullptr) row.prepare(request);
    });
    if (!prepared) return;
    if (request.result != DOM_OK) {
        if (memory.RanShort()) Refuse(request);
        return;
    }
    if (row.procedure == Procedure::kWorkingAlone) {
        to_hand_over_.push_back(&request);
        return;
    }
    request.result = row.apply != nullptr ? row.apply(request, row.save)
                                          : DOM_RestoreData(request.message.get(), row.save ? 1 : 0,
                                                            0, 0, nullptr, nullptr);
    // The library makes do without some of what memory does not suffice for, like a domain's place
    // in an order. Such a change counts as one that the roles disagree about.
    request.incomplete = request.result == DOM_OK && memory.RanShort();
    if (row.procedure != Procedure::kBothRoles) return;
    // A generic failure goes on to the working role: it fails there, too, unless it was the saving
    // that failed, and then the difference between the roles shows it. An operation's own code is
    // final.
    if (request.result == DOM_OK || request.result == DOM_ERR_FAILED) {
        to_hand_over_.push_back(&request);
    }
}

/// Applies the changes that only the configuration role has got so far to the working role. Those
/// that the working thread saves itself are part of the same transaction: it borrows the scope.
void Configuration::HandOver() {
    if (to_hand_over_.empty()) return;
    const bool saves = std::any_of(
        to_hand_over_.begin(), to_hand_over_.end(),
        [](const Request* request) { return request->row->procedure == Procedure::kWorkingAlone; });
    uint64_t token = 0;
    const bool lent = saves && DBM_LendScope(handle_, &token) == 0;
    working_.Run([&] {
        const bool borrowed = lent && DBM_BorrowScope(token) == 0;
        for (Request* request : to_hand_over_) ApplyInWorking(*request, borrowed);
        // A failure to return it spoils the scope, which its commit reports.
        if (borrowed) (void)DBM_ReturnScope(token);
    });
    if (lent) (void)DBM_RecallScope(handle_);
    to_hand_over_.clear();
}

/// On the working thread.
void Configuration::ApplyInWorking(Request& request, bool may_save) {
    const MemoryWatch memory;
    if (request.row->procedure == Procedure::kWorkingAlone) {
        if (!may_save) {
            request.result = AAAD_ERR_NOT_SAVED;
            return;
        }
        request.handed_over = true;
        // Left in the middle, it counts as applied and not saved, so that it is taken back.
        request.working_result = DOM_OK;
        (void)WithMemory(request, [&] { request.row->apply_in_working(request); });
        request.incomplete |= request.result == DOM_OK && memory.RanShort();
        return;
    }
    request.handed_over = true;
    if (request.row->apply != nullptr) {
        request.working_result = request.row->apply(request, false);
    } else {
        const Message headed(
            AAA_AddAaadHead(DOM_AAAD_HEAD_BATCH, DOM_AAAD_HEAD_SUB_TYPE, request.message.get()));
        request.working_result = DOM_UpdateCfgData(headed.get(), 0, 0, nullptr, nullptr);
    }
    request.incomplete |= request.working_result == DOM_OK && memory.RanShort();
}

void Configuration::Read(Requests reads) {
    bool any_for_working = false;
    const auto answer = [&](Role role) {
        for (Request* request : reads) {
            if (request->row->read_role != role) {
                any_for_working = true;
                continue;
            }
            WithMemory(*request, [&] {
                const MemoryWatch memory;
                request->data = request->row->read(
                    {request->body.get(), request->operation, handle_, records_}, request->result);
                // "There is none" may be what became of want of memory further down.
                if (!request->data && memory.RanShort()) Refuse(*request);
            });
        }
    };
    answer(Role::kConfiguration);
    if (any_for_working) working_.Run([&] { answer(Role::kWorking); });
}

void Configuration::TakeMail(Message message) {
    if (DOM_UpdateCfgData(message.get(), 0, 0, nullptr, nullptr) != DOM_OK) {
        Log(Severity::kWarning,
            "a record of the working role could not be applied to the configuration role; restart "
            "the daemon to load both again");
    }
}

/// The database has refused the changes, or memory did not suffice for all of one; the tables have
/// been loaded again.
void Configuration::RefuseUnsaved(Requests changes) {
    uint32_t refused = 0;
    for (Request* request : changes) {
        // What either role took is gone again. Any other refusal says more than this one.
        const bool taken = request->incomplete ||
                           (request->handed_over &&
                            (request->result == DOM_OK || request->working_result == DOM_OK));
        if (taken) request->result = AAAD_ERR_NOT_SAVED;
        if (request->result == AAAD_ERR_NOT_SAVED) ++refused;
    }
    struct statvfs disk {};
    const bool known = statvfs(state_dir_.c_str(), &disk) == 0;
    const unsigned long long free_kib =
        known ? static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize / 1024 : 0;
    Log(Severity::kError,
        "configuration database below %s: %u changes could not be saved and were taken back (%llu "
        "KiB of its disk are free; a DBM line before names the cause, without one memory did not "
        "suffice). Make room on the disk or repair it, or free memory; then repeat the changes",
        state_dir_.c_str(), refused, free_kib);
}

}  // namespace aaad
