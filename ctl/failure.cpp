#include "failure.h"

#include "texts.h"

namespace aaactl {

Failure::Failure(ExitCode exit, std::string failed_object, std::string why, std::string what_to_do,
                 std::optional<uint32_t> result)
    : exit_code(exit),
      object(std::move(failed_object)),
      reason(std::move(why)),
      way_out(std::move(what_to_do)),
      code(result),
      // Names from a file may hold zeros, and what() would end at the first.
      text_(Printable(object + ": " + reason + ". " + way_out + ".")) {}

void RefuseUsage(std::string object, std::string reason, std::string way_out) {
    throw Failure(kExitUsage, std::move(object), std::move(reason), std::move(way_out));
}

}  // namespace aaactl
