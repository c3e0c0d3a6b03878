#include "platform/posix/posixmemory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

namespace keld2 {
namespace {

std::string scope(const std::string& kind = {}) {
    return "keld2-test-" + std::to_string(getpid()) + kind + "-";
}

bool exists(const std::string& scope, const std::string& name) {
    return std::filesystem::exists("/dev/shm/" + scope + name);
}

TEST(PosixMemory, VanishesWithItsLastUser) {
    PosixMemory memory(scope());
    const MemoryHandle made = memory.create("block", 400);
    const MemoryHandle opened = memory.open("block");
    ASSERT_NE(made, 0);
    ASSERT_NE(opened, 0);
    memory.close(made);
    EXPECT_TRUE(exists(scope(), "block"));
    memory.close(opened);
    EXPECT_FALSE(exists(scope(), "block"));
    EXPECT_EQ(memory.open("block"), 0);
}

TEST(PosixMemory, GivesEveryUserTheSameBytes) {
    PosixMemory host(scope());
    PosixMemory plugin(scope());
    const MemoryHandle first = host.create("block", 100);
    const MemoryHandle second = plugin.create("block", 65600);  // the one made first wins
    auto one = host.mapview(first);
    auto other = plugin.mapview(second);
    EXPECT_EQ(one.size(), other.size());
    one[99] = std::byte{42};
    EXPECT_EQ(other[99], std::byte{42});
    EXPECT_TRUE(host.unmapview(one));
    EXPECT_TRUE(plugin.unmapview(other));
}

TEST(PosixMemory, TellsNamesAndScopesApart) {
    PosixMemory memory(scope());
    PosixMemory elsewhere(scope("b"));
    ASSERT_NE(memory.create("queltaibuf10", 400), 0);
    EXPECT_EQ(memory.open("queltaIbuf10"), 0);
    EXPECT_EQ(elsewhere.open("queltaibuf10"), 0);
}

TEST(PosixMemory, RefusesSizesThatMakeNoBlock) {
    PosixMemory memory(scope());
    EXPECT_EQ(memory.create("block", 0), 0);
    EXPECT_EQ(memory.create("block", -2200), 0);
}

TEST(PosixMemory, AnswersNoneWhereSomethingElseHasTheName) {
    namespace fs = std::filesystem;
    const std::string at = "/dev/shm/" + scope("taken");
    fs::create_directory(at + "folder");
    fs::create_symlink("nowhere", at + "link");
    PosixMemory memory(scope("taken"));
    for (const char* name : {"folder", "link", "no/name"}) {
        EXPECT_EQ(memory.open(name), 0) << name;
        EXPECT_EQ(memory.create(name, 400), 0) << name;
    }
    EXPECT_EQ(removeleftovers(scope("taken")), 0);
    fs::remove(at + "folder");
    fs::remove(at + "link");
}

TEST(PosixMemory, AnswersNoneForHandlesThatAreNotItsOwn) {
    PosixMemory memory(scope());
    const MemoryHandle handle = memory.create("block", 400);
    memory.close(handle);
    EXPECT_TRUE(memory.mapview(handle).empty());
    EXPECT_TRUE(memory.mapview(0).empty());
    EXPECT_FALSE(memory.unmapview({}));
    memory.close(handle);
}

// What a child process answers with its exit status.
template <typename Work>
int inchild(Work work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int ended = 0;
    waitpid(child, &ended, 0);
    return WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
}

TEST(PosixMemory, RefusesWhatTheMachineCannotBack) {
    const std::string own = scope("limit");
    const auto beyondlimit = [&own] {
        const rlimit most{.rlim_cur = 65536, .rlim_max = 65536};
        signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &most);
        PosixMemory memory(own);
        return memory.create("block", 131072) == 0 && memory.create("small", 400) != 0 ? 0 : 1;
    };
    EXPECT_EQ(inchild(beyondlimit), 0);
    EXPECT_EQ(removeleftovers(own), 0);  // not even a beginning of it is left
}

TEST(PosixMemory, BacksTheBlocksOfOthersBeforeTheyAreTouched) {
    const std::string object = scope() + "sparse";
    const int other = shm_open(("/" + object).c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(ftruncate(other, 65600), 0);
    ASSERT_EQ(flock(other, LOCK_SH), 0);
    PosixMemory memory(scope());
    const auto view = memory.mapview(memory.open("sparse"));
    EXPECT_GE(view.size(), 65600u);
    struct stat found {};
    ASSERT_EQ(fstat(other, &found), 0);
    EXPECT_GE(found.st_blocks * 512, 65600);
    EXPECT_EQ(found.st_size, 65600);
    memory.unmapview(view);
    close(other);
}

// A child makes blocks and is killed; what it leaves counts as not existing.
void leaveblocks(const std::string& scope) {
    const pid_t child = fork();
    if (child == 0) {
        PosixMemory memory(scope);
        memory.create("one", 400);
        memory.create("two", 400);
        raise(SIGKILL);
    }
    int ended = 0;
    waitpid(child, &ended, 0);
}

TEST(PosixMemory, DropsWhatADeadProcessLeft) {
    leaveblocks(scope("dead"));
    ASSERT_TRUE(exists(scope("dead"), "one"));
    PosixMemory memory(scope("dead"));
    EXPECT_EQ(memory.open("one"), 0);
    EXPECT_FALSE(exists(scope("dead"), "one"));
    const MemoryHandle fresh = memory.create("two", 400);
    ASSERT_NE(fresh, 0);
    const auto view = memory.mapview(fresh);
    EXPECT_EQ(view[0], std::byte{0});
    memory.unmapview(view);
}

TEST(PosixMemory, RemovesLeftOversButNothingThatIsUsed) {
    leaveblocks(scope("sweep"));
    PosixMemory memory(scope("sweep"));
    ASSERT_NE(memory.create("used", 400), 0);
    EXPECT_EQ(removeleftovers(""), 0);
    EXPECT_TRUE(exists(scope("sweep"), "one"));
    EXPECT_EQ(removeleftovers(scope("sweep")), 2);
    EXPECT_TRUE(exists(scope("sweep"), "used"));
}

TEST(PosixMemory, SurvivesManyUsersAndASweepAtOnce) {
    std::vector<std::thread> users;
    std::atomic<int> failures = 0;
    std::atomic<bool> ended = false;
    std::thread sweeper([&ended] {
        while (!ended) removeleftovers(scope("race"));
    });
    for (int t = 0; t < 4; ++t)
        users.emplace_back([&failures] {
            for (int i = 0; i < 300; ++i) {
                PosixMemory memory(scope("race"));
                const MemoryHandle handle = memory.create("block", 400);
                const auto view = handle != 0 ? memory.mapview(handle) : std::span<std::byte>{};
                if (view.size() < 400) ++failures;
                if (!view.empty()) memory.unmapview(view);
            }
        });
    for (std::thread& user : users) user.join();
    ended = true;
    sweeper.join();
    EXPECT_EQ(failures, 0);
    EXPECT_FALSE(exists(scope("race"), "block"));
}

}  // namespace
}  // namespace keld2
