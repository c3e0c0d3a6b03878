#include "host/run/runplatform.h"

#include <algorithm>

#include "host/hosterror.h"
#include "platform/numbers.h"

namespace keld2::host {

// A stop is written at every service as long as the run goes on: some procedures clear the result
// cell before they wait.
void RunPlatform::service() {
    auto& result = variables_.prgresult;
    if (listener_.stopasked() && result.acquire(0) == exitstatus::well)
        result.release(0, exitstatus::stopped);
    percent_ = variables_.prgmode[1];  // here: an ARM run clears it at its end
    look();
    inner().service();
}

FileContent RunPlatform::readfile(std::span<const std::u16string> parts) {
    const bool laiddown = parts.size() == 1 && parts[0] == u"pldtmp.svf" && !texts_.empty();
    return laiddown ? nexttext() : providedfile(parts);
}

FileContent RunPlatform::nexttext() {
    if (textsread_ == texts_.size()) return {};
    const std::string& text = texts_[textsread_++];
    begun_();
    return {.status = FileContent::Status::read, .bytes = {text.begin(), text.end()}};
}

FileContent RunPlatform::providedfile(std::span<const std::u16string> parts) {
    const auto file = std::ranges::find_if(
        files_, [parts](const RunFile& one) { return std::ranges::equal(one.parts, parts); });
    if (file != files_.end() && file->overriding)
        return {.status = FileContent::Status::read, .bytes = file->bytes};
    FileContent content = inner().readfile(parts);
    if (content.status == FileContent::Status::missing && file != files_.end())
        return {.status = FileContent::Status::read, .bytes = file->bytes};
    return content;
}

void RunPlatform::look() {
    log_.poll();
    listener_.progress(variables_.prgmode[1]);
}

BoxAnswer RunPlatform::messagebox(const Box& box) {
    look();
    const BoxAnswer answer = listener_.box(box);
    boxanswered_ |= answer == BoxAnswer::abort || answer == BoxAnswer::cancel;
    return answer;
}

void RunPlatform::window(std::string_view, const WindowChange& change) {
    look();
    if (change.kind == WindowChange::Kind::caption) listener_.step(utf8(change.text));
}

void RunPlatform::take(const std::string& line) {
    lines_.push_back(line);
    listener_.logline(line);
}

}  // namespace keld2::host
