// A run as the user of a terminal sees it.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/boxes.h"
#include "host/commands/progressdisplay.h"
#include "host/run/devicerun.h"

namespace keld2::host {

struct ConsoleOptions {
    ProgressStyle progress = ProgressStyle::none;
    bool quiet = false;              // no log, no progress
    bool differencesaside = false;   // the caller prints the lines of a compare's report itself
    std::optional<BoxAnswer> onbox;  // answers boxes without a question
};

// Log and progress on standard error; stops by InterruptWatch.
class Console final : public RunListener {
  public:
    explicit Console(const ConsoleOptions& options);

    void logline(const std::string& line) override;
    void progress(int percent) override;
    void step(const std::string& caption) override;
    BoxAnswer box(const Box& box) override;
    bool stopasked() override;

    // A message of the host itself.
    void say(const std::string& message);

  private:
    ConsoleOptions options_;
    ProgressDisplay display_;
    TerminalBoxes boxes_;
};

}  // namespace keld2::host
