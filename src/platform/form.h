// Form: a modal window as data, with the events that a user can cause.
//
// A front end (a desktop, a terminal, a script) shows the controls and passes events to the
// public members below; each event runs the window's own handlers, and the front end then shows
// what has changed. Texts in boxes are ANSI: each character is a code from 0 to 255. Sizes and
// places are in twips (1/1440 inch), a place is relative to the control's container.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace keld2 {

inline constexpr int twipsperpixel = 15;  // at 96 pixels an inch

enum class ControlKind { frame, label, combo, text, option, button };

// What a window's layout says of a control before the window has loaded.
struct ControlLayout {
    std::string_view name;
    ControlKind kind;
    std::string_view container = {};  // the frame it stands in; empty: the window itself
    std::u16string_view text = {};    // caption, or content of a text box
    int left = 0, top = 0, width = 0, height = 0;
    std::size_t limit = 0;  // of a text box, in characters; 0: none
};

struct Control {
    std::string name;  // an array's control with its index: "Combo1(0)"
    ControlKind kind = ControlKind::label;
    std::string container;
    std::u16string text;  // caption, content of a text box, or the entry shown by a combo
    int left = 0, top = 0, width = 0, height = 0;
    bool enabled = true;
    bool visible = true;

    std::size_t limit = 0;      // text: most characters, 0: no limit
    std::size_t caret = 0;      // text: characters before the caret or the selection
    std::size_t selection = 0;  // text: characters selected

    std::vector<std::u16string> entries;  // combo
    int index = -1;                       // combo: entry shown, -1: none

    bool selected = false;  // option
};

namespace keys {
inline constexpr char16_t backspace = 8;  // a key press
// key codes of key downs
inline constexpr int end = 35, home = 36, left = 37, right = 39, del = 46;
}  // namespace keys

class Form {
  public:
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }
    const std::u16string& caption() const { return caption_; }
    int width() const { return width_; }    // of the whole window
    int height() const { return height_; }  // of the whole window
    bool closed() const { return closed_; }
    bool accepted() const { return accepted_; }  // closed so that it has written
    int beeps() const { return beeps_; }         // since the window was made
    const std::vector<Control>& controls() const { return controls_; }
    const Control* find(std::string_view name) const;     // nullptr: no such control
    const Control& control(std::string_view name) const;  // RunFault: no such control
    // Enabled and visible, and so are the frames that it stands in.
    bool reachable(const Control& control) const;

    // --- events; each does nothing on a control of another kind or out of the user's reach ---

    // Comes first, before the window is shown.
    void load();
    // A character is typed into a box. The window's filter may refuse it; what passes takes the
    // place of the selection, up to the box's limit. Tells whether the key passed.
    bool keypress(std::string_view box, char16_t character);
    // A key goes down in a box. What passes does what the key does in a box: Delete deletes, the
    // arrows, Home and End move the caret. Tells whether the key passed.
    bool keydown(std::string_view box, int code);
    // Puts the caret or a selection into a box; values beyond the text are cut to it.
    void setselection(std::string_view box, std::size_t position, std::size_t length = 0);
    void choose(std::string_view combo, int index);  // an index beyond the entries does nothing
    // A click: an option becomes the selected one of its frame, a button does what it does.
    void click(std::string_view name);
    // The user closes the window by its frame or the keyboard: nothing is written.
    void dismiss() { closed_ = true; }

  protected:
    Form(std::string name, int width, int height)
        : name_(std::move(name)), width_(width), height_(height) {}

    void add(const ControlLayout& layout);
    Control& at(std::string_view name);
    void moveto(std::string_view name, int left, int top);
    void setcaption(std::u16string_view caption) { caption_ = caption; }
    void setsize(int width, int height) { width_ = width, height_ = height; }
    void settext(Control& box, std::u16string_view text);  // puts the caret to the beginning
    void select(Control& box, std::size_t position, std::size_t length);
    void setindex(Control& combo, int index);
    void selectoption(Control& option);
    void beep() { ++beeps_; }
    void close(bool accepted) { closed_ = true, accepted_ = accepted; }

  private:
    virtual void doload() = 0;
    // Tells whether the character is let through; may change the box's selection.
    virtual bool dokeypress(Control& box, char16_t character) = 0;
    // Tells whether the key is let through.
    virtual bool dokeydown(Control& box, int code) = 0;
    // A key that passed has done its work in the box.
    virtual void dotyped(Control& box) = 0;
    virtual void doclick(Control& button) = 0;

    Control* reached(std::string_view name, ControlKind kind);

    std::string name_;
    std::u16string caption_;
    int width_ = 0, height_ = 0;
    std::vector<Control> controls_;
    bool closed_ = false;
    bool accepted_ = false;
    int beeps_ = 0;
};

}  // namespace keld2
