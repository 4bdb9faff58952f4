// The options that say which user records are meant.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "../record_queries.h"

namespace aaactl {

/// The options of where and with which addresses a user came in, of filters and of reports.
class AccessOptions {
  public:
    struct Values {
        std::optional<Mac> mac;
        std::optional<Ipv4> ipv4;
        std::optional<Ipv6> ipv6;
        std::optional<uint16_t> outer_vlan;
        std::optional<uint16_t> inner_vlan;
    };

    void Define(CLI::App& app);
    /// Throws what is wrong with a value.
    Values Parse() const;

  private:
    std::optional<std::string> mac_;
    std::optional<std::string> ipv4_;
    std::optional<std::string> ipv6_;
    std::optional<std::string> outer_vlan_;
    std::optional<std::string> inner_vlan_;
};

class RecordFilterOptions {
  public:
    void Define(CLI::App& app);
    /// Throws what is wrong with a value. Times that are so long ago count from `now`.
    RecordFilter Filter(uint32_t now) const;

  private:
    std::string list_ = "all";
    std::optional<std::string> since_;
    std::optional<std::string> until_;
    std::optional<std::string> reason_;
    std::optional<std::string> user_;
    std::optional<std::string> domain_;
    std::optional<std::string> interface_;
    AccessOptions access_;
};

/// A VLAN or another number of 16 bits.
uint16_t ParseNumber16(const std::string& what, const std::string& word);
/// "1 record is", "2 records are": the number and the words for it.
std::string CountText(uint64_t count, const std::string& one, const std::string& more);

}  // namespace aaactl
