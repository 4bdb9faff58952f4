// Domains, settings and policies as facts, of the roles and of the database alike.
#pragma once

#include <platform/dbm.h>

#include "facts.h"
#include "integration/daemon_process.h"

namespace crash {

constexpr uint16_t kVlans = 4;  // clients bind 0 to 3

/// The object that a list of records belongs to: each list has one client that reports into it.
std::string RecordList(uint32_t list);
/// The object that the device-wide settings belong to.
constexpr char kDevice[] = "c0-device";

void AddDomain(const DomainInfo& domain, Facts& facts);
void AddPolicy(const ItaPolicy& policy, Facts& facts);

void AskDomains(Facts& configuration, Facts& working);
void AskSettings(Facts& configuration, Facts& working);
void ReadDomains(DBM_HANDLE handle, Facts& facts);
void ReadSettings(DBM_HANDLE handle, Facts& facts);

}  // namespace crash
