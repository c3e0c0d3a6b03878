// libFuzzer's entry: each input is a hostile session.
#include <cstdio>
#include <cstdlib>

#include "fuzz/hostilehost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string wrong = keld2::fuzz::hostilesession({data, size});
    if (wrong.empty()) return 0;
    std::fprintf(stderr, "%s\n", wrong.c_str());
    std::abort();
}
