// Finding a domain by name among 1024, table lock included, against a scan in slot order.
#include <benchmark/benchmark.h>
#include <strings.h>

#include <vector>

#include "stage.h"

namespace bench {
namespace {

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (int n = 0; n < kDomains; ++n) names.push_back(NameOf((n * 389) % kDomains));
    return names;
}

void FindByName(benchmark::State& state) {
    FillTable();
    const auto names = Names();
    size_t next = 0;
    for (auto _ : state) {
        DOM_DomainInfoTableLock();
        benchmark::DoNotOptimize(DOM_FindDomainByName(names[next++ % kDomains].c_str()));
        DOM_DomainInfoTableUnlock();
    }
}
BENCHMARK(FindByName);

void ScanInSlotOrder(benchmark::State& state) {
    FillTable();
    const auto names = Names();
    std::vector<DomainInfo*> slots;
    for (DomainInfo* domain = DOM_GetFirstDomain(); domain != nullptr;
         domain = DOM_GetNextDomain(domain->name)) {
        slots.push_back(domain);
    }
    size_t next = 0;
    for (auto _ : state) {
        DOM_DomainInfoTableLock();
        const char* name = names[next++ % kDomains].c_str();
        DomainInfo* found = nullptr;
        for (DomainInfo* domain : slots) {
            if (strcasecmp(domain->name, name) == 0) {
                found = domain;
                break;
            }
        }
        benchmark::DoNotOptimize(found);
        DOM_DomainInfoTableUnlock();
    }
}
BENCHMARK(ScanInSlotOrder);

}  // namespace
}  // namespace bench
