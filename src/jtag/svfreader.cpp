#include "jtag/svfreader.h"

#include <algorithm>

#include "jtag/svftext.h"
#include "platform/fault.h"

namespace keld2 {

namespace {

constexpr int fieldlines = 21;  // read for one TDO or MASK field

// The text behind the first "(".
std::string_view behindbracket(std::string_view text) {
    return text.substr(requireword(text, "(") + 1);
}

}  // namespace

SvfReader::SvfReader(std::span<const std::uint8_t> text)
    : text_(reinterpret_cast<const char*>(text.data()), text.size()) {}

std::string_view SvfReader::read() {
    if (atend()) throw RunFault("the text ends inside a statement", "pldtmp.svf");
    const std::size_t end = endofline();
    line_ = text_.substr(place_, end - place_);
    place_ = end;
    if (place_ < text_.size()) place_ += text_.substr(place_, 2) == "\r\n" ? 2 : 1;
    return line_;
}

// Looks for each LF once, so that a text without any stays linear.
std::size_t SvfReader::endofline() {
    if (nextlf_ < place_ || place_ == 0) nextlf_ = std::min(text_.find('\n', place_), text_.size());
    const std::size_t cr = text_.substr(place_, nextlf_ - place_).find('\r');
    return cr == std::string_view::npos ? nextlf_ : place_ + cr;
}

std::string_view SvfReader::readcounted() {
    read();
    linelength_ = static_cast<std::int32_t>(line_.size());
    chars_ += linelength_;
    return line_;
}

std::string SvfReader::popMLinedata(std::string_view first, Key key) {
    std::string field(behindbracket(first));
    for (int count = 0; count < fieldlines; ++count) {
        std::string_view line = Trim(readcounted());
        if (!closesfield(line)) {
            field += ClearTAB(line);
            continue;
        }
        const bool ended = key == Key::tdo && line.ends_with(';');
        std::string tail(beforebracket(line));
        if (ended) tail += ';';
        return field += ClearTAB(tail);
    }
    return field;
}

std::string SvfReader::popMLinedata1(std::string_view first, Key key) {
    std::string_view begin = behindbracket(first);
    if (closesfield(begin) || holdsword(begin, ")"))
        return std::string(ClearTAB(key == Key::tdo ? beforebracket(begin) : begin));
    std::string field(begin);
    for (int count = 0; count < fieldlines; ++count) {
        const std::string_view line = Trim(readcounted());
        const bool closing = closesfield(line);
        field += ClearTAB(closing && key == Key::tdo ? beforebracket(line) : line);
        if (closing) break;
    }
    return field;
}

std::string_view beforebracket(std::string_view text) {
    return text.substr(0, requireword(text, ")"));
}

}  // namespace keld2
