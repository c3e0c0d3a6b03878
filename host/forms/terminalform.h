// TerminalForms: shows an editor as text and takes its input as lines.
//
// Every field has a number. "3=1" puts value 1 into field 3 (a combo by its entry's index, a text
// typed from its first character on), "5" selects the option 5; "ok" and "cancel" close.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "host/forms/formfrontend.h"

namespace keld2::host {

class TerminalForms final : public FormFrontEnd {
  public:
    TerminalForms(std::istream& in, std::ostream& out) : in_(in), out_(out) {}
    // The end of the input cancels the editor with a message.
    void show(Form& form) override;

  private:
    void print(const Form& form) const;
    void carryout(Form& form, const std::string& line);
    void fill(Form& form, const Control& field, const std::string& value);

    std::istream& in_;
    std::ostream& out_;
    std::vector<std::string> fields_;  // names of the numbered controls
};

}  // namespace keld2::host
