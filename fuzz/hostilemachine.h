// The machine and the programmer of a hostile session, both ruled by the fuzzer's bytes.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "external/devcore.h"
#include "external/usbtransport.h"
#include "fuzz/bytesource.h"
#include "platform/posix/posixstrings.h"
#include "platform/timerlist.h"
#include "shared/sharedvariables.h"

namespace keld2::fuzz {

// Blocks that are heap allocations of their exact size.
class HeapMemory final : public NamedMemory {
  public:
    MemoryHandle open(const std::string& name) override;
    MemoryHandle create(const std::string& name, std::int32_t size) override;
    std::span<std::byte> mapview(MemoryHandle handle) override;
    bool unmapview(std::span<std::byte>) override { return true; }
    void close(MemoryHandle handle) override { handles_.erase(handle); }

  private:
    struct Block {
        std::unique_ptr<std::byte[]> bytes;
        std::size_t size;
    };
    std::map<std::string, std::weak_ptr<Block>> names_;
    std::map<MemoryHandle, std::shared_ptr<Block>> handles_;
    MemoryHandle last_ = 0;
};

class HostileMachine final : public Platform {
  public:
    HostileMachine(ByteSource& source, std::vector<std::uint8_t> svftext)
        : source_(source), svftext_(std::move(svftext)) {}

    NamedMemory& memory() override { return memory_; }
    SharedStrings& strings() override { return strings_; }
    void service() override;
    void wake() override {}
    TimerId settimer(std::int32_t milliseconds, std::function<void()> handler) override {
        return timers_.add(now_, milliseconds, std::move(handler));
    }
    void killtimer(TimerId id) override { timers_.remove(id); }
    BoxAnswer messagebox(const Box& box) override;
    void showform(Form& form) override;
    void window(std::string_view, const WindowChange&) override {}
    FileContent readfile(std::span<const std::u16string> parts) override;
    double secondssincemidnight() override { return static_cast<double>(now_) / 1000; }

    // Who works a form; without one the fuzzer's bytes do.
    std::function<void(Form&)> onform;
    // What the host does in its own part of the message loop: a stop, a write to a signalling cell.
    std::function<void()> onservice;
    bool endless() const { return services_ > mostservices; }

  private:
    static constexpr int mostservices = 30000;

    ByteSource& source_;
    std::vector<std::uint8_t> svftext_;
    HeapMemory memory_;
    PosixStrings strings_;
    TimerList timers_;
    std::int64_t now_ = 0;  // ms
    int services_ = 0;
    int boxes_ = 0;
};

// Power and the count of calls, as both halves of the programmer see them.
struct ProgrammerState {
    bool powered = false;
    std::int64_t calls = 0;
};

std::unique_ptr<DevCore> hostiledevcore(ByteSource& source, ProgrammerState& state,
                                        SharedVariables& s);
std::unique_ptr<UsbTransport> hostiletransport(ByteSource& source, SharedVariables& s);

}  // namespace keld2::fuzz
