// Rows of settings.h, session.h and diagnostics.h.
#include <aaadom/diagnostics.h>
#include <aaadom/session.h>
#include <aaadom/settings.h>

#include "base/text.h"
#include "fault/sweep.h"

namespace fault {
namespace {

/// The text that `read(capacity, text)` gives, with its result.
template <typename Read>
Outcome TextOf(Read&& read) {
    char text[DOM_NAME_SIZE] = "untouched";
    const auto result = read(sizeof text, text);
    return {result, text};
}

EscapeRecoverAction Escape() {
    EscapeRecoverAction action{};
    aaadom::CopyText(action.domain_name, kOtherDomain);
    action.setting = 1;
    return action;
}

const Rows device{
    Reads("DOM_GetDefaultDomainName",
          [](Scene&) {
              return TextOf([](uint32_t, char* text) { return DOM_GetDefaultDomainName(text), 0; });
          }),
    Changes("DOM_SetDefaultDomainName", [](Scene&) { return DOM_SetDefaultDomainName(kDomain), 0; })
        .NeverFails(),
    Reads("DOM_GetUnknownDomainName",
          [](Scene&) {
              return TextOf([](uint32_t, char* text) { return DOM_GetUnknownDomainName(text), 0; });
          }),
    Changes("DOM_SetUnknownDomainName", [](Scene&) { return DOM_SetUnknownDomainName(kDomain), 0; })
        .NeverFails(),
    Reads("DOM_GetGlobalDomainName",
          [](Scene&) -> Outcome {
              GlobalDomain global{};
              DOM_GetGlobalDomainName(&global);
              return {0, BytesOf(global)};
          }),
    Changes("DOM_SetDeviceID", [](Scene&) { return DOM_SetDeviceID(21), 0; }).NeverFails(),
    Reads("DOM_GetDeviceID", [](Scene&) { return DOM_GetDeviceID(); }).Good(20),
    Changes("DOM_AAASetDebugFlag", [](Scene&) { return DOM_AAASetDebugFlag(AAA_DBG_ERROR_BIT), 0; })
        .NeverFails(),
    Changes("DOM_AAAResetDebugFlag",
            [](Scene&) { return DOM_AAAResetDebugFlag(AAA_DBG_ERROR_BIT), 0; })
        .After([](Scene&) { DOM_AAASetDebugFlag(AAA_DBG_ERROR_BIT); })
        .NeverFails(),
    Reads("DOM_AAAGetDebugFlag", [](Scene&) { return DOM_AAAGetDebugFlag(); })
        .After([](Scene&) { DOM_AAASetDebugFlag(AAA_DBG_EVENT_BIT); })
        .Good(AAA_DBG_EVENT_BIT),
};

const Rows domain_options{
    Reads("DOM_GetState", [](Scene&) { return DOM_GetState(kDomain); }).Good(DOM_DEF_STATE),
    Changes("DOM_SetState", [](Scene&) { return DOM_SetState(kDomain, 0), 0; }).NeverFails(),
    Reads("DOM_GetUserAddrType", [](Scene&) { return DOM_GetUserAddrType(kDomain); })
        .Good(DOM_DEF_ADDR_TYPE),
    Changes("DOM_SetUserAddrType", [](Scene&) { return DOM_SetUserAddrType(kDomain, 3), 0; })
        .NeverFails(),
    Reads("DOM_GetAcctDualStackMode", [](Scene&) { return DOM_GetAcctDualStackMode(kDomain); })
        .Good(DOM_DEF_DUAL_STACK),
    Changes("DOM_SetAcctDualStackMode",
            [](Scene&) { return DOM_SetAcctDualStackMode(kDomain, 2), 0; })
        .NeverFails(),
    Changes("DOM_SetEscapeRecoverAction",
            [](Scene&) {
                const EscapeRecoverAction action = Escape();
                return DOM_SetEscapeRecoverAction(kDomain, 1, &action);
            })
        .NeverFails(),
    Reads("DOM_GetEscapeRecoverAction",
          [](Scene&) -> Outcome {
              EscapeRecoverAction action{};
              const uint32_t result = DOM_GetEscapeRecoverAction(kDomain, &action);
              return {result, BytesOf(action)};
          })
        .After([](Scene&) {
            const EscapeRecoverAction action = Escape();
            (void)DOM_SetEscapeRecoverAction(kDomain, 1, &action);
        }),
    Changes("DOM_SetAuthRdFailPermitDomain",
            [](Scene&) { return DOM_SetAuthRdFailPermitDomain(1, kDomain, kOtherDomain); })
        .NeverFails(),
    Reads("DOM_GetAuthRdFailPermitDomain",
          [](Scene&) {
              return TextOf([](uint32_t size, char* text) {
                  return DOM_GetAuthRdFailPermitDomain(kDomain, size, text);
              });
          }),
    Changes("DOM_SetAuthFailDomain",
            [](Scene&) { return DOM_SetAuthFailDomain(kDomain, kOtherDomain, 2); })
        .NeverFails(),
    Reads("DOM_GetAuthFailDomain",
          [](Scene&) {
              return TextOf([](uint32_t size, char* text) {
                  uint16_t kind;
                  return DOM_GetAuthFailDomain(kDomain, size, text, &kind);
              });
          }),
    Reads("DOM_InitCriticalProfile",
          [](Scene&) -> Outcome {
              CriticalProfileMsg record;
              DOM_InitCriticalProfile(&record);
              return {0, BytesOf(record)};
          }),
    Reads("DOM_InitAuthorProfile",
          [](Scene&) -> Outcome {
              AuthorProfileMsg record;
              DOM_InitAuthorProfile(&record);
              return {0, BytesOf(record)};
          }),
};

const Rows sessions{
    Reads("DOM_GetSessionTime", [](Scene&) { return DOM_GetSessionTime(kDomain); }),
    Changes("DOM_SetSessionTime", [](Scene&) { return DOM_SetSessionTime(kDomain, 5); })
        .NeverFails(),
    Reads("DOM_GetAllSessionLimit",
          [](Scene&) -> Outcome {
              SessionLimits limits{};
              DOM_GetAllSessionLimit(&limits);
              return {0, BytesOf(limits)};
          }),
    Changes("DOM_SetAllSessionLimit",
            [](Scene&) {
                const SessionLimits limits{1, 2, 3, 4, 5};
                return DOM_SetAllSessionLimit(&limits), 0;
            })
        .NeverFails(),
    Changes("DOM_SetSessionLimit",
            [](Scene&) { return DOM_SetSessionLimit(SESSION_CLASS_21, 9), 0; })
        .NeverFails(),
    Reads("DOM_GetSessionCount", [](Scene&) { return DOM_GetSessionCount(SESSION_CLASS_19); })
        .After([](Scene&) { DOM_SetSessionCount(SESSION_CLASS_19, 4); })
        .Good(4),
    Changes("DOM_SetSessionCount",
            [](Scene&) { return DOM_SetSessionCount(SESSION_CLASS_22, 7), 0; })
        .NeverFails(),
    Changes("DOM_SessionIncrease", [](Scene&) { return DOM_SessionIncrease(SESSION_CLASS_23); })
        .NeverFails(),
    Changes("DOM_SessionDecrease", [](Scene&) { return DOM_SessionDecrease(SESSION_CLASS_23); })
        .After([](Scene&) { DOM_SetSessionCount(SESSION_CLASS_23, 7); })
        .NeverFails(),
};

/// Both flags are set, so that every line is written.
void WithDebugFlags(Scene&) {
    DOM_AAASetDebugFlag(AAA_DBG_ERROR_BIT | AAA_DBG_EVENT_BIT);
}

/// The line that a call adds to the log.
template <typename Log>
Outcome Logged(Log&& log) {
    const size_t before = fake::LogLines().size();
    log();
    const auto lines = fake::LogLines();
    return {lines.size() - before, lines.empty() ? "" : lines.back().label + lines.back().text};
}

const Rows diagnostics{
    Reads("AAA_DebugEvent",
          [](Scene&) { return Logged([] { AAA_DebugEvent("%s %d", kDomain, 1); }); })
        .After(WithDebugFlags)
        .Good(1),
    Reads("AAA_DebugError",
          [](Scene&) { return Logged([] { AAA_DebugError("%s %d", kDomain, 1); }); })
        .After(WithDebugFlags)
        .Good(1),
    Reads("AAA_TracePrint",
          [](Scene&) { return Logged([] { AAA_TracePrint("%s %d", kDomain, 1); }); })
        .Good(1),
    Reads("AAA_PrintLogInfo",
          [](Scene&) {
              return Logged([] { AAA_PrintLogInfo(AAA_LOG_PRIORITY, "LABEL", "%s", kDomain); });
          })
        .Good(1),
};

}  // namespace
}  // namespace fault
