// put-old-policy DIRECTORY POLICY [FILE]
//
// Stores an accounting policy in the form of former releases in the saved configuration below
// DIRECTORY, the daemon's directory of durable databases: with FILE ("-" is the standard input) its
// bytes as they are, sound or not, else a sound sample policy. The daemon reads the former form
// when it starts, so use it while the daemon is stopped.
#include <platform/dbm.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "golden/sample_policy.h"

namespace {

bool ReadAll(const std::string& path, std::string& bytes) {
    std::ifstream file;
    if (path != "-") file.open(path, std::ios::binary);
    std::istream& input = path == "-" ? std::cin : file;
    if (!input) return false;
    bytes.assign(std::istreambuf_iterator<char>(input), {});
    return true;
}

int Fail(const std::string& reason) {
    std::cerr << "put-old-policy: " << reason << '\n';
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) {
        std::cerr << "usage: put-old-policy DIRECTORY POLICY [FILE]\n";
        return 2;
    }
    const std::string name = argv[2];
    std::string block = golden::OldBlock(golden::SamplePolicy(name.c_str()));
    if (argc == 4 && !ReadAll(argv[3], block)) return Fail(std::string("cannot read ") + argv[3]);

    if (DBM_SetRoot(argv[1], argv[1]) != 0) return Fail("unusable directory");
    const DBM_OPEN_ATTR durable{0, 1, 0, DOM_DB_VERSION_TEXT};
    DBM_HANDLE handle = DBM_INVALID_HANDLE;
    if (DBM_Open(DOM_DB_DATABASE, DOM_DB_TABLE, DBM_MODE_CREATE, &durable, &handle) != 0)
        return Fail("cannot open the saved configuration");
    const bool stored = golden::PutOldBlock(handle, name, block);
    DBM_Close(handle);
    return stored ? 0 : Fail("cannot store the policy");
}
