// Files that hold a configuration.
#pragma once

#include <string>

#include "output.h"

namespace aaactl {

/// A checked configuration from a file, or from standard input for "-".
Json LoadConfig(const std::string& path);
/// An older file of that name stays as it is until the new one is complete.
void WriteConfigFile(const std::string& path, const std::string& text);

}  // namespace aaactl
