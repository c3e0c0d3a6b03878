#include "platform/form.h"

#include <algorithm>

#include "platform/fault.h"

namespace keld2 {

namespace {

constexpr char16_t lastcharacter = 255;  // of the ANSI characters

// Puts character in place of the selection, as far as the limit lets it.
void replaceselection(Control& box, char16_t character) {
    box.text.erase(box.caret, box.selection);
    box.selection = 0;
    if (box.limit != 0 && box.text.size() >= box.limit) return;
    box.text.insert(box.caret, 1, character);
    ++box.caret;
}

void deleteforward(Control& box) {
    box.text.erase(box.caret, std::max<std::size_t>(box.selection, 1));
    box.selection = 0;
}

void deletebackward(Control& box) {
    if (box.selection == 0 && box.caret == 0) return;
    if (box.selection == 0) {
        --box.caret;
        box.selection = 1;
    }
    deleteforward(box);
}

void movecaret(Control& box, int code) {
    const std::size_t behind = box.caret + box.selection;
    switch (code) {
        case keys::home:
            box.caret = 0;
            break;
        case keys::end:
            box.caret = box.text.size();
            break;
        case keys::left:
            if (box.selection == 0 && box.caret > 0) --box.caret;
            break;
        case keys::right:
            box.caret = box.selection != 0 ? behind : std::min(behind + 1, box.text.size());
            break;
        default:
            return;
    }
    box.selection = 0;
}

}  // namespace

const Control* Form::find(std::string_view name) const {
    const auto found = std::ranges::find(controls_, name, &Control::name);
    return found == controls_.end() ? nullptr : &*found;
}

const Control& Form::control(std::string_view name) const {
    const Control* found = find(name);
    if (found == nullptr) throw RunFault("no control named " + std::string(name), name_);
    return *found;
}

Control& Form::at(std::string_view name) {
    return controls_[static_cast<std::size_t>(&control(name) - controls_.data())];
}

bool Form::reachable(const Control& control) const {
    for (const Control* c = &control; c != nullptr; c = find(c->container))
        if (!c->visible || !c->enabled) return false;
    return true;
}

Control* Form::reached(std::string_view name, ControlKind kind) {
    const Control* found = find(name);
    const bool ready = !closed_ && found != nullptr && found->kind == kind && reachable(*found);
    return ready ? &at(name) : nullptr;
}

void Form::load() { doload(); }

bool Form::keypress(std::string_view name, char16_t character) {
    Control* box = reached(name, ControlKind::text);
    const bool passed = box != nullptr && dokeypress(*box, character) && character <= lastcharacter;
    if (!passed) return false;
    if (character == keys::backspace)
        deletebackward(*box);
    else
        replaceselection(*box, character);
    dotyped(*box);
    return true;
}

bool Form::keydown(std::string_view name, int code) {
    Control* box = reached(name, ControlKind::text);
    if (box == nullptr || !dokeydown(*box, code)) return false;
    if (code == keys::del && box->caret < box->text.size()) {
        deleteforward(*box);
        dotyped(*box);
    }
    movecaret(*box, code);
    return true;
}

void Form::setselection(std::string_view name, std::size_t position, std::size_t length) {
    if (Control* box = reached(name, ControlKind::text)) select(*box, position, length);
}

void Form::choose(std::string_view name, int index) {
    Control* combo = reached(name, ControlKind::combo);
    const bool there =
        combo != nullptr && index >= 0 && std::cmp_less(index, combo->entries.size());
    if (there) setindex(*combo, index);
}

void Form::click(std::string_view name) {
    if (Control* option = reached(name, ControlKind::option)) selectoption(*option);
    if (Control* button = reached(name, ControlKind::button)) doclick(*button);
}

void Form::add(const ControlLayout& layout) {
    Control control;
    control.name = layout.name;
    control.kind = layout.kind;
    control.container = layout.container;
    control.text = layout.text;
    control.left = layout.left;
    control.top = layout.top;
    control.width = layout.width;
    control.height = layout.height;
    control.limit = layout.limit;
    controls_.push_back(std::move(control));
}

void Form::moveto(std::string_view name, int left, int top) {
    Control& control = at(name);
    control.left = left;
    control.top = top;
}

void Form::settext(Control& box, std::u16string_view text) {
    box.text = box.limit == 0 ? text : text.substr(0, box.limit);
    box.caret = box.selection = 0;
}

void Form::select(Control& box, std::size_t position, std::size_t length) {
    box.caret = std::min(position, box.text.size());
    box.selection = std::min(length, box.text.size() - box.caret);
}

void Form::setindex(Control& combo, int index) {
    combo.index = index;
    combo.text = combo.entries.at(static_cast<std::size_t>(index));
}

void Form::selectoption(Control& option) {
    for (Control& other : controls_)
        if (other.kind == ControlKind::option && other.container == option.container)
            other.selected = &other == &option;
}

}  // namespace keld2
