// The fault sweep. A row names an operation of the library, sets its stage, calls it and states
// what it gives when something it needs is refused. The sweep runs each row once with nothing
// refused, counting what the call asks of the system, and then once for each single allocation,
// message, append, flush, database call, hash table, socket and lock initialisation that is
// refused. After each run it must hold:
//
// - the result is the one that the row states for that kind of refusal;
// - nothing leaked, no lock is held, no handle, cursor or socket stays open, nothing was misused;
// - after a failure tables and databases are as they were before, after a success as after the run
//   without a refusal, but for what the row excepts with its reason;
// - the same call works when nothing is refused any more.
//
// Rows stand in rows_<topic>.cpp, in static lists:
//
//     const Rows rows{
//         Reads("DOM_GetState", [](Scene&) { return DOM_GetState("north"); }).Good(1),
//         Encodes("DOM_tlv_EncodeState", [](Scene&) { return DOM_tlv_EncodeState("north"); }),
//         Changes("DOM_AddDomainByName", [](Scene&) { return DOM_AddDomainByName("new"); })
//             .Fails({DOM_ADD_FAILED}),
//     };
//
// An operation may have several rows: "DOM_AddMethodList/default service".
#pragma once

#include <aaadom/results.h>
#include <aaadom/types.h>
#include <platform/tlv.h>

#include <concepts>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "fakes/fake_platform.h"
#include "fakes/role.h"
#include "fault/scene.h"

namespace fault {

using fake::Event;

/// Result of a call that gives a pointer.
inline constexpr uint64_t kNothing = 0;
inline constexpr uint64_t kSomething = 1;

/// What a call gave: its result, and its outputs as bytes. A success must always give the outputs
/// of the run without a refusal.
struct Outcome {
    uint64_t result = 0;
    std::string outputs;

    Outcome() = default;
    template <typename T>
    requires std::integral<T> || std::is_enum_v<T> Outcome(T value)
        : result(static_cast<uint64_t>(value)) {}
    template <typename T>
    requires std::integral<T> || std::is_enum_v<T> Outcome(T value, std::string bytes)
        : result(static_cast<uint64_t>(value)), outputs(std::move(bytes)) {}
};

/// The bytes of an output.
template <typename T>
requires std::is_trivially_copyable_v<T> std::string BytesOf(const T& value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

/// Kind of a returned message, which is destroyed here; its image is the output.
Outcome Made(TLV_MSG* msg);
/// Kind of a returned domain, which is destroyed here; its name is the output.
Outcome Made(DomainInfo* domain);
/// Any other returned object, which `destroy` takes.
template <typename T, typename Destroy>
Outcome Made(T* object, Destroy&& destroy) {
    const Outcome outcome(object == nullptr ? kNothing : kSomething);
    if (object != nullptr) destroy(object);
    return outcome;
}
/// A found object, which stays where it is.
inline Outcome Found(const void* object) {
    return object == nullptr ? kNothing : kSomething;
}

using Call = std::function<Outcome(Scene&)>;
using Step = std::function<void(Scene&)>;
using Results = std::set<uint64_t>;

struct Row {
    std::string name;  ///< exported name, or "name/what is particular to this row"
    Call call;
    Step stage = Tables;
    std::vector<Step> steps;  ///< what is done on the stage before the call
    uint32_t role = fake::kConfigRole;
    uint64_t good = 0;                     ///< result when nothing is refused
    Results failures;                      ///< results when something is refused; empty = the good
    std::map<Event, Results> failures_of;  ///< the same for one kind, instead of `failures`
    /// Parts of the snapshot (or their beginnings) that a failure need not leave alone, and why.
    std::map<std::string, std::string> exceptions;
    std::string partial;     ///< why a success may give other outputs, empty = it may not
    bool reads = false;      ///< changes nothing, also when it succeeds
    bool repeatable = true;  ///< after a failure the same call gives the good result

    /// Result of the run in which nothing is refused; 0 unless told.
    Row&& Good(uint64_t result) && {
        good = result;
        return std::move(*this);
    }
    /// Results of which one is given whenever something is refused. When the good result is among
    /// them a success may have done nothing, too.
    Row&& Fails(Results results) && {
        failures = std::move(results);
        return std::move(*this);
    }
    /// The same for one kind of refusal.
    Row&& On(Event event, Results results) && {
        failures_of[event] = std::move(results);
        return std::move(*this);
    }
    /// Nothing that is refused changes the result or what is done.
    Row&& NeverFails() && {
        failures.clear();
        failures_of.clear();
        return std::move(*this);
    }
    /// A part of the snapshot ("working.domains", "database", ...) that a failure need not leave
    /// alone.
    Row&& Except(std::string part, std::string reason) && {
        exceptions[std::move(part)] = std::move(reason);
        return std::move(*this);
    }
    Row&& Partial(std::string reason) && {
        partial = std::move(reason);
        return std::move(*this);
    }
    Row&& In(uint32_t calling_role) && {
        role = calling_role;
        return std::move(*this);
    }
    Row&& On(Step new_stage) && {
        stage = std::move(new_stage);
        return std::move(*this);
    }
    /// Something that is done on the stage before the call, in the order of the calls of After.
    Row&& After(Step step) && {
        steps.push_back(std::move(step));
        return std::move(*this);
    }
    Row&& Once() && {
        repeatable = false;
        return std::move(*this);
    }

    std::string Operation() const { return name.substr(0, name.find('/')); }
};

/// Asks without changing anything; refusals do not matter unless the row says otherwise.
Row Reads(std::string name, Call call);
/// Changes tables: the good result is 0, a refusal gives DOM_ERR_FAILED.
Row Changes(std::string name, Call call);
/// Returns a message, null after a refusal; nothing else changes.
Row Encodes(std::string name, std::function<TLV_MSG*(Scene&)> encode);
/// Appends to an empty message, which a refusal leaves as it is: 0, DOM_ERR_FAILED after a refusal.
Row Appends(std::string name, std::function<uint32_t(TLV_MSG*)> append);
/// Reads the golden message `file` (tests/golden/<file>.hex): 0, DOM_ERR_FAILED after a refusal.
Row Decodes(std::string name, std::string file, std::function<Outcome(Scene&, TLV_MSG*)> decode);
/// Sends a request that is answered with result 0, and changes nothing here: 0, DOM_ERR_FAILED
/// after a refusal.
Row Requests(std::string name, Call call);
/// The same, answered with a message of the golden file.
Row Asks(std::string name, std::string reply_file, Call call);
/// Writes to the saved configuration: 0, DOM_ERR_FAILED after a refusal.
Row Saves(std::string name, Call call);
/// Reads the saved configuration: 0, DOM_ERR_FAILED after a refusal.
Row Loads(std::string name, Call call);

/// Adds its rows to the table.
class Rows {
  public:
    Rows(std::initializer_list<Row> rows);
    explicit Rows(const std::vector<Row>& rows);
};
const std::vector<Row>& AllRows();

/// Sweeps a row. What does not hold fails the running test; the number of single refusals.
uint64_t SweepRow(const Row& row);

}  // namespace fault
