#include "host/run/runplatform.h"

#include <algorithm>
#include <sstream>

#include "host/run/device_id.h"
#include "platform/numbers.h"
#include "plugin/texts/texts.h"
#include "shared/notes.h"

namespace keld2::host {

namespace {

// Words with single blanks between.
std::string withoutblanks(const std::string& text) {
    std::istringstream words(text);
    std::string joined;
    for (std::string word; words >> word;) joined += (joined.empty() ? "" : " ") + word;
    return joined;
}

}  // namespace

// A stop is written at every service as long as the run goes on: some procedures clear the result
// cell before they wait.
void RunPlatform::service() {
    auto& cell = variables_.prgresult;
    stopgiven_ |= listener_.stopasked();
    if (stopgiven_ && cell.acquire(0) == result::well) cell.release(0, result::stopped);
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
    const BoxAnswer answer = asksaboutid(box) ? askaboutid(box) : listener_.box(box);
    boxanswered_ |= answer == BoxAnswer::abort || answer == BoxAnswer::cancel;
    return answer;
}

bool RunPlatform::asksaboutid(const Box& box) {
    const std::int32_t language = variables_.Language[0];
    return box.buttons == BoxButtons::abortretryignore &&
           box.title == std::u16string(text(TextId::warning, language)) +
                            std::u16string(text(TextId::devicecodeerror, language));
}

// The box shows the digits that were read behind the host's own notes.
BoxAnswer RunPlatform::askaboutid(Box box) {
    std::string read = utf8(box.text);
    for (const std::int64_t index : {note::maker, note::device}) {
        const std::string before = utf8(variables_.prgnote[index].text());
        if (const std::size_t at = read.find(before); at != std::string::npos)
            read.replace(at, before.size(), " ");
    }
    read = withoutblanks(read);
    const std::string expected = expectedid(device_);
    if (!expected.empty()) box.text += utf16("\nexpected: " + expected + ", read: " + read);
    const BoxAnswer answer = listener_.box(box);
    foreignid_.reset();
    if (answer != BoxAnswer::retry)
        foreignid_ = ForeignId{.read = read, .ignored = answer == BoxAnswer::ignore};
    return answer;
}

void RunPlatform::window(std::string_view, const WindowChange& change) {
    look();
    if (change.kind != WindowChange::Kind::caption) return;
    checks_.begin_operation();
    listener_.step(utf8(change.text));
}

void RunPlatform::take(const std::string& line) {
    lines_.push_back(line);
    listener_.logline(line);
}

}  // namespace keld2::host
