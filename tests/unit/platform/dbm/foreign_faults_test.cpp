/* Faults outside the database's own reads go where they went before the first database was opened.
 * The handlers are set once a process, so each test is the program anew. */
#include "database_test.h"

namespace {

class ForeignFaults : public DatabaseTest {
  protected:
    /* set() comes before the first database is opened, then the signal. */
    template <class Set>
    void ExpectAfterOpening(int signal, const testing::ExitedWithCode& end, Set set) {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        EXPECT_EXIT(
            {
                set();
                if (DBM_Close(Create()) != 0) _exit(1);
                raise(signal);
                _exit(2);
            },
            end, "");
    }
};

TEST_F(ForeignFaults, GoToAPlainHandler) {
    for (const int number : {SIGBUS, SIGSEGV}) {
        ExpectAfterOpening(number, testing::ExitedWithCode(40 + number),
                           [=] { signal(number, [](int got) { _exit(40 + got); }); });
    }
}

TEST_F(ForeignFaults, GoToAHandlerThatAsksForMore) {
    ExpectAfterOpening(SIGBUS, testing::ExitedWithCode(43), [] {
        struct sigaction action {};
        action.sa_flags = SA_SIGINFO;
        action.sa_sigaction = [](int, siginfo_t* info, void*) {
            _exit(info->si_pid == getpid() ? 43 : 44);
        };
        sigaction(SIGBUS, &action, nullptr);
    });
}

TEST_F(ForeignFaults, StayIgnoredWhenSomebodySentThem) {
    ExpectAfterOpening(SIGBUS, testing::ExitedWithCode(2), [] { signal(SIGBUS, SIG_IGN); });
}

}  // namespace
