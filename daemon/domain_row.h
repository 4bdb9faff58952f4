// Rows of the domain table (code 14).
#pragma once

#include <cstdint>

namespace aaad {

struct Request;

/// Applies a row in the calling role; `save` stores the domain, too. Returns the row's result, or
/// that of saving. Never leaves the table mutex locked, which the library's own way of creating a
/// row does when memory ends at one point.
uint32_t ApplyDomainRow(const Request& request, bool save);

}  // namespace aaad
