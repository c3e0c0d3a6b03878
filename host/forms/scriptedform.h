// ScriptedForms: answers editors as a script says, and writes down what they show.
#pragma once

#include <filesystem>
#include <fstream>
#include <iosfwd>
#include <optional>

#include "host/forms/formfrontend.h"
#include "host/forms/formscript.h"
#include "host/hosterror.h"

namespace keld2::host {

class ScriptedForms final : public FormFrontEnd {
  public:
    // log: takes one JSON object a line, after load and after every action but an editor's last;
    // HostError 66 when it cannot be written. messages: where cancelled editors are told.
    ScriptedForms(FormScript script, const std::optional<std::filesystem::path>& log,
                  std::ostream& messages);

    // An editor whose actions are used up without ok or cancel is cancelled with a message; one
    // whose actions do not fit its controls is cancelled, and so are all that follow it.
    void show(Form& form) override;
    // HostError 65 when an action did not fit its editor, 66 when the log cannot be written.
    void check() const override;

  private:
    void play(Form& form, const std::vector<FormAction>& actions);
    std::optional<bool> carryout(Form& form, const FormAction& action) const;
    const Control& wanted(const Form& form, const FormAction& action, ControlKind kind) const;
    void checkindex(const Control& combo, const FormAction& action) const;
    [[noreturn]] void refuse(const FormAction& action, const std::string& wrong,
                             const std::string& expected) const;
    void writelog(const Form& form, std::optional<bool> passed);

    FormScript script_;
    std::filesystem::path logpath_;
    std::ofstream log_;
    std::ostream& messages_;
    std::size_t shown_ = 0;
    std::optional<HostError> error_;
};

}  // namespace keld2::host
