// LocalMachine: named memory, shared strings and files for one session within this process.
//
// Nothing is shared with other processes, so that any number of sessions runs side by side and
// none leaves anything behind. It has no message loop of its own: a platform stands before it.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "platform/platform.h"

namespace keld2::host {

class LocalMemory final : public NamedMemory {
  public:
    MemoryHandle open(const std::string& name) override;
    MemoryHandle create(const std::string& name, std::int32_t size) override;
    std::span<std::byte> mapview(MemoryHandle handle) override;
    bool unmapview(std::span<std::byte> view) override;
    void close(MemoryHandle handle) override;

  private:
    struct Block {
        std::string name;
        std::vector<std::byte> bytes;
    };
    std::map<MemoryHandle, std::shared_ptr<Block>> handles_;
    std::map<std::string, std::weak_ptr<Block>> names_;
    MemoryHandle last_ = 0;
};

class LocalStrings final : public SharedStrings {
  public:
    StringHandle allocate(std::u16string_view text) override;
    std::u16string text(StringHandle handle) const override;
    void free(StringHandle handle) override;

  private:
    std::map<StringHandle, std::u16string> texts_;
    StringHandle last_ = 0;
};

class LocalMachine final : public Platform {
  public:
    explicit LocalMachine(std::filesystem::path folder) : folder_(std::move(folder)) {}

    NamedMemory& memory() override { return memory_; }
    SharedStrings& strings() override { return strings_; }
    void service() override {}
    void wake() override {}
    TimerId settimer(std::int32_t, std::function<void()>) override { return 0; }
    void killtimer(TimerId) override {}
    BoxAnswer messagebox(const Box&) override { return BoxAnswer::ok; }
    void showform(Form&) override {}
    void window(std::string_view, const WindowChange&) override {}
    FileContent readfile(std::span<const std::u16string> parts) override;
    double secondssincemidnight() override { return 0; }

  private:
    std::filesystem::path folder_;
    LocalMemory memory_;
    LocalStrings strings_;
};

}  // namespace keld2::host
