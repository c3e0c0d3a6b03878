// LogFollower: the lines that a run writes into its log, each once, as they come.
//
// The log is one text that grows, is emptied and is replaced. To lose nothing it has to be looked
// at before every change: FollowedStrings does so, since a change of a text begins with its
// allocation.
#pragma once

#include <functional>
#include <string>

#include "platform/platform.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

class LogFollower {
  public:
    using Sink = std::function<void(const std::string& line)>;  // UTF-8, without the line's end

    // s: the host's views, which must outlive the follower.
    LogFollower(SharedVariables& s, Sink sink) : s_(s), sink_(std::move(sink)) {}
    void poll();

  private:
    SharedVariables& s_;
    Sink sink_;
    std::u16string seen_;  // what the log held, up to its last line's end
};

class FollowedStrings final : public SharedStrings {
  public:
    FollowedStrings(SharedStrings& inner, std::function<void()> before)
        : inner_(inner), before_(std::move(before)) {}

    StringHandle allocate(std::u16string_view text) override {
        before_();
        return inner_.allocate(text);
    }
    std::u16string text(StringHandle handle) const override { return inner_.text(handle); }
    void free(StringHandle handle) override { inner_.free(handle); }

  private:
    SharedStrings& inner_;
    std::function<void()> before_;
};

}  // namespace keld2::host
