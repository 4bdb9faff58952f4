// Databases as damage, other releases and other hands may leave them.
#pragma once

#include "input.h"
#include "stage.h"

namespace fuzz {

/// Puts one value of the input under one of kStoredKeys: its number, how it is put, and a message
/// or bytes as TakeMessage takes them.
void PutStoredValue(const Stage& stage, Input& input);

/// Loads both roles as the daemon does when it starts, which no value may prevent, reads everything
/// and tears the tables down. The stage has none.
void StartFromDatabase(const Stage& stage);

}  // namespace fuzz
