// TracingPlatform: writes a line for boxes, changes of the run window and progress.
#pragma once

#include "host/trace/tracelog.h"
#include "platform/platformdecorator.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

class TracingPlatform final : public PlatformDecorator {
  public:
    // s: the host's views, whose prgmode[1] is the progress.
    TracingPlatform(Platform& inner, TraceLog& trace, SharedVariables& s)
        : PlatformDecorator(inner), trace_(trace), s_(s) {}

    void service() override;
    BoxAnswer messagebox(const Box& box) override;
    void window(std::string_view name, const WindowChange& change) override;

  private:
    TraceLog& trace_;
    SharedVariables& s_;
    std::uint8_t progress_ = 0;  // of the last progress line
};

}  // namespace keld2::host
