// Puts a file in the place of another one so that there is always a whole one.
#pragma once

#include <filesystem>
#include <string_view>

namespace keld2::sim {

// Writes bytes into a new file beside the wanted one, has them stored, and puts it in its place: with
// the former one's permissions, behind a link where the name is one, and never in the place of one
// that must not be written. Into what is no file, as a terminal or a pipe, the bytes are written.
// Throws std::system_error with the system's own error; the wanted file is then as it was, and
// nothing is left of the new one.
void replacefile(const std::filesystem::path& wanted, std::string_view bytes);

}  // namespace keld2::sim
