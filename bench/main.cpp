// Runs every benchmark in interleaved repetitions and prints medians as ratios to the peers.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

class Collector : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            if (run.error_occurred) failed_ = true;
            times_[run.run_name.str()].push_back(run.GetAdjustedRealTime());
        }
    }
    bool Failed() const { return failed_; }
    const std::vector<double>& Times(const std::string& name) { return times_[name]; }

  private:
    bool failed_ = false;
    std::map<std::string, std::vector<double>> times_;
};

struct Comparison {
    const char* what;
    const char* ours;
    const char* peer;
    const char* goal;
};

constexpr Comparison kComparisons[] = {
    {"find by name, against a scan", "FindByName", "ScanInSlotOrder", "at least 50 times faster"},
    {"encode a domain, against protobuf", "EncodeDomain", "EncodeProtobuf",
     "at least 5 times faster"},
    {"decode a domain, against protobuf", "DecodeDomain", "DecodeProtobuf",
     "at least 4 times faster"},
    {"GET, 1 client, against an echo", "GetDomain/real_time/threads:1",
     "EchoDomain/real_time/threads:1", "at least 0.91 times as fast"},
    {"GET, 16 clients, against an echo", "GetDomain/real_time/threads:16",
     "EchoDomain/real_time/threads:16", "at least 0.83 times as fast"},
    {"durable SET, 1 client, against a raw put", "SetDurable/real_time/threads:1",
     "PutRaw/real_time/threads:1", "at least 0.7 times as fast"},
    {"durable SET, 16 clients, against raw puts", "SetDurable/real_time/threads:16",
     "PutRaw/real_time/threads:16", "at least 2.8 times as fast"},
    {"walk of 256 domains, against one of 1024", "WalkQuarterTable/real_time",
     "WalkFullTable/real_time", "at most 4.6 times the cost"},
    {"user records one by one, against raw puts", "InsertRecords/1/iterations:1/real_time",
     "InsertRaw/1/iterations:1/real_time", "at least 0.85 times as fast"},
    {"user records by hundreds, against raw puts", "InsertRecords/100/iterations:1/real_time",
     "InsertRaw/100/iterations:1/real_time", "at least 0.85 times as fast"},
    {"page of a long list, against a short one", "PageOfLongList/iterations:2000/real_time",
     "PageOfShortList/iterations:2000/real_time", "at least 0.2 times as fast"},
    {"page of a million records, against 1000", "PageOfMany/real_time", "PageOfFew/real_time",
     "at least 0.2 times as fast"},
};

double Median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    printf("\n%-44s %12s %12s %8s  (spread)   goal\n", "", "ours", "peer", "times");
    for (const Comparison& row : kComparisons) {
        const auto& ours = collector.Times(row.ours);
        const auto& peer = collector.Times(row.peer);
        if (ours.empty() || ours.size() != peer.size()) continue;
        std::vector<double> ratios;
        for (size_t i = 0; i < ours.size(); ++i) ratios.push_back(peer[i] / ours[i]);
        const auto [low, high] = std::minmax_element(ratios.begin(), ratios.end());
        printf("%-44s %9.0f ns %9.0f ns %8.2f  (%.2f to %.2f)  %s\n", row.what, Median(ours),
               Median(peer), Median(ratios), *low, *high, row.goal);
    }
    return collector.Failed() ? 1 : 0;
}
