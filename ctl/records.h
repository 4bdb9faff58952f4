// Which user records are kept and which are backed up.
#pragma once

#include "client.h"
#include "output.h"

namespace aaactl {

/// {"online_fail": true, "offline_all": ..., "offline_normal": ..., "offline_abnormal": ...}
Json ReadRecordSwitches(Client& client);
/// {"online_fail": true, "abnormal_offline": ..., "normal_offline": ...}
Json ReadRecordBackup(Client& client);
/// The same with a member "default": the same object of what applies while nothing is configured.
Json ReadRecordBackupWithDefault(Client& client);

/// Refuse a document with other members or with values that are no truth values.
void CheckRecordSwitches(const Json& document);
void CheckRecordBackup(const Json& document);

/// `name` is a member of the document above.
void SetRecordSwitch(Client& client, const std::string& name, bool on);
void SetRecordBackup(Client& client, const std::string& name, bool on);

}  // namespace aaactl
