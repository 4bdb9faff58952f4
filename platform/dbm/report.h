/* What the database says in the system log: one line that names the path, the reason, the way out.
 */
#ifndef PLATFORM_DBM_REPORT_H
#define PLATFORM_DBM_REPORT_H

#include <string>

namespace aaadom::dbm {

/* Where log lines go instead of the system log; tests listen here. Null restores the system log. */
using ReportSink = void (*)(const char* line);
void SetReportSink(ReportSink sink) noexcept;

/* Result of the file checks and of guarded calls; outside the ranges of errno and of LMDB. */
constexpr int kDamagedFile = -40000;
/* No directory names the open file any more: what is written there would be gone at the end. */
constexpr int kRemovedFile = -40001;

/* Writes one error line: "<path>: <action> failed: <reason>; <way out>". */
void ReportFailure(const std::string& path, const char* action, int code) noexcept;

/* Writes one informational line: the database is in neither root. */
void ReportAbsent(const std::string& first, const std::string& second) noexcept;

}  // namespace aaadom::dbm

#endif
