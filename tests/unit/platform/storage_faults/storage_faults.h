/* Refuses one call that the database makes: of the storage engine, of the system, for memory. The
 * linker turns those calls here (CMakeLists.txt has the list). */
#ifndef TESTS_PLATFORM_STORAGE_FAULTS_H
#define TESTS_PLATFORM_STORAGE_FAULTS_H

namespace storage_faults {

/* While one lives, calls are counted and the given one fails; 0 lets all pass. */
class Window {
  public:
    Window(int failing_call, int error);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    /* Calls made so far. */
    static int Calls();
};

/* The function that the failing call called; for messages. */
const char* Refused();

}  // namespace storage_faults

#endif
