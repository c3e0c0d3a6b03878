// usercode0: the editor of the 32-bit user code, in binary, hexadecimal and as text at once.
//
// The code lies in ibuffer[T] to [T + 31], T = tlength[0], one digit character a cell; the first
// cell is the first character of the binary view. A key typed in one view rebuilds the other two,
// and the caret then stands behind the typed character. OK writes the cells, Cancel does not.
#pragma once

#include "editors/cells.h"
#include "platform/form.h"

namespace keld2 {

class usercode0 final : public Form {
  public:
    explicit usercode0(SharedVariables& s);  // s must outlive the window

  private:
    void doload() override;
    bool dokeypress(Control& box, char16_t character) override;
    bool dokeydown(Control& box, int code) override;
    void dotyped(Control& box) override;
    void doclick(Control& button) override;

    void frombin();   // Text2 and Text3 from Text1
    void fromhex();   // Text1 and Text3 from Text2
    void fromtext();  // Text1 and Text2 from Text3
    void store();

    SharedVariables& s_;
    ImageCells cells_;
};

}  // namespace keld2
