// How the host answers an editor: as a script says, on the terminal, or by cancelling it.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "platform/form.h"

namespace keld2::host {

class FormFrontEnd {
  public:
    virtual ~FormFrontEnd() = default;
    // Shows a loaded window and lets it be used until it is closed. Throws nothing: what is wrong
    // comes out of check().
    virtual void show(Form& form) = 0;
    // Throws HostError when a window could not be used as asked.
    virtual void check() const {}
};

// actions: the script (HostError 66 or 65 when it cannot be used), otherwise the terminal where
// there is one. log: where a script's windows are written.
std::unique_ptr<FormFrontEnd> makefrontend(const std::optional<std::filesystem::path>& actions,
                                           const std::optional<std::filesystem::path>& log);

}  // namespace keld2::host
