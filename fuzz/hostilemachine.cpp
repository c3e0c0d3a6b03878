#include "fuzz/hostilemachine.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/fault.h"
#include "platform/form.h"
#include "shared/datacheck.h"

namespace keld2::fuzz {

MemoryHandle HeapMemory::open(const std::string& name) {
    const auto found = names_.find(name);
    const std::shared_ptr<Block> block = found != names_.end() ? found->second.lock() : nullptr;
    if (block == nullptr) return 0;
    handles_[++last_] = block;
    return last_;
}

MemoryHandle HeapMemory::create(const std::string& name, std::int32_t size) {
    if (size <= 0 || size > 4'000'000) return 0;
    const auto block = std::make_shared<Block>();
    block->size = static_cast<std::size_t>(size);
    block->bytes = std::make_unique<std::byte[]>(block->size);
    names_[name] = block;
    handles_[++last_] = block;
    return last_;
}

std::span<std::byte> HeapMemory::mapview(MemoryHandle handle) {
    const Block& block = *handles_.at(handle);
    return {block.bytes.get(), block.size};
}

void HostileMachine::service() {
    if (++services_ > mostservices) throw RunFault("the session's patience is at its end");
    ++now_;
    if (onservice) onservice();
    timers_.run(now_);
}

BoxAnswer HostileMachine::messagebox(const Box& box) {
    if (box.buttons == BoxButtons::ok) return BoxAnswer::ok;
    if (box.buttons == BoxButtons::okcancel)
        return source_.chance(50) ? BoxAnswer::ok : BoxAnswer::cancel;
    if (++boxes_ > 5) return BoxAnswer::abort;
    return source_.pick(std::array{BoxAnswer::abort, BoxAnswer::retry, BoxAnswer::ignore});
}

// Presses, chooses and clicks whatever there is, the last one a button or the window's frame.
void HostileMachine::showform(Form& form) {
    if (onform) return onform(form);
    for (int i = 0; i < 20 && !form.closed(); ++i) {
        const std::string name = source_.pick(form.controls()).name;
        form.setselection(name, source_.byte(), source_.byte());
        form.keypress(name, source_.byte());
        form.keydown(name, source_.byte());
        form.choose(name, static_cast<int>(source_.byte()) - 2);
        form.click(name);
    }
    if (!form.closed()) form.dismiss();
}

FileContent HostileMachine::readfile(std::span<const std::u16string> parts) {
    if (source_.chance(5)) return {.status = FileContent::Status::missing, .bytes = {}};
    if (parts.back() == u"pldtmp.svf")
        return {.status = FileContent::Status::read, .bytes = svftext_};
    return {.status = FileContent::Status::read,
            .bytes = source_.block(source_.chance(10) ? 140000 : 300)};
}

namespace {

class HostileDevCore final : public DevCore {
  public:
    HostileDevCore(ByteSource& source, ProgrammerState& state, SharedVariables& s)
        : source_(source), state_(state), s_(s) {}

    void setvcc(std::int32_t) override { call(), state_.powered = true; }
    void setvpp(std::int32_t, std::uint8_t) override { call(); }
    void setgndpin(std::uint8_t, std::uint8_t) override { call(); }
    void setvccpin(std::uint8_t, std::uint8_t) override { call(); }
    void setvpppin(std::uint8_t, std::uint8_t) override { call(); }
    void drivercommit() override { call(); }
    void powerdown() override { call(), state_.powered = false; }
    void signalpass(std::uint8_t) override { call(); }
    void signalfail(std::uint8_t) override { call(); }
    int readycheck() override { return rarely(1); }
    void readyfail() override { call(); }
    int modeselect(std::uint8_t) override { return rarely(2); }
    int modeselect2(std::uint8_t, int) override { return rarely(2); }
    int modeselect3(std::uint8_t, int) override { return rarely(2); }
    int armready() override { return rarely(1); }
    void regwrite(std::int32_t, std::uint8_t) override { call(); }
    void qregwrite(std::int32_t, std::uint8_t) override { call(); }
    std::uint8_t regread(std::uint8_t) override { return (call(), source_.byte()); }
    void qregread(std::uint8_t) override { call(); }
    void waitshort(std::int32_t) override { call(); }
    void qwaitshort(std::int32_t) override { call(); }
    void waitlong(std::int32_t) override { call(); }
    void qwaitlong(std::int32_t) override { call(); }
    void qrun() override { call(); }
    void buswrite(std::int32_t, std::uint8_t, std::uint8_t) override { call(); }
    void qbuswrite(std::int32_t, std::uint8_t, std::uint8_t) override { call(); }
    void busconfig(std::int32_t, std::uint8_t, std::uint8_t) override { call(); }
    void qbusconfig(std::int32_t, std::uint8_t, std::uint8_t) override { call(); }
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override {
        call();
        return keld2::checkbyte(s_, value, address, mode);
    }
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int) override {
        call();
        return keld2::checkword(s_, low, high, address, mode);
    }
    bool transferwait(std::uint8_t) override {
        call();
        for (int i = 0; i < 13; ++i) s_.ibuf1[i] = source_.byte();
        if (source_.chance(50) || source_.empty()) s_.ibuf1[0] = 100;
        return !source_.chance(5);
    }
    void loadalgobuf(std::int32_t& length) override {
        call();
        if (source_.chance(20)) length = static_cast<std::int32_t>(source_.number());
    }

  private:
    // A programmer that is asked for ever: the session gives up on it.
    void call() {
        if (++state_.calls > 60'000'000) throw RunFault("the programmer's patience is at its end");
    }
    int rarely(int answer) { return (call(), source_.chance(4) ? answer : 0); }

    ByteSource& source_;
    ProgrammerState& state_;
    SharedVariables& s_;
};

class HostileTransport final : public UsbTransport {
  public:
    HostileTransport(ByteSource& source, SharedVariables& s) : source_(source), s_(s) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        touch(frame);
        return source_.chance(3) ? 1 : 0;
    }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        if (!target.empty()) std::memset(target.data(), source_.byte(), target.size());
        // An image is read back as it was sent, so that a run gets beyond it.
        const auto image = static_cast<std::size_t>(s_.algobuf.size());
        if (lastsource_ == s_.algobuf.data() && source_.chance(90))
            std::copy_n(s_.algobuf.data(), std::min(target.size(), image), target.begin());
        for (std::size_t i = 0; i < std::min<std::size_t>(target.size(), 40); ++i)
            if (source_.chance(30)) target[i] = source_.byte();
        *result = source_.chance(90) ? 2 : source_.byte();
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        touch(source);
        lastsource_ = source.data();
        return source_.chance(3) ? 1 : 0;
    }

  private:
    // Reads what is sent, as a real transport would.
    void touch(std::span<const std::uint8_t> bytes) {
        for (const std::uint8_t b : bytes) sum_ = static_cast<std::uint8_t>(sum_ ^ b);
    }

    ByteSource& source_;
    SharedVariables& s_;
    const std::uint8_t* lastsource_ = nullptr;
    std::uint8_t sum_ = 0;
};

}  // namespace

std::unique_ptr<DevCore> hostiledevcore(ByteSource& source, ProgrammerState& state,
                                        SharedVariables& s) {
    return std::make_unique<HostileDevCore>(source, state, s);
}

std::unique_ptr<UsbTransport> hostiletransport(ByteSource& source, SharedVariables& s) {
    return std::make_unique<HostileTransport>(source, s);
}

}  // namespace keld2::fuzz
