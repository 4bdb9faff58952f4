// The window of calls in which a program whose calls the linker turns to the test refuses one.
#ifndef TESTS_PLATFORM_FAULT_WINDOW_H
#define TESTS_PLATFORM_FAULT_WINDOW_H

#include <string.h>

namespace fault_window {

/* Of one thread. */
struct State {
    bool open = false;
    int calls = 0;
    int failing = 0;
    int error = 0;
    const char* only = nullptr;
    const char* refused = "";
};
inline constinit thread_local State t_state;

/* While one lives, the calls of this thread are counted and the given one fails with the error;
 * 0 lets all pass. With a name only calls of that function count. */
class Window {
  public:
    Window(int failing_call, int error, const char* only = nullptr) {
        t_state = {true, 0, failing_call, error, only, ""};
    }
    ~Window() { t_state.open = false; }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    /* Calls made so far. */
    static int Calls() { return t_state.calls; }
};

/* The function that the failing call called; for messages. */
inline const char* Refused() {
    return t_state.refused;
}

/* For the functions that stand in for the real ones: this call is to be refused. */
inline bool Fails(const char* function) {
    State& state = t_state;
    if (!state.open || (state.only != nullptr && strcmp(state.only, function) != 0)) return false;
    if (++state.calls != state.failing) return false;
    state.refused = function;
    return true;
}
inline int Error() {
    return t_state.error;
}

}  // namespace fault_window

#endif
