// Message boxes on a terminal.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "platform/platform.h"

namespace keld2::host {

class TerminalBoxes {
  public:
    // preset: answers every box that has this button, up to ten times; then, and where nobody can
    // be asked, the safe answer is taken.
    TerminalBoxes(std::optional<BoxAnswer> preset, std::FILE* out) : preset_(preset), out_(out) {}

    // Shows the box and takes its answer; says which one when nobody was asked.
    BoxAnswer answer(const Box& box);

  private:
    BoxAnswer ask(BoxButtons buttons);
    BoxAnswer unasked(BoxButtons buttons);

    std::optional<BoxAnswer> preset_;
    int presetused_ = 0;
    std::FILE* out_;
};

}  // namespace keld2::host
