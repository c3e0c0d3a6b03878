// A form as a native modal window.
#pragma once

namespace keld2 {

class Form;

// Shows a loaded form over the active window and returns when it has closed. The controls are the
// system's own; every event goes to the form, and the window shows what the form makes of it.
void showformwindow(Form& form);

}  // namespace keld2
