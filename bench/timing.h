// Nanoseconds an operation takes: measured over a stretch of time, by one thread or by many
// clients.
#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>
#include <exception>
#include <latch>
#include <thread>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Processor time of this thread: what others do on the machine meanwhile counts less.
struct ThreadClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<ThreadClock>;
    static constexpr bool is_steady = true;
    static time_point now() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return time_point(std::chrono::seconds(time.tv_sec) +
                          std::chrono::nanoseconds(time.tv_nsec));
    }
};

/// Repeats op(n) with n = 0, 1, 2 ... for that long. The clock is read once a growing batch, so
/// that reading it does not count beside operations of some nanoseconds.
template <typename TheClock, typename Operation>
double TimeLoop(double seconds, Operation&& op) {
    uint64_t done = 0;
    uint64_t batch = 1;
    double elapsed = 0;
    const auto start = TheClock::now();
    while (elapsed < seconds) {
        for (const uint64_t end = done + batch; done < end; ++done) op(done);
        elapsed = std::chrono::duration<double>(TheClock::now() - start).count();
        if (elapsed < seconds / 20) batch *= 2;
    }
    return elapsed * 1e9 / static_cast<double>(done);
}

/// Repeats op(client, n) in one thread a client for that long; wall time over the operations of all
/// clients together.
template <typename Operation>
double TimeClients(int clients, double seconds, Operation&& op) {
    std::vector<uint64_t> done(static_cast<size_t>(clients));
    std::vector<std::exception_ptr> failures(static_cast<size_t>(clients));
    std::vector<std::thread> threads;
    std::latch all_ready(clients + 1);
    Clock::time_point start;
    for (int client = 0; client < clients; ++client) {
        threads.emplace_back([&, client] {
            uint64_t count = 0;
            all_ready.arrive_and_wait();
            const auto begin = Clock::now();
            try {
                do {
                    op(client, count);
                    ++count;
                } while (SecondsSince(begin) < seconds);
            } catch (...) {
                failures[static_cast<size_t>(client)] = std::current_exception();
            }
            done[static_cast<size_t>(client)] = count;
        });
    }
    all_ready.arrive_and_wait();
    start = Clock::now();
    for (std::thread& thread : threads) thread.join();
    const double elapsed = SecondsSince(start);
    uint64_t total = 0;
    for (size_t i = 0; i < done.size(); ++i) {
        if (failures[i]) std::rethrow_exception(failures[i]);
        total += done[i];
    }
    return elapsed * 1e9 / static_cast<double>(total);
}

}  // namespace bench
