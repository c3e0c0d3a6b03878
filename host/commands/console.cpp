#include "host/commands/console.h"

#include "host/commands/interruptwatch.h"
#include "host/run/log_differences.h"

namespace keld2::host {

Console::Console(const ConsoleOptions& options)
    : options_(options),
      display_(options.quiet ? ProgressStyle::none : options.progress, stderr),
      boxes_(options.onbox, stderr) {}

void Console::logline(const std::string& line) {
    if (options_.quiet || (options_.differencesaside && isdifference(line))) return;
    display_.clear();
    std::fprintf(stderr, "%s\n", line.c_str());
}

void Console::progress(int percent) { display_.percent(percent); }

void Console::step(const std::string& caption) { display_.step(caption); }

BoxAnswer Console::box(const Box& box) {
    display_.clear();
    return boxes_.answer(box);
}

bool Console::stopasked() { return InterruptWatch::asked(); }

void Console::say(const std::string& message) {
    display_.clear();
    std::fprintf(stderr, "keld2: %s\n", message.c_str());
}

}  // namespace keld2::host
