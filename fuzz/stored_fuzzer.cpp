// Stored values of every key, read back by the getters and by a start of the daemon.
//
// Input: for each value the number of its key, how it is put, and the value.
#include "read_back.h"
#include "stored_values.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Stage stage(Stage::Tables::kNone);
    Input input(data, size);
    for (int values = 0; !input.Empty() && values < 32; ++values) PutStoredValue(stage, input);
    ReadDatabases(stage);
    StartFromDatabase(stage);
    return 0;
}
