// The command line: its words, a document to import, answers of a daemon.
//
// Input: the words to the end of the line; the document to the first NUL; the answers.
#include <algorithm>

#include "command_line.h"
#include "promise.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Bytes bytes(data, size);
    const auto line_end = std::find(bytes.begin(), bytes.end(), '\n');
    const auto after_line = line_end == bytes.end() ? line_end : line_end + 1;
    const auto document_end = std::find(after_line, bytes.end(), '\0');
    const auto after_document = document_end == bytes.end() ? document_end : document_end + 1;
    const int code =
        RunCommand(std::string(bytes.begin(), line_end), Bytes(after_line, document_end),
                   Bytes(after_document, bytes.end()));
    FUZZ_PROMISE(code >= 0 && code <= 3);
    return 0;
}
