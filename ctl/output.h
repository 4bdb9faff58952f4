// One answer, shown as text for people or as one JSON object for programs.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "failure.h"

namespace aaactl {

using Json = nlohmann::ordered_json;

class Output {
  public:
    void UseJson(bool json) { json_ = json; }
    bool IsJson() const { return json_; }

    /// A line for people; programs do not see it. Lines of `text` are kept, other control
    /// characters are not.
    void Line(const std::string& text);
    /// The answer for programs: {"ok": true, "result": ...}. Print once, at the end.
    void Result(const Json& result);
    /// Both forms of a failure: text on standard error, or {"ok": false, "error": ...}.
    void Error(const Failure& failure);
    /// Progress of long work: on standard error when it is a terminal.
    void Progress(const std::string& what, size_t done, size_t total);
    /// Takes the progress away before other lines are shown.
    void ClearProgress();
    /// Throws when standard output did not take everything, e.g. because its disk is full.
    static void Finish();

  private:
    bool json_ = false;
    bool progress_shown_ = false;
};

}  // namespace aaactl
