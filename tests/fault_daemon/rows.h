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
    /// Asked before, each must succeed.
    std::vector<Row> before{};
    uint64_t good = 0;          ///< the answer when nothing is refused
    bool reads = false;         ///< changes nothing
    std::set<uint64_t> also{};  ///< what an answer may be besides the usual refusals
    /// Why a success may do or give less than without a refusal; empty = it may not.
    std::string partial{};

    /// The message as it is sent; the caller destroys it.
    TLV_MSG* Message() const;
};

const std::vector<Row>& AllRows();
/// The rows that furnish the stage: every object that the other rows ask for.
const std::vector<Row>& StageRows();

}  // namespace fault_daemon
