// edit_figkeld2: the editor of the configuration bytes that travel with the chip's data.
//
// prgmode[0] picks what is edited: 21 the fuse byte ibuffer[T - 16] and the lock byte
// ibuffer[T - 15]; 1, 2 and 3 the user code ibuffer[T] to [T + 3] and the option byte [T + 4],
// with T = tlength[0]. For any other value nothing is bound. OK writes, Cancel does not.
#pragma once

#include "editors/cells.h"
#include "external/datstr.h"
#include "platform/form.h"

namespace keld2 {

class edit_figkeld2 final : public Form {
  public:
    // s and helper must outlive the window.
    edit_figkeld2(SharedVariables& s, TextHelper& helper);

  private:
    void doload() override;
    bool dokeypress(Control& box, char16_t character) override;
    bool dokeydown(Control& box, int code) override;
    void dotyped(Control&) override {}
    void doclick(Control& button) override;

    void loadlockbits();
    void loadoptions();
    void storelockbits();
    void storeoptions();

    SharedVariables& s_;
    TextHelper& helper_;
    ImageCells cells_;
};

}  // namespace keld2
