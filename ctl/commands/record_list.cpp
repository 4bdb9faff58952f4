// record list, show, count, reset
#include <algorithm>

#include "../command.h"
#include "../names.h"
#include "../record_view.h"
#include "../texts.h"
#include "../times.h"
#include "record_filter.h"

namespace aaactl {
namespace record_list_commands {

constexpr const char* kDefaultLimit = "50";

bool IsSerial(const std::string& word) {
    return !word.empty() && word.size() <= 19 &&
           word.find_first_not_of("0123456789") == std::string::npos;
}

/// "online-fail:120" goes on in that list below number 120.
RecordPosition ParsePosition(const std::string& word) {
    const size_t colon = word.find(':');
    const std::string number = colon == std::string::npos ? "" : word.substr(colon + 1);
    if (!IsSerial(number) || word.substr(0, colon) == "all") {
        RefuseUsage("position \"" + Printable(word) + "\"", "it is no list and number",
                    "Give positions as the former answer shows them, as online-fail:120");
    }
    return {ParseRecordList(word.substr(0, colon)), std::stoull(number)};
}

std::string PositionWord(const RecordPosition& position) {
    return RecordListWord(position.list) + ":" + std::to_string(position.serial);
}

/// How many records a question can look at, to show how far it is.
size_t RecordsToSearch(Context& context, const RecordFilter& filter) {
    return context.output.IsJson() ? 0 : CountRecords(context.client, filter.list);
}

void ShowProgress(Output& output, uint64_t looked_at, size_t total) {
    // The end of a walk is what takes the line away; others may have added records meanwhile.
    if (total > 1) output.Progress("records", std::min<size_t>(looked_at, total - 1), total);
}

class List : public Command {
  public:
    List() : Command({"record", "list"}, "List user records, the newest first") {}
    void Define(CLI::App& app) override {
        filter_.Define(app);
        app.add_option("--limit,--number", limit_, "Show so many of the newest")
            ->capture_default_str();
        CLI::Option* all = app.add_flag("--all", all_, "Show all of them");
        all->excludes(app.get_option("--limit"));
        app.add_option("--continue", continue_,
                       "Go on where a former answer ended, as online-fail:120");
        CLI::Option* verbose = app.add_flag("--verbose", verbose_, "Show every field");
        app.add_flag("--brief", brief_, "Ask for and show the short form, without the interface")
            ->excludes(verbose);
    }
    void Run(Context& context) override {
        const RecordFilter filter = filter_.Filter(Now());
        const uint32_t limit = all_ ? UINT32_MAX : ParseNumber("limit", limit_, UINT32_MAX);
        if (limit == 0) RefuseUsage("limit", "it is 0", "Give 1 or more, or --all");
        RecordPositions next;
        for (const std::string& word : continue_) {
            const RecordPosition position = ParsePosition(word);
            for (const RecordPosition& other : next) {
                if (other.list != position.list) continue;
                RefuseUsage("position \"" + word + "\"", "its list has another position already",
                            "Give one position of each list");
            }
            next.push_back(position);
        }

        Output& output = context.output;
        const size_t total = all_ ? RecordsToSearch(context, filter) : 0;
        Json records = Json::array();
        uint64_t shown = 0;
        uint64_t looked_at = 0;
        do {
            const auto wanted =
                static_cast<uint32_t>(std::min<uint64_t>(DOM_RECORD_PAGE_MAX, limit - shown));
            RecordPage page = ReadRecordPage(context.client, filter, brief_, wanted, next);
            looked_at += page.looked_at;
            output.ClearProgress();
            Show(output, page.records, shown == 0);
            shown += page.records.size();
            for (const FoundRecord& record : page.records) {
                if (output.IsJson()) records.push_back(RecordToJson(record));
            }
            next = std::move(page.next);
            if (!next.empty()) ShowProgress(output, looked_at, total);
        } while (!next.empty() && (all_ || shown < limit));
        output.ClearProgress();
        if (shown == 0) output.Line("there is no such record");
        Json positions = Json::array();
        for (const RecordPosition& position : next) positions.push_back(PositionWord(position));
        if (!next.empty()) {
            std::string way;
            for (const Json& word : positions) way += " " + word.get<std::string>();
            output.Line("there may be more: --continue" + way + ", a larger --limit or --all");
        }
        output.Result({{"records", records}, {"continue", positions}});
    }

  private:
    void Show(Output& output, const std::vector<FoundRecord>& records, bool titles) const {
        if (output.IsJson() || records.empty()) return;
        if (verbose_) {
            for (const FoundRecord& record : records) {
                for (const std::string& line : RecordBlock(record)) output.Line(line);
            }
            return;
        }
        const std::vector<std::string> lines = RecordTable(records, brief_);
        for (size_t i = titles ? 0 : 1; i < lines.size(); ++i) output.Line(lines[i]);
    }

    RecordFilterOptions filter_;
    std::string limit_ = kDefaultLimit;
    std::vector<std::string> continue_;
    bool all_ = false;
    bool verbose_ = false;
    bool brief_ = false;
};

class Show : public Command {
  public:
    Show() : Command({"record", "show"}, "Show every field of a user record") {}
    void Define(CLI::App& app) override {
        app.add_option("list", list_, "online-fail, abnormal or normal")
            ->required()
            ->check(CLI::IsMember(RecordListWords(false)));
        app.add_option("serial", serial_, "The record's number in its list")->required();
    }
    void Run(Context& context) override {
        if (!IsSerial(serial_)) {
            RefuseUsage("record number \"" + Printable(serial_) + "\"", "it is no decimal number",
                        "Give the number as aaactl record list shows it");
        }
        const RecordPosition wanted{ParseRecordList(list_), std::stoull(serial_)};
        RecordFilter filter;
        filter.list = static_cast<uint16_t>(wanted.list);
        const RecordPage page =
            ReadRecordPage(context.client, filter, false, 1, {{wanted.list, wanted.serial + 1}});
        if (page.records.empty() || page.records.front().fields.serial != wanted.serial) {
            throw Failure(kExitRefused, "record " + list_ + " " + serial_,
                          "there is no such record, or it had to make room",
                          "See aaactl record list --list " + list_);
        }
        for (const std::string& line : RecordBlock(page.records.front())) {
            context.output.Line(line);
        }
        context.output.Result(RecordToJson(page.records.front()));
    }

  private:
    std::string list_;
    std::string serial_;
};

class Count : public Command {
  public:
    Count() : Command({"record", "count"}, "Count user records") {}
    void Define(CLI::App& app) override { filter_.Define(app); }
    void Run(Context& context) override {
        const RecordFilter filter = filter_.Filter(Now());
        const bool searches = filter.HasConditions() || filter.since || filter.until;
        Json counts = Json::object();
        uint64_t sum = 0;
        for (const RecordList& list : kRecordLists) {
            if (filter.list != 0 && filter.list != list.kind) continue;
            RecordFilter one = filter;
            one.list = static_cast<uint16_t>(list.kind);
            const uint64_t count =
                searches ? Search(context, one) : CountRecords(context.client, one.list);
            counts[list.word] = count;
            sum += count;
            context.output.Line(std::string(list.word) + "  " + std::to_string(count));
        }
        if (filter.list == 0) context.output.Line("all  " + std::to_string(sum));
        context.output.Result({{"lists", counts}, {"all", sum}});
    }

  private:
    /// The daemon counts; nothing but sums travels.
    static uint64_t Search(Context& context, const RecordFilter& filter) {
        const size_t total = RecordsToSearch(context, filter);
        uint64_t sum = 0;
        const auto progress = [&](uint64_t looked) { ShowProgress(context.output, looked, total); };
        for (const TopEntry& entry : ReadTop(context.client, filter, TopBy::kReason, progress)) {
            sum += entry.count;
        }
        context.output.ClearProgress();
        return sum;
    }

    RecordFilterOptions filter_;
};

class Reset : public Command {
  public:
    Reset() : Command({"record", "reset"}, "Delete the user records of a list or of all lists") {}
    void Define(CLI::App& app) override {
        app.add_option("list", list_, "online-fail, abnormal, normal or all")
            ->required()
            ->check(CLI::IsMember(RecordListWords(true)));
    }
    void Run(Context& context) override {
        const uint16_t wanted = ParseRecordList(list_);
        Json counts = Json::object();
        for (const RecordList& list : kRecordLists) {
            if (wanted != 0 && wanted != list.kind) continue;
            const uint32_t count = ResetRecords(context.client, static_cast<uint16_t>(list.kind));
            counts[list.word] = count;
            context.output.Line(std::string(list.word) + ": " +
                                CountText(count, "record is", "records are") + " deleted");
        }
        context.output.Result({{"deleted", counts}});
    }

  private:
    std::string list_;
};

}  // namespace record_list_commands

void AddRecordListCommands(Commands& commands) {
    using namespace record_list_commands;
    commands.push_back(std::make_unique<List>());
    commands.push_back(std::make_unique<Show>());
    commands.push_back(std::make_unique<Count>());
    commands.push_back(std::make_unique<Reset>());
}

}  // namespace aaactl
