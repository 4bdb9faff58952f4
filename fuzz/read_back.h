// Reads everything there is, so that whatever an input left behind is looked at.
#pragma once

#include "stage.h"

namespace fuzz {

/// The tables of both roles: every walk and every getter of each domain, profile and policy.
void ReadTables();

/// Every getter of the saved configuration, and the records of the run database.
void ReadDatabases(const Stage& stage);

}  // namespace fuzz
