// The configuration thread: waits for requests, serves them in batches, ends on a signal.
#pragma once

#include <platform/dbm.h>

#include "administrators.h"
#include "options.h"
#include "record_store.h"
#include "roles.h"
#include "working_thread.h"

namespace aaad {

struct Surroundings {
    const Options& options;
    DBM_HANDLE handle;
    Administrators& administrators;
    WorkingThread& working;
    RecordStore& records;
    ConfigurationMail& mail;
};

/// Body of the thread. Ends on SIGTERM, SIGINT or SIGHUP, which every thread of the process must
/// have blocked, after answering what has been asked. Returns the exit code of the process.
int RunConfigurationThread(const Surroundings& surroundings);

}  // namespace aaad
