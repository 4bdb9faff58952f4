#include <aaadom/codes.h>
#include <aaadom/record_switches.h>
#include <aaadom/results.h>

#include "base/lock.h"
#include "domain/tables.h"

using namespace aaadom;

namespace {

constexpr uint16_t kOn = 1;

// Plain words of the process: the daemon sets the default before it starts its threads and
// serialises writing the flag with reading it.
constinit uint32_t record_enable_default = 0;
constinit uint16_t recover_flag = 0;

/// The switch that a message code sets, or null.
uint16_t* SwitchOfCode(RecordSwitches& switches, uint32_t code) noexcept {
    switch (code) {
        case DOM_MSG_REC_EN_ONLINE_FAIL:
            return &switches.online_fail;
        case DOM_MSG_REC_EN_OFFLINE_ALL:
            return &switches.offline_all;
        case DOM_MSG_REC_EN_OFFLINE_NORMAL:
            return &switches.offline_normal;
        case DOM_MSG_REC_EN_OFFLINE_ABNORMAL:
            return &switches.offline_abnormal;
        default:
            return nullptr;
    }
}

RecordSwitches ReadSwitches() noexcept {
    RecordSwitchInfo& info = SwitchesOf(CurrentRole());
    ReadGuard lock(info.lock);
    return info.switches;
}

}  // namespace

extern "C" {

TLV_MSG* DOM_GetAllRecordEnableInfo(void) noexcept {
    RecordSwitchInfo& info = SwitchesOf(CurrentRole());
    ReadGuard lock(info.lock);
    return DOM_userrecord_tlv_EncodeRecordEnableInfo(&info.switches);
}

uint32_t DOM_GetOnlineFailRecordEnableInfo(void) noexcept {
    return ReadSwitches().online_fail;
}

uint32_t DOM_GetOfflineAllRecordEnableInfo(void) noexcept {
    return ReadSwitches().offline_all;
}

uint32_t DOM_GetOfflineNormalRecordEnableInfo(void) noexcept {
    return ReadSwitches().offline_normal;
}

uint32_t DOM_GetOfflineAbnormalRecordEnableInfo(void) noexcept {
    return ReadSwitches().offline_abnormal;
}

uint32_t DOM_GetOnlineOffLineRecordEnableInfo(void) noexcept {
    const RecordSwitches switches = ReadSwitches();
    return switches.online_fail == kOn || switches.offline_all == kOn ||
                   switches.offline_normal == kOn || switches.offline_abnormal == kOn
               ? 1
               : 0;
}

uint32_t DOM_SetRecordEnableInfo(uint32_t code, uint16_t value) noexcept {
    RecordSwitchInfo& info = SwitchesOf(CurrentRole());
    WriteGuard lock(info.lock);
    uint16_t* wanted = SwitchOfCode(info.switches, code);
    if (wanted == nullptr) return DOM_ERR_FAILED;
    *wanted = value;
    return DOM_OK;
}

void DOM_SetRecordEnableInfoAll(const RecordSwitches* switches) noexcept {
    if (switches == nullptr) return;
    RecordSwitchInfo& info = SwitchesOf(CurrentRole());
    WriteGuard lock(info.lock);
    info.switches = *switches;
}

void DOM_SetUserRecordEnableDefault(uint32_t value) noexcept {
    record_enable_default = value;
}

uint32_t DOM_GetUserRecordEnableDefault(void) noexcept {
    return record_enable_default;
}

void DOM_SetUserRecordRecoverFlag(uint16_t flag) noexcept {
    recover_flag = flag;
}

uint32_t DOM_GetUserRecordRecoverFlag(void) noexcept {
    return recover_flag;
}

}  // extern "C"
