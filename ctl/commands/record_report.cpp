// record report: a record as an access module sends it
#include <aaadom/aaad_results.h>
#include <platform/aaa_tlv.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "../command.h"
#include "../names.h"
#include "../record_fields.h"
#include "../times.h"
#include "record_filter.h"

namespace aaactl {
namespace record_report_commands {

template <size_t N>
void SetText(char (&field)[N], const std::string& what, const std::string& text) {
    CheckFits(what, text, N);
    memcpy(field, text.c_str(), text.size() + 1);
}

/// The stored form has so much room behind the other fields; of a longer detail the daemon stores
/// nothing.
constexpr size_t kLongestDetail = 64850;

void CheckDetailFits(const std::string& detail) {
    if (detail.size() <= kLongestDetail) return;
    RefuseUsage("detail",
                "it has " + std::to_string(detail.size()) + " characters, " +
                    std::to_string(kLongestDetail) + " fit",
                "Give a shorter text");
}

/// Access modules name interfaces by the system's index. A name that this system need not know
/// takes the place of the looked-up one.
Message WithInterface(Message report, const std::string& name) {
    const auto demand = [](bool good) {
        if (!good) throw std::bad_alloc();
    };
    demand(report != nullptr);
    TLV_ITER* it = TLV_GetIteratorByType(report.get(), DOM_TLV_USER_RECORD);
    demand(it != nullptr);
    const Message record(AAA_GetSubTlv(report.get(), it));
    demand(record != nullptr);
    demand(TLV_Delete_Data(report.get(), it) == 0);
    it = TLV_GetIteratorByType(record.get(), DOM_TLV_RECORD_INTERFACE);
    demand(it != nullptr && TLV_Delete_Data(record.get(), it) == 0);
    demand(AAA_AppendStrTlvData(record.get(), DOM_TLV_RECORD_INTERFACE, name.c_str()) == 0);
    demand(AAA_AppendSubTlv(report.get(), DOM_TLV_USER_RECORD, record.get()) == 0);
    return report;
}

class Report : public Command {
  public:
    Report() : Command({"record", "report"}, "Send a user record as an access module does") {}
    void Define(CLI::App& app) override {
        app.add_option("--list", list_, "online-fail, abnormal or normal")
            ->check(CLI::IsMember(RecordListWords(false)))
            ->capture_default_str();
        app.add_option("--time", time_, "When it was: so long ago as 2h, or 2026-03-01T10:20:30")
            ->capture_default_str();
        app.add_option("--reason", reason_, "A reason's code or words of its text")
            ->capture_default_str();
        app.add_option("--user", user_, "The user's name, at most 255 characters");
        app.add_option("--domain", domain_, "The ISP domain, at most 255 characters");
        CLI::Option* name =
            app.add_option("--interface", interface_, "The interface, at most 47 characters");
        app.add_option("--interface-index", interface_index_, "The system's index of the interface")
            ->excludes(name);
        access_.Define(app);
        app.add_option("--service", service_, "The number of the service or slot");
        app.add_option("--access-type", access_type_, "The code of the access type");
        app.add_option("--session", session_, "The length of the session, as 90s or 2h");
        app.add_option("--detail", detail_, "Free text, at most 64850 characters");
        app.add_option("--flags", flags_, "The access module's own flags");
    }
    void Run(Context& context) override {
        UserRecordSource source{};
        source.first_number = ParseTime("--time", time_, Now());
        source.second_number = ParseReason(reason_);
        SetText(source.second_name, "user", user_);
        SetText(source.first_name, "domain", domain_);
        CheckFits("interface", interface_, sizeof UserRecord::interface_name);
        source.interface_index = ParseNumber("interface index", interface_index_, UINT32_MAX);
        const AccessOptions::Values access = access_.Parse();
        if (access.mac) Copy(*access.mac, source.mac);
        if (access.ipv4) Copy(*access.ipv4, source.ipv4);
        if (access.ipv6) Copy(*access.ipv6, source.ipv6);
        source.number16[0] = access.outer_vlan.value_or(0);
        source.number16[1] = access.inner_vlan.value_or(0);
        source.number16[2] = ParseNumber16("service", service_);
        source.third_number = ParseDuration("--session", session_);
        source.fourth_number = ParseNumber("access type", access_type_, UINT32_MAX);
        CheckDetailFits(detail_);
        if (!detail_.empty()) {
            source.detail = detail_.data();
            source.detail_len = static_cast<uint32_t>(detail_.size() + 1);
        }
        const uint16_t list = ParseRecordList(list_);
        Message report(PAM_EncUserRecordMsg(list, ParseNumber16("flags", flags_), &source));
        if (!interface_.empty()) report = WithInterface(std::move(report), interface_);

        Message answer;
        const uint32_t result = context.client.Report(report.release(), &answer);
        if (result != DOM_OK) RefuseRecord(result);
        TLV_ITER* it = TLV_GetIteratorByType(answer.get(), DOM_TLV_RECORD_SERIAL);
        if (it == nullptr) {
            context.output.Line("the record is not kept: the switch of list " + list_ +
                                " is off, see aaactl record switch show");
            context.output.Result({{"kept", false}, {"list", list_}});
            return;
        }
        const uint64_t serial = AAA_GetUINT64TlvValue(answer.get(), it);
        context.output.Line("record " + list_ + " " + std::to_string(serial) + " is stored");
        context.output.Result({{"kept", true}, {"list", list_}, {"serial", serial}});
    }

  private:
    template <size_t N>
    static void Copy(const std::array<uint8_t, N>& from, uint8_t (&to)[N]) {
        std::copy(from.begin(), from.end(), to);
    }

    [[noreturn]] static void RefuseRecord(uint32_t result) {
        const std::string object = "record";
        if (result == AAAD_ERR_NOT_SAVED) {
            throw Failure(kExitRefused, object, "the daemon could not store it",
                          "See the daemon's log; make room in its run directory", result);
        }
        if (result == AAAD_ERR_DENIED) {
            throw Failure(kExitRefused, object, "the daemon takes reports of administrators only",
                          "Run the command as root, as the daemon's user or as a member of its "
                          "administrators' group",
                          result);
        }
        throw Refused(object, result);
    }

    std::string list_ = "online-fail";
    std::string time_ = "now";
    std::string reason_ = "0";
    std::string user_;
    std::string domain_;
    std::string interface_;
    std::string interface_index_ = "0";
    AccessOptions access_;
    std::string service_ = "0";
    std::string access_type_ = "0";
    std::string session_ = "0";
    std::string detail_;
    std::string flags_ = "0";
};

}  // namespace record_report_commands

void AddRecordReportCommand(Commands& commands) {
    using namespace record_report_commands;
    commands.push_back(std::make_unique<Report>());
}

}  // namespace aaactl
