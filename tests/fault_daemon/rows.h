// What is asked of the daemon, one row a code and operation of its table of requests.
#pragma once

#include <platform/tlv.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "fault_daemon/daemon.h"

namespace fault_daemon {

struct Row {
    std::string name;
    Socket socket = Socket::kRequests;
    uint32_t code = 0;
    uint32_t operation = 0;
    /// The request without its head.
    std::function<TLV_MSG*()> body;
    bool has_head = true;
    size_t bytes_sent = SIZE_MAX;  ///< of the message; it is no longer than that anyway
    /// Asked before, each must succeed.
    std::vector<Row> before{};
    uint64_t good = 0;          ///< the answer when nothing is refused
    bool reads = false;         ///< changes nothing
    std::set<uint64_t> also{};  ///< what an answer may be besides the usual refusals

    /// The message as it is sent; the caller destroys it.
    TLV_MSG* Message() const;
};

const std::vector<Row>& AllRows();
/// Requests that are none.
std::vector<Row> MalformedRows();
/// The row of that name.
const Row& RowOf(const std::string& name);
/// The rows that furnish the stage: every object that the other rows ask for.
const std::vector<Row>& StageRows();

}  // namespace fault_daemon
