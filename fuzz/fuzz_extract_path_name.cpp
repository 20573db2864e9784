// ExtractPathName on any path, with long user and variable names.
#include <vyxfileutils.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static bool prepared = [] {
        setenv("HOME", "/home/fuzz", 1);
        setenv("FUZZVAR", std::string(5000, 'v').c_str(), 1);
        freopen("/dev/null", "w", stderr);  // the messages are expected
        return true;
    }();
    (void)prepared;
    std::string path(reinterpret_cast<const char*>(data), size);
    ExtractPathName(path.c_str());
    return 0;
}
