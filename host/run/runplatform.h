// RunPlatform: the machine of a run, watched for the one who shows it.
#pragma once

#include <functional>

#include "host/os/machine.h"
#include "host/run/check_watch.h"
#include "host/run/devicerun.h"
#include "host/run/logfollower.h"
#include "host/run/runfile.h"
#include "platform/platformdecorator.h"

namespace keld2::host {

class RunPlatform final : public PlatformDecorator {
  public:
    // All references outlive it.
    RunPlatform(Platform& machine, RunListener& listener, const Device& device)
        : PlatformDecorator(machine),
          listener_(listener),
          device_(device),
          variables_(machine.memory(), machine.strings()),
          checks_(variables_),
          log_(variables_, [this](const std::string& line) { take(line); }),
          strings_(machine.strings(), [this] { log_.poll(); }) {}

    SharedStrings& strings() override { return strings_; }
    void service() override;
    BoxAnswer messagebox(const Box& box) override;
    FileContent readfile(std::span<const std::u16string> parts) override;
    void window(std::string_view name, const WindowChange& change) override;

    // A file that the run finds. Comes before the run.
    void provide(RunFile file) { files_.push_back(std::move(file)); }
    // Texts that stand for pldtmp.svf of the current folder, one an operation; none: what the
    // folder holds. begun: called when the run has taken the next one.
    void laydown(std::vector<std::string> texts, std::function<void()> begun) {
        texts_ = std::move(texts);
        begun_ = std::move(begun);
    }

    // Shows what has changed; more often than the message loop is served.
    void look();

    SharedVariables& variables() { return variables_; }  // the host's views
    CheckWatch& checks() { return checks_; }
    const std::vector<std::string>& lines() const { return lines_; }
    int percent() const { return percent_; }  // of the operation at which the run stands
    bool boxanswered() const { return boxanswered_; }
    bool stopgiven() const { return stopgiven_; }
    const std::optional<ForeignId>& foreignid() const { return foreignid_; }

  private:
    bool asksaboutid(const Box& box);
    BoxAnswer askaboutid(Box box);
    void take(const std::string& line);
    FileContent nexttext();
    FileContent providedfile(std::span<const std::u16string> parts);

    RunListener& listener_;
    const Device& device_;
    SharedVariables variables_;
    CheckWatch checks_;
    LogFollower log_;
    FollowedStrings strings_;
    std::vector<std::string> lines_;
    std::vector<RunFile> files_;
    int percent_ = 0;
    bool boxanswered_ = false;  // with Abort or Cancel
    bool stopgiven_ = false;    // the listener has asked for a stop
    std::optional<ForeignId> foreignid_;
    std::vector<std::string> texts_;
    std::function<void()> begun_;
    std::size_t textsread_ = 0;
};

}  // namespace keld2::host
