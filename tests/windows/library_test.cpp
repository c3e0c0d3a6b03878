// The library as the system loads it.
#include <gtest/gtest.h>

#include "windows/client.h"
//
#include <psapi.h>

namespace keld2::test {
namespace {

bool loaded() { return GetModuleHandleW(L"tq5keld2.dll") != nullptr; }

struct Held {
    DWORD handles = 0;
    SIZE_T bytes = 0;
};

Held held() {
    Held now;
    GetProcessHandleCount(GetCurrentProcess(), &now.handles);
    PROCESS_MEMORY_COUNTERS_EX counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                         sizeof counters);
    now.bytes = counters.PrivateUsage;
    return now;
}

// Creates an object with its blocks, and lets all of it go.
void useonce() {
    Client client;
    client.begin();
    EXPECT_TRUE(loaded());
    client->freesharebufferkeld2();
}

TEST(Library, LoadingAHundredTimesLeavesNothing) {
    constexpr std::size_t most = 256 * 1024;  // bytes of the system's own growing
    for (int i = 0; i < 10; ++i) useonce();
    const Held before = held();
    for (int i = 0; i < 100; ++i) {
        useonce();
        ASSERT_FALSE(loaded()) << "the library stays after round " << i;
    }
    EXPECT_LE(held().handles, before.handles + 2);
    EXPECT_LE(held().bytes, before.bytes + most);
}

TEST(Library, WrongArgumentsAreErrorsAndNoCrash) {
    Client client;
    EXPECT_TRUE(FAILED(client->bufcomkeld2(nullptr)));
    EXPECT_TRUE(FAILED(client->keld2warn(nullptr)));
    EXPECT_TRUE(FAILED(client->runKeld2Prg(nullptr)));
}

}  // namespace
}  // namespace keld2::test
