// Texts that cannot be read: a platform whose text call refuses what ours takes.
#pragma once

#include <cstdint>

namespace fake {

struct TextReads {
    uint16_t type;
    uint32_t result;
};
/// What reading a TLV of a type gives; no text call fails while the result is 0.
extern TextReads failing_text_reads;

/// Reading the texts of a type gives `result` and no text while it lives.
class FailTextReads {
  public:
    FailTextReads(uint16_t type, uint32_t result) { failing_text_reads = {type, result}; }
    ~FailTextReads() { failing_text_reads = {0, 0}; }
    FailTextReads(const FailTextReads&) = delete;
    FailTextReads& operator=(const FailTextReads&) = delete;
};

}  // namespace fake
