// MakeNewNumberedPath with names and extensions from the input, in a
// private directory that holds a few taken names.
#include <vyxfileutils.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static std::string dir = [] {
        char templ[] = "/tmp/vyxcore-fuzz-XXXXXX";
        std::string made = mkdtemp(templ);
        for (const char* taken : {"/a", "/a0", "/a1.x", "/a (2)"})
            fclose(fopen((made + taken).c_str(), "w"));
        return made;
    }();
    if (size < 3)
        return 0;
    size_t split = data[0] % (size - 1) + 1;
    std::string name(reinterpret_cast<const char*>(data + 1), split - 1);
    std::string ext(reinterpret_cast<const char*>(data + split), size - split);
    bool space = data[1] & 1, parens = data[1] & 2;
    int first = static_cast<int8_t>(data[2]);
    auto result = MakeNewNumberedPath(dir.c_str(), name.c_str(), ext.c_str(), space, parens, first, first + 5,
                                      Vyx::tagged_bool<DeleteAndReuseIfNotBusy_tag>(false));
    if (result.second != -1 && result.first.compare(0, dir.size(), dir) != 0)
        abort();
    return 0;
}
