// cmd-fail list, report: command lines whose authorization failed
#include <aaadom/cmd_author_fail.h>
#include <platform/aaa_tlv.h>

#include <new>

#include "../command.h"
#include "../names.h"
#include "../record_view.h"
#include "../texts.h"
#include "../times.h"

namespace aaactl {
namespace cmd_fail_commands {

/// The reader's list owns its nodes.
class FailureList {
  public:
    FailureList() {
        auto* end = reinterpret_cast<CmdAuthorFailNode*>(&list_.head);
        list_.head = {end, end};
    }
    ~FailureList() {
        for (CmdAuthorFailNode* node = list_.head.next; node != End();) {
            CmdAuthorFailNode* next = node->next;
            DOM_FreeCmdAuthorFailNode(node);
            node = next;
        }
    }
    FailureList(const FailureList&) = delete;
    FailureList& operator=(const FailureList&) = delete;

    CmdAuthorFailRec* Get() { return &list_; }
    /// The count is of the failures that were sent. Throws std::bad_alloc when one of them is lost,
    /// which the decoder's result does not tell.
    void CheckComplete() const {
        uint32_t nodes = 0;
        for (const CmdAuthorFailNode* node = First(); node != End(); node = node->next) ++nodes;
        if (nodes != list_.count) throw std::bad_alloc();
    }
    const CmdAuthorFailNode* First() const { return list_.head.next; }
    const CmdAuthorFailNode* End() const {
        return reinterpret_cast<const CmdAuthorFailNode*>(&list_.head);
    }

  private:
    CmdAuthorFailRec list_{};
};

Message Request() {
    Message request(TLV_Create());
    if (!request || DOM_Rec_tlv_EncodeCmdAuthorFailMsg(request.get()) != DOM_OK) {
        throw std::bad_alloc();
    }
    return request;
}

std::string LocalTimeOf(uint64_t seconds) {
    return seconds <= UINT32_MAX ? LocalTime(static_cast<uint32_t>(seconds))
                                 : std::to_string(seconds);
}

std::string OrDash(const std::string& text) {
    return text.empty() ? "-" : Printable(text);
}

class List : public Command {
  public:
    List()
        : Command({"cmd-fail", "list"},
                  "List the latest ten command lines whose authorization failed, the newest "
                  "first") {}
    void Define(CLI::App&) override {}
    void Run(Context& context) override {
        const Reply reply = context.client.Read(Request().release());
        if (!reply.data) throw Refused("failed command lines", reply.refusal);
        FailureList failures;
        // The end mark of a complete answer reads as not found.
        if (DOM_Rec_tlv_DecodeCmdAuthorFailMsg(reply.data.get(), failures.Get()) !=
            DOM_ERR_NOT_FOUND) {
            throw Failure(kExitRefused, "failed command lines",
                          "the daemon's answer cannot be read",
                          "Use the aaactl of the daemon's release");
        }
        failures.CheckComplete();
        Json shown = Json::array();
        std::vector<std::vector<std::string>> rows = {
            {"TIME", "USER", "FROM", "REASON", "COMMAND"}};
        for (const CmdAuthorFailNode* node = failures.First(); node != failures.End();
             node = node->next) {
            const CmdAuthorFailItem& item = node->item;
            const std::string command = FieldText(item.first_text);
            const std::string user = FieldText(item.second_text);
            const std::string from = FieldText(item.third_text);
            rows.push_back({LocalTimeOf(item.number64), OrDash(user), OrDash(from),
                            ReasonText(item.number32), OrDash(command)});
            shown.push_back({{"time", TimeToJson(item.number64)},
                             {"user", user},
                             {"from", from},
                             {"reason", ReasonToJson(item.number32)},
                             {"command", command}});
        }
        if (shown.empty()) {
            context.output.Line("no command line has failed since the daemon's start");
        } else {
            for (const std::string& line : Columns(rows)) context.output.Line(line);
        }
        context.output.Result({{"failures", shown}});
    }
};

class Report : public Command {
  public:
    Report()
        : Command({"cmd-fail", "report"},
                  "Report a command line whose authorization failed, as an access module does") {}
    void Define(CLI::App& app) override {
        app.add_option("command", command_, "The command line, at most 512 characters")->required();
        app.add_option("--user", user_, "The user's name, at most 255 characters");
        app.add_option("--from", from_, "The user's address or line, at most 255 characters");
        app.add_option("--time", time_, "When it was: so long ago as 2h, or 2026-03-01T10:20:30")
            ->capture_default_str();
        app.add_option("--reason", reason_, "A reason's code or words of its text")
            ->capture_default_str();
    }
    void Run(Context& context) override {
        const CmdAuthorFailItem capacities{};
        CheckFits("command", command_, sizeof capacities.first_text);
        CheckFits("user", user_, sizeof capacities.second_text);
        CheckFits("from", from_, sizeof capacities.third_text);
        Message report = Request();
        TLV_MSG* msg = report.get();
        const uint32_t failed =
            AAA_AppendStrTlvData(msg, DOM_TLV_CMD_FAIL_FIRST_TEXT, command_.c_str()) |
            AAA_AppendStrTlvData(msg, DOM_TLV_CMD_FAIL_SECOND_TEXT, user_.c_str()) |
            AAA_AppendStrTlvData(msg, DOM_TLV_CMD_FAIL_THIRD_TEXT, from_.c_str()) |
            AAA_AppendUINT64TlvData(msg, DOM_TLV_CMD_FAIL_NUMBER64,
                                    ParseTime("--time", time_, Now())) |
            AAA_AppendUINTTlvData(msg, DOM_TLV_CMD_FAIL_NUMBER32, ParseReason(reason_));
        if (failed != 0) throw std::bad_alloc();
        const uint32_t result = context.client.Report(report.release());
        if (result != DOM_OK) throw Refused("failed command line", result);
        context.output.Line("the failed command line is reported");
        context.output.Result({{"reported", command_}});
    }

  private:
    std::string command_;
    std::string user_;
    std::string from_;
    std::string time_ = "now";
    std::string reason_ = "12";  // authorization failed
};

}  // namespace cmd_fail_commands

void AddCommandFailureCommands(Commands& commands) {
    using namespace cmd_fail_commands;
    commands.push_back(std::make_unique<List>());
    commands.push_back(std::make_unique<Report>());
}

}  // namespace aaactl
