// The command line in this process, and a daemon that answers whatever it is told.
#pragma once

#include <string>

#include "input.h"

namespace fuzz {

/// How an answer is given, bits of the byte in front of it.
enum AnswerWay : unsigned char {
    kAnswerData = 1,    // as the reply of a read, else as a result
    kAnswerRepeat = 2,  // to every request from here on
    kAnswerAsItIs = 4,  // the message is the whole reply
    kAnswerReal = 8  // of the first byte: a daemon with an empty configuration answers everything
};

/// Runs aaactl with the words of `line`, which blanks separate (a tab is a blank inside a word).
/// The file "document" holds `document`. Each of its requests gets the next answer of `answers`: a
/// byte (AnswerWay) and a message; behind the last one connections are closed. Returns the exit
/// code.
int RunCommand(const std::string& line, Bytes document, Bytes answers);

}  // namespace fuzz
