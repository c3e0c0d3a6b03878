// SessionProgrammer: what stands for the programmer in a session, with the time it lives in.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "external/datstr.h"
#include "external/devcore.h"
#include "external/usbtransport.h"
#include "host/trace/tracelog.h"
#include "platform/platform.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

class SessionProgrammer {
  public:
    virtual ~SessionProgrammer() = default;

    // The machine that the plug-in runs on with this programmer. Lives as long as the programmer.
    virtual Platform& platform() = 0;
    // The components beside the plug-in; s are the plug-in's own views.
    virtual std::unique_ptr<DevCore> devcore(SharedVariables& s) = 0;
    virtual std::unique_ptr<UsbTransport> transport(SharedVariables& s) = 0;

    // Makes the helper for texts; empty: the plain one.
    virtual std::function<std::unique_ptr<TextHelper>()> helper() { return {}; }

    // Whether further calls make sense.
    virtual bool usable() const { return true; }
    // Called after the last call; throws HostError when the session came to no end of its own.
    virtual void finish() const {}
};

// What a programmer is made of. All references outlive it.
struct ProgrammerSetting {
    const std::filesystem::path& job;  // the job file
    Platform& machine;
    TraceLog& trace;        // counts the effects so far
    SharedVariables& host;  // the host's views
};

using ProgrammerFactory =
    std::function<std::unique_ptr<SessionProgrammer>(const ProgrammerSetting&)>;

}  // namespace keld2::host
