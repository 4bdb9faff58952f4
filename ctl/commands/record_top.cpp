// record top
#include "../command.h"
#include "../names.h"
#include "../record_view.h"
#include "../times.h"
#include "record_filter.h"

namespace aaactl {
namespace record_top_commands {

class Top : public Command {
  public:
    Top()
        : Command({"record", "top"},
                  "Count user records by reason, domain or interface, the most frequent first") {}
    void Define(CLI::App& app) override {
        app.add_option("--by", by_, "reason, domain or interface")
            ->check(CLI::IsMember({"reason", "domain", "interface"}))
            ->capture_default_str();
        CLI::Option* last = app.add_option("--last", last_, "Of so long until now, as 1h or 2d");
        filter_.Define(app);
        last->excludes(app.get_option("--since"));
        app.add_option("--limit", limit_, "Show so many lines")->capture_default_str();
    }
    void Run(Context& context) override {
        const uint32_t now = Now();
        RecordFilter filter = filter_.Filter(now);
        if (last_) {
            const uint32_t length = ParseDuration("--last", *last_);
            filter.since = now > length ? now - length : 0;
        }
        const uint32_t limit = ParseNumber("limit", limit_, UINT32_MAX);
        if (limit == 0) RefuseUsage("limit", "it is 0", "Give 1 or more");
        const TopBy by = by_ == "reason"   ? TopBy::kReason
                         : by_ == "domain" ? TopBy::kDomain
                                           : TopBy::kInterface;
        Output& output = context.output;
        const size_t total =
            output.IsJson() ? 0 : static_cast<size_t>(CountRecords(context.client, filter.list));
        const std::vector<TopEntry> entries =
            ReadTop(context.client, filter, by, [&](uint64_t looked_at) {
                if (looked_at < total) output.Progress("records", looked_at, total);
            });
        output.ClearProgress();

        Json shown = Json::array();
        std::vector<std::vector<std::string>> rows;
        uint64_t sum = 0;
        for (const TopEntry& entry : entries) {
            sum += entry.count;
            if (rows.size() >= limit) continue;
            rows.push_back({std::to_string(entry.count), Label(entry, by)});
            shown.push_back(
                {{by_, by == TopBy::kReason ? ReasonToJson(entry.reason) : Json(entry.value)},
                 {"count", entry.count}});
        }
        for (const std::string& line : Columns(rows)) output.Line(line);
        if (entries.empty()) output.Line("there is no such record");
        if (entries.size() > rows.size()) {
            output.Line("and " + std::to_string(entries.size() - rows.size()) +
                        " more; --limit shows them");
        }
        output.Result(
            {{"by", by_}, {"records", sum}, {"different", entries.size()}, {"top", shown}});
    }

  private:
    static std::string Label(const TopEntry& entry, TopBy by) {
        if (by == TopBy::kReason) {
            return std::to_string(entry.reason) + "  " + ReasonText(entry.reason);
        }
        return entry.value.empty() ? "-" : entry.value;
    }

    RecordFilterOptions filter_;
    std::string by_ = "reason";
    std::optional<std::string> last_;
    std::string limit_ = "20";
};

}  // namespace record_top_commands

void AddRecordTopCommand(Commands& commands) {
    using namespace record_top_commands;
    commands.push_back(std::make_unique<Top>());
}

}  // namespace aaactl
