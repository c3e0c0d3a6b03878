// A trace told as text, and the first difference of two.
#pragma once

#include <filesystem>
#include <iosfwd>

namespace keld2::host {

// Tells the trace to out: a line each, "LINES  WORDS", deeper parts further to the right. depth:
// 1 operations alone, 2 their steps too, and so on. Throws HostError when the file cannot be used.
void showtrace(const std::filesystem::path& path, int depth, std::ostream& out);

// Tells the first difference of two traces to out, with the steps in which it lies; nothing when
// they are equal. Whether they are. Throws HostError as above.
bool comparetraces(const std::filesystem::path& a, const std::filesystem::path& b,
                   std::ostream& out);

}  // namespace keld2::host
