// Golden messages of NAS-ID profiles, user records, queries of them, their switches and backup
// methods.
#pragma once

#include <aaadom/codes.h>
#include <platform/tlv.h>

#include <functional>
#include <vector>

namespace golden {

/// A message and its file: encoding gives the file, the file passes the check.
struct GoldenMessage {
    const char* file;
    DomMsgCode code;
    std::function<TLV_MSG*()> encode;
    std::function<void(TLV_MSG*)> check;
};

std::vector<GoldenMessage> CmdAuthorFailGoldens();
std::vector<GoldenMessage> ItaPolicyGoldens();
std::vector<GoldenMessage> NasIdGoldens();
std::vector<GoldenMessage> ProfileGoldens();
std::vector<GoldenMessage> RecPolicyGoldens();
std::vector<GoldenMessage> RecordGoldens();
std::vector<GoldenMessage> RecordQueryGoldens();

}  // namespace golden
