// A terminal at the standard streams, and what is typed there.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace keld2::host::os {

enum class Stream { input, output, error };

bool isterminal(Stream stream);

// A line from standard input, without its end; nullopt at the end of the input and when interrupted
// answers true, which is asked at least every 50 ms.
std::optional<std::string> readline(const std::function<bool()>& interrupted);

}  // namespace keld2::host::os
