// What stops the daemon: which object, why, and what the operator can do about it.
#pragma once

#include <stdexcept>
#include <string>

namespace aaad {

class Failure : public std::runtime_error {
  public:
    Failure(const std::string& object, const std::string& reason, const std::string& way_out)
        : std::runtime_error(object + ": " + reason + ". " + way_out + ".") {}
};

}  // namespace aaad
