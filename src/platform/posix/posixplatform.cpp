#include "platform/posix/posixplatform.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>
#include <utility>

#include "platform/numbers.h"

namespace keld2 {

namespace {

// A wait that has found nothing to do for a while looks less often: the wake-ups of a millisecond
// clock alone cost some machines 2 % of a core. A finished transfer or a posted event wakes it, a
// timer that becomes due ends it, and a timer that is set begins a new wait.
constexpr int idleservices = 32;
constexpr std::int64_t shortwait = 1;  // ms
constexpr std::int64_t longwait = 8;   // ms

std::int64_t milliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

// A part that cannot lead out of its folder.
bool plainpart(const std::u16string& part) {
    return !part.empty() && part != u"." && part != u".." &&
           part.find_first_of(std::u16string_view(u"/\\:\0", 4)) == std::u16string::npos;
}

std::string lowercase(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    return text;
}

// The entry of that name; else the only one that differs in the case of its letters alone.
std::filesystem::path entryof(const std::filesystem::path& folder, const std::string& name) {
    std::error_code fault;
    std::filesystem::path exact = folder / name;
    if (std::filesystem::exists(exact, fault)) return exact;
    std::filesystem::path found;
    std::filesystem::directory_iterator entry(folder, fault);
    for (; !fault && entry != std::filesystem::directory_iterator(); entry.increment(fault)) {
        if (lowercase(entry->path().filename().string()) != lowercase(name)) continue;
        if (!found.empty()) return exact;
        found = entry->path();
    }
    return found.empty() ? exact : found;
}

}  // namespace

PosixPlatform::PosixPlatform(PosixOptions options)
    : options_(std::move(options)), memory_(options_.scope) {}

void PosixPlatform::service() {
    const bool events = runevents();
    const bool timers = timers_.run(milliseconds());
    if (events || timers)
        idle_ = 0;
    else
        waitforevent();
}

// One by one: a handler may serve the loop itself, and one that throws keeps the others waiting,
// not lost. What a handler posts is left to the next service.
bool PosixPlatform::runevents() {
    std::unique_lock lock(mutex_);
    bool any = false;
    for (std::size_t due = events_.size(); due > 0 && !events_.empty(); --due) {
        const std::function<void()> event = std::move(events_.front());
        events_.pop_front();
        lock.unlock();
        event();
        any = true;
        lock.lock();
    }
    return any;
}

// The first look after something happened does not wait: work that serves the loop in passing
// costs no time.
void PosixPlatform::waitforevent() {
    if (idle_ == 0) {
        ++idle_;
        return;
    }
    const std::int64_t untildue = timers_.nextdue() - milliseconds();
    const std::int64_t idlewait = ++idle_ < idleservices ? shortwait : longwait;
    const std::chrono::milliseconds most(std::clamp<std::int64_t>(untildue, 0, idlewait));
    std::unique_lock lock(mutex_);
    if (woken_.wait_for(lock, most, [this] { return awake_ || !events_.empty(); })) idle_ = 0;
    awake_ = false;
}

void PosixPlatform::wake() {
    {
        const std::lock_guard lock(mutex_);
        awake_ = true;
    }
    woken_.notify_one();
}

void PosixPlatform::post(std::function<void()> event) {
    {
        const std::lock_guard lock(mutex_);
        events_.push_back(std::move(event));
    }
    woken_.notify_one();
}

TimerId PosixPlatform::settimer(std::int32_t interval, std::function<void()> handler) {
    idle_ = 0;
    return timers_.add(milliseconds(), interval, std::move(handler));
}

BoxAnswer PosixPlatform::messagebox(const Box& box) {
    return options_.messagebox ? options_.messagebox(box) : safeanswer(box.buttons);
}

void PosixPlatform::showform(Form& form) {
    if (options_.showform) options_.showform(form);
}

void PosixPlatform::window(std::string_view name, const WindowChange& change) {
    if (options_.window) options_.window(name, change);
}

FileContent PosixPlatform::readfile(std::span<const std::u16string> parts) {
    if (parts.empty() || !std::ranges::all_of(parts, plainpart))
        return {.status = FileContent::Status::refused, .bytes = {}};
    std::filesystem::path path = options_.folder;
    for (const std::u16string& part : parts) path = entryof(path, utf8(part));
    std::error_code fault;
    if (!std::filesystem::is_regular_file(path, fault)) return {};
    std::ifstream file(path, std::ios::binary);
    FileContent content{.status = FileContent::Status::read, .bytes = {}};
    const auto size = std::filesystem::file_size(path, fault);
    if (!file || fault) return {};
    content.bytes.resize(size);
    file.read(reinterpret_cast<char*>(content.bytes.data()), static_cast<std::streamsize>(size));
    return static_cast<std::uintmax_t>(file.gcount()) == size ? content : FileContent{};
}

double PosixPlatform::secondssincemidnight() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t whole = std::chrono::system_clock::to_time_t(now);
    const std::chrono::duration<double> fraction =
        now - std::chrono::system_clock::from_time_t(whole);
    std::tm local{};
    localtime_r(&whole, &local);
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + fraction.count();
}

}  // namespace keld2
