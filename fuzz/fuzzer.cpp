// libFuzzer's entry for the target that KELD2_FUZZ_TARGET names.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "fuzz/hostilehost.h"
#include "fuzz/texts.h"

namespace {

std::string wrong(std::span<const std::uint8_t> bytes) {
    using namespace keld2::fuzz;
    constexpr std::string_view name = KELD2_FUZZ_TARGET;
    if (name == "hostile") return hostilesession(bytes);
    const auto target = std::ranges::find(targets(), name, &Target::name);
    return wrongwith(*target, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string said = wrong({data, size});
    if (said.empty()) return 0;
    std::fprintf(stderr, "%s\n", said.c_str());
    std::abort();
}
