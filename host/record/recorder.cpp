#include "host/record/recorder.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "host/files/hexbytes.h"
#include "host/text/boxtext.h"

namespace keld2::host {

namespace {

constexpr std::string_view bulkname = "usbbulkread";
constexpr std::uint8_t rest = 255;  // what a replay lays behind the bytes given
constexpr auto done = static_cast<std::uint8_t>(BulkState::done);
constexpr auto stillrunning = static_cast<std::uint8_t>(BulkState::stillrunning);

std::string bytestext(std::span<const std::uint8_t> bytes) {
    const bool same =
        std::adjacent_find(bytes.begin(), bytes.end(), std::not_equal_to<>{}) == bytes.end();
    if (same) return "fill " + std::to_string(bytes.empty() ? rest : bytes[0]);
    std::size_t length = bytes.size();
    while (bytes[length - 1] == rest) --length;
    return "ok " + hexfrombytes(bytes.first(length));
}

}  // namespace

void Recorder::add(std::string_view operation, std::string text, bool usual) {
    auto at = answers_.find(operation);
    if (at == answers_.end()) at = answers_.emplace(operation, std::vector<Answer>{}).first;
    at->second.push_back({.text = std::move(text), .usual = usual, .at = count_++});
}

void Recorder::number(std::string_view operation, int answer) {
    const int usual = operation == "regread" ? 255 : 0;
    add(operation, std::to_string(answer), answer == usual);
}

void Recorder::transferwait(bool well, std::span<const std::uint8_t> before,
                            std::span<const std::uint8_t> after) {
    if (!well) return add("transferwait", "fail", false);
    std::size_t length = after.size();
    while (length > 1 && before[length - 1] == after[length - 1]) --length;
    const std::string hex = hexfrombytes(after.first(length));
    add("transferwait", "ok " + hex, hex == "64");
}

void Recorder::box(BoxButtons buttons, BoxAnswer answer) {
    add("messagebox", std::string(nameof(answer)), answer == defaultanswer(buttons));
}

void Recorder::stop(std::int64_t lines) { stops_.push_back(lines); }

void Recorder::bulkread(UsbTransport& inner, std::span<std::uint8_t> target, std::uint8_t* result) {
    add(bulkname, "hang", false);
    bulks_.push_back({.bytes = std::vector<std::uint8_t>(target.begin(), target.end()),
                      .target = target,
                      .result = result,
                      .answer = answers_.find(bulkname)->second.size() - 1});
    open_ = &bulks_.back();
    inner.usbbulkread(open_->bytes, &open_->cell);
    deliver();
}

void Recorder::deliver() {
    if (open_ == nullptr) return;
    Bulk& bulk = *open_;
    const std::uint8_t state =
        std::atomic_ref<std::uint8_t>(bulk.cell).load(std::memory_order_acquire);
    if (state == done || state > stillrunning) finish(bulk, state);
    std::atomic_ref<std::uint8_t>(*bulk.result).store(state, std::memory_order_release);
}

void Recorder::finish(Bulk& bulk, std::uint8_t state) {
    Answer& answer = answers_.find(bulkname)->second[bulk.answer];
    if (state == done) {
        std::copy(bulk.bytes.begin(), bulk.bytes.end(), bulk.target.begin());
        answer.text = bytestext(bulk.bytes);
        answer.usual = answer.text == "fill 255";
    } else {
        answer.text = "fail";
    }
    open_ = nullptr;
}

std::string Recorder::text() const {
    std::map<std::int64_t, std::string> lines;
    for (const auto& [operation, answers] : answers_) {
        std::size_t end = answers.size();
        while (end > 0 && answers[end - 1].usual) --end;
        std::size_t repeat = end;  // from here on the same answer up to end
        while (repeat > 0 && answers[repeat - 1].text == answers[end - 1].text) --repeat;
        const bool stays = end == answers.size() && end - repeat > 1;
        const std::size_t single = stays ? repeat : end;
        for (std::size_t i = 0; i < single; ++i)
            lines[answers[i].at] = operation + " " + answers[i].text;
        if (stays) lines[answers[repeat].at] = operation + " * " + answers[repeat].text;
    }
    std::string text;
    for (const std::int64_t at : stops_) text += "stop " + std::to_string(at) + "\n";
    for (const auto& [at, line] : lines) text += line + "\n";
    return text;
}

}  // namespace keld2::host
