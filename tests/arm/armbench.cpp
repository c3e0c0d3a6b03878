#include "arm/armbench.h"

#include <charconv>
#include <regex>

#include "platform/numbers.h"

namespace keld2::test {

Bytes fromhex(const std::string& hex) {
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::string tohex(std::span<const std::uint8_t> bytes) {
    std::string hex;
    for (const std::uint8_t byte : bytes) {
        hex += "0123456789abcdef"[byte >> 4];
        hex += "0123456789abcdef"[byte & 15];
    }
    return hex;
}

// Memory, texts, files and boxes of the bench.
class BenchMachine final : public Platform, private NamedMemory, private SharedStrings {
  public:
    explicit BenchMachine(ArmBench& bench) : bench_(bench) {}

    NamedMemory& memory() override { return *this; }
    SharedStrings& strings() override { return *this; }
    void service() override { bench_.service(); }
    void wake() override {}
    TimerId settimer(std::int32_t, std::function<void()>) override { return 1; }
    void killtimer(TimerId) override {}
    BoxAnswer messagebox(const Box& box) override {
        bench_.shown.push_back(box);
        if (bench_.boxes.empty()) return BoxAnswer::abort;
        const BoxAnswer answer = bench_.boxes.front();
        bench_.boxes.pop_front();
        return answer;
    }
    void showform(Form&) override {}
    void window(std::string_view, const WindowChange&) override {}
    FileContent readfile(std::span<const std::u16string> parts) override {
        std::string name;
        for (const auto& part : parts) name += (name.empty() ? "" : "/") + utf8(part);
        const auto found = bench_.files.find(name);
        if (found == bench_.files.end()) return {};
        return {.status = FileContent::Status::read, .bytes = found->second};
    }
    double secondssincemidnight() override { return 3.5; }

  private:
    MemoryHandle open(const std::string&) override { return 0; }
    MemoryHandle create(const std::string&, std::int32_t size) override {
        blocks_.push_back(std::vector<std::uint64_t>(static_cast<std::size_t>(size) / 8 + 1));
        sizes_.push_back(static_cast<std::size_t>(size));
        return static_cast<MemoryHandle>(blocks_.size());
    }
    std::span<std::byte> mapview(MemoryHandle handle) override {
        const auto at = static_cast<std::size_t>(handle) - 1;
        return std::as_writable_bytes(std::span(blocks_[at])).first(sizes_[at]);
    }
    bool unmapview(std::span<std::byte>) override { return true; }
    void close(MemoryHandle) override {}

    StringHandle allocate(std::u16string_view text) override {
        texts_.emplace_back(text);
        return static_cast<StringHandle>(texts_.size());
    }
    std::u16string text(StringHandle handle) const override {
        if (handle == 0) return {};
        if (handle > texts_.size()) throw RunFault("stale handle", "SharedStrings");
        return texts_[handle - 1];
    }
    void free(StringHandle) override {}

    ArmBench& bench_;
    std::vector<std::vector<std::uint64_t>> blocks_;
    std::vector<std::size_t> sizes_;
    std::deque<std::u16string> texts_;
};

namespace {

std::string words(std::initializer_list<std::int64_t> numbers) {
    std::string text;
    for (const auto n : numbers) text += " " + std::to_string(n);
    return text;
}

template <typename Queue, typename Value>
Value taken(Queue& queue, Value otherwise) {
    if (queue.empty()) return otherwise;
    Value value = queue.front();
    queue.pop_front();
    return value;
}

class BenchDevCore final : public DevCore {
  public:
    explicit BenchDevCore(ArmBench& bench) : b_(bench) {}

    void setvpppin(std::uint8_t pin, std::uint8_t on) override { put("setvpppin", {pin, on}); }
    void powerdown() override { put("powerdown", {}); }
    void signalpass(std::uint8_t zero) override { put("signalpass", {zero}); }
    void signalfail(std::uint8_t zero) override { put("signalfail", {zero}); }
    void readyfail() override { put("readyfail", {}); }
    void regwrite(std::int32_t value, std::uint8_t reg) override { put("regwrite", {value, reg}); }
    void waitshort(std::int32_t n) override { put("waitshort", {n}); }
    int readycheck() override { return answer("readycheck", {}); }
    int armready() override { return answer("armready", {}); }
    int modeselect2(std::uint8_t mode, int second) override {
        return answer("modeselect2", {mode, second});
    }
    int modeselect3(std::uint8_t mode, int second) override {
        return answer("modeselect3", {mode, second});
    }
    int checkbyte(std::int16_t value, std::int32_t address, int mode) override {
        return answer("checkbyte", {value, address, mode});
    }
    int checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                  int blank) override {
        return answer("checkword", {low, high, address, mode, blank});
    }
    bool transferwait(std::uint8_t count) override {
        put("transferwait", {count});
        const auto record = taken(b_.records, std::optional<Bytes>{Bytes{0x64}});
        if (!record) return false;
        for (std::size_t i = 0; i < record->size(); ++i)
            b_.s().ibuf1[static_cast<std::int64_t>(i)] = (*record)[i];
        return true;
    }
    void loadalgobuf(std::int32_t& length) override {
        put("loadalgobuf", {length});
        if (b_.onloadalgobuf) b_.onloadalgobuf(length);
    }

    // No ARM run has a use for these.
    void setvcc(std::int32_t) override { never("setvcc"); }
    void setvpp(std::int32_t, std::uint8_t) override { never("setvpp"); }
    void setgndpin(std::uint8_t, std::uint8_t) override { never("setgndpin"); }
    void setvccpin(std::uint8_t, std::uint8_t) override { never("setvccpin"); }
    void drivercommit() override { never("drivercommit"); }
    int modeselect(std::uint8_t) override { return never("modeselect"); }
    void qregwrite(std::int32_t, std::uint8_t) override { never("qregwrite"); }
    std::uint8_t regread(std::uint8_t) override { return never("regread"); }
    void qregread(std::uint8_t) override { never("qregread"); }
    void qwaitshort(std::int32_t) override { never("qwaitshort"); }
    void waitlong(std::int32_t) override { never("waitlong"); }
    void qwaitlong(std::int32_t) override { never("qwaitlong"); }
    void qrun() override { never("qrun"); }
    void buswrite(std::int32_t, std::uint8_t, std::uint8_t) override { never("buswrite"); }
    void qbuswrite(std::int32_t, std::uint8_t, std::uint8_t) override { never("qbuswrite"); }
    void busconfig(std::int32_t, std::uint8_t, std::uint8_t) override { never("busconfig"); }
    void qbusconfig(std::int32_t, std::uint8_t, std::uint8_t) override { never("qbusconfig"); }

  private:
    void put(const std::string& name, std::initializer_list<std::int64_t> numbers) {
        b_.put(name + words(numbers));
    }
    int answer(const std::string& name, std::initializer_list<std::int64_t> numbers) {
        const std::string line = name + words(numbers);
        b_.put(line);
        if (const auto found = b_.answers.find(line); found != b_.answers.end())
            return found->second;
        const auto found = b_.answers.find(name);
        return found == b_.answers.end() ? 0 : found->second;
    }
    std::uint8_t never(const std::string& name) {
        b_.put("never: " + name);
        return 0;
    }

    ArmBench& b_;
};

class BenchTransport final : public UsbTransport {
  public:
    explicit BenchTransport(ArmBench& bench) : b_(bench) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        b_.put("frame " + tohex(frame));
        return taken(b_.comwrites, 0);
    }
    int usbbulkwrite(std::span<const std::uint8_t> source) override {
        b_.put("bulkwrite " + place(source) + words({static_cast<std::int64_t>(source.size())}));
        return taken(b_.bulkwrites, 0);
    }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        const std::string where = place(target);
        b_.put("bulkread " + where + words({static_cast<std::int64_t>(target.size())}));
        const BulkAnswer answer = taken(b_.bulkreads, BulkAnswer{});
        std::fill(target.begin(), target.end(), std::uint8_t{255});
        auto& algobuf = b_.s().algobuf;
        const Bytes image(algobuf.data(), algobuf.data() + algobuf.size());
        const Bytes& data = answer.data ? *answer.data : where == "local" ? image : Bytes{};
        std::copy_n(data.begin(), std::min(data.size(), target.size()), target.begin());
        *result = answer.cell;
        b_.bulkcell = result;
    }

  private:
    std::string place(std::span<const std::uint8_t> bytes) {
        const auto within = [&](SharedArray<std::uint8_t>& block) {
            const auto at = bytes.data() - block.data();
            const auto count = static_cast<std::int64_t>(bytes.size());
            return at >= 0 && at < block.size() && at + count <= block.size();
        };
        SharedVariables& s = b_.s();
        const auto offset = [&](SharedArray<std::uint8_t>& block) {
            return std::to_string(bytes.data() - block.data());
        };
        if (within(s.ibuffer)) return "ibuffer+" + offset(s.ibuffer);
        if (within(s.algobuf)) return "algobuf+" + offset(s.algobuf);
        if (within(s.ibuf2)) return "ibuf2";
        return "local";
    }

    ArmBench& b_;
};

}  // namespace

ArmBench::ArmBench(std::int16_t modeltype, std::uint8_t op)
    : machine_(std::make_unique<BenchMachine>(*this)),
      module_(std::make_unique<Module>(
          *machine_,
          External{
              .devcore = [this](SharedVariables&) { return std::make_unique<BenchDevCore>(*this); },
              .transport =
                  [this](SharedVariables&) { return std::make_unique<BenchTransport>(*this); }})) {
    s().maprows(0, {});
    s().buflength[0] = 200000;
    ClsKELD2(*module_).bufcomkeld2(0);
    s().buflength[0] = 200000;
    s().mapbuffers({});
    s().modeltype[0] = modeltype;
    s().modeltype[2] = -1;
    s().selmode[0] = 0x40;
    s().prgmode[0] = 10;
    s().tlength[0] = 64;
    s().wordmode[0] = 1;
    s().ramlg[0] = 0x8000;
    s().wltbigendbuf[1] = 63;
    s().figmode[0] = 33;
    s().wsign[1] = 7;
    s().bvcc[0] = 330;
    s().prgresult[1] = op;
    const std::u16string_view parts[]{u" IMG0 ", u" fam", u"IMG "};
    for (int i = 0; i < 3; ++i) s().algorithm[i] = parts[i];
    for (int i = 0; i < 20; ++i) s().MainmnuPrg[i] = u"Op" + utf16(std::to_string(i));
    const std::u16string_view notes[]{u"{",     u"}",    u" good",     u" BAD", u"stopped",
                                      u"list",  u"head", u"q",         u"t",    u"Maker ",
                                      u"Code ", u"-",    u"broken off"};
    for (int i = 0; i < 13; ++i) s().prgnote[i] = notes[i];
    std::uint8_t* buffer = s().ibuffer.data();
    for (std::int64_t i = 0; i < s().ibuffer.size(); ++i)
        buffer[i] = static_cast<std::uint8_t>(i * 7);
    files["algo/fam/IMG.bin"] = files["algo4/fam/IMG.alg"] = {1, 2, 3};
    records.push_back(fromhex("640007"));
}

ArmBench::~ArmBench() = default;

SharedVariables& ArmBench::s() { return module_->variables(); }

std::string ArmBench::log() {
    return std::regex_replace(utf8(s().MainRtstr[0].text()), std::regex(">> [0-9.]+Sec"),
                              ">> <TIME>Sec");
}

const Lines& ArmBench::run() {
    ClsKELD2(*module_).runKeld2Prg(false);
    return trace;
}

Lines ArmBench::afterimage() {
    run();
    for (std::size_t i = 0; i < trace.size(); ++i)
        if (trace[i].starts_with("bulkread local"))
            return Lines(trace.begin() + static_cast<std::ptrdiff_t>(i) + 1, trace.end());
    return {"no image"};
}

Lines ArmBench::tail(const Lines& lines, std::size_t count) {
    return {lines.end() - static_cast<std::ptrdiff_t>(std::min(count, lines.size())), lines.end()};
}

int ArmBench::count(const std::string& start) const {
    return static_cast<int>(std::count_if(trace.begin(), trace.end(), [&](const std::string& line) {
        return line.starts_with(start);
    }));
}

void ArmBench::put(const std::string& line) {
    if (const auto found = before.find(line); found != before.end()) found->second();
    trace.push_back(line);
}

void ArmBench::service() {
    if (++services_ > 5000) throw RunFault("the run waits without end", "ArmBench");
    const int percent = s().prgmode[1];
    if (percent != (percents.empty() ? 0 : percents.back())) percents.push_back(percent);
    if (services_ == stopatservice) s().prgresult.release(0, 2);
    if (onservice) onservice(services_);
}

}  // namespace keld2::test
