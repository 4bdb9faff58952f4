// The recording policy of connections: read, changed, and as a document.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client.h"
#include "output.h"

namespace aaactl {

/// Its methods; none when the device has no such policy.
std::optional<std::vector<std::string>> FindRecordingPolicy(Client& client);

/// {"scheme": ["METHOD"]}; null when the device has no such policy.
Json ReadRecordingPolicy(Client& client);
/// Refuses a document that ReadRecordingPolicy could not have made.
void CheckRecordingPolicy(const Json& document);
/// Creates, changes or deletes the policy so that it is as `wanted` says.
void ApplyRecordingPolicy(Client& client, const Json& wanted);

void CreateRecordingPolicy(Client& client);
void DeleteRecordingPolicy(Client& client);
/// No words take the methods away.
void SetRecordingScheme(Client& client, const std::vector<std::string>& words);

}  // namespace aaactl
