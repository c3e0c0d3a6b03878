#include "host/forms/formfrontend.h"

#include <iostream>

#include "host/forms/scriptedform.h"
#include "host/forms/terminalform.h"
#include "host/os/terminal.h"

namespace keld2::host {

namespace {

class NobodyThere final : public FormFrontEnd {
  public:
    void show(Form& form) override {
        std::cerr << "keld2: " << form.name()
                  << " is cancelled: there is no terminal to answer it, expected --form ACTIONS\n";
        form.dismiss();
    }
};

}  // namespace

std::unique_ptr<FormFrontEnd> makefrontend(const std::optional<std::filesystem::path>& actions,
                                           const std::optional<std::filesystem::path>& log) {
    if (actions) return std::make_unique<ScriptedForms>(readformscript(*actions), log, std::cerr);
    if (os::isterminal(os::Stream::input) && os::isterminal(os::Stream::output))
        return std::make_unique<TerminalForms>(std::cin, std::cout);
    return std::make_unique<NobodyThere>();
}

}  // namespace keld2::host
