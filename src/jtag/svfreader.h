// SvfReader: the text of an operation, line by line.
//
// The whole text lies in memory. CR, LF and CR LF end a line. A helper that has begun a field of
// several lines moves the reader on; nothing is read twice. Characters are counted for the
// progress: every line that the run reads, and those lines of a statement that count; svflinelen
// tells who watches it how far the last one went.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace keld2 {

class SvfReader {
  public:
    // text must outlive the reader.
    explicit SvfReader(std::span<const std::uint8_t> text);

    bool atend() const { return place_ == text_.size(); }
    // Reads the next line into svfline. Fault at the end of the text.
    std::string_view read();
    std::string_view readcounted();  // the same; its length is added to svfchars

    std::string_view svfline() const { return line_; }       // the line last read, untouched
    std::int32_t svflinelen() const { return linelength_; }  // of the last counted line
    std::int64_t svfchars() const { return chars_; }         // of all counted lines
    std::int64_t svfsize() const { return static_cast<std::int64_t>(text_.size()); }  // bytes

    // The field that starts behind the first "(" of first and runs over the following lines, at
    // most 21. A field of key "TDO" whose statement ends with it keeps a ";" at its end.
    enum class Key { tdo, mask };
    std::string popMLinedata(std::string_view first, Key key);
    // The same for a field that may also close in first itself. Only a TDO field is cut at its
    // bracket; no ";" is added.
    std::string popMLinedata1(std::string_view first, Key key);

  private:
    std::size_t endofline();

    std::string_view text_;
    std::size_t place_ = 0;
    std::size_t nextlf_ = 0;  // the first LF at or behind place_, once looked for
    std::string_view line_;
    std::int32_t linelength_ = 0;
    std::int64_t chars_ = 0;
};

// Whether a line closes a field or its statement: its last character is ")" or ";".
inline bool closesfield(std::string_view line) {
    return line.ends_with(')') || line.ends_with(';');
}
// What stands before the first ")". Fault when there is none.
std::string_view beforebracket(std::string_view text);

}  // namespace keld2
