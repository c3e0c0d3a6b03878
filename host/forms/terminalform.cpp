#include "host/forms/terminalform.h"

#include <algorithm>
#include <charconv>
#include <iomanip>
#include <istream>
#include <optional>
#include <ostream>

#include "host/text/boxtext.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

// Whether the control stands within its frame and the window, where a user sees it.
bool insight(const Form& form, const Control& control) {
    for (const Control* c = &control; c != nullptr;) {
        const Control* frame = form.find(c->container);
        if (!c->visible || c->left >= (frame != nullptr ? frame->width : form.width()))
            return false;
        c = frame;
    }
    return true;
}

bool isfield(ControlKind kind) {
    return kind == ControlKind::combo || kind == ControlKind::text || kind == ControlKind::option;
}

std::optional<int> wholenumber(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    return whole ? std::optional(value) : std::nullopt;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string contentof(const Control& field) {
    if (field.kind == ControlKind::option)
        return (field.selected ? "(*) " : "( ) ") + utf8(field.text) +
               (field.enabled ? "" : "  (cannot be chosen)");
    if (field.kind == ControlKind::text) return quotedtext(field.text);
    std::string content = utf8(field.text) + "  [";
    for (std::size_t i = 0; i < field.entries.size(); ++i)
        content += (i == 0 ? "" : ", ") + std::to_string(i) + " " + utf8(field.entries[i]);
    return content + "]";
}

}  // namespace

void TerminalForms::show(Form& form) {
    fields_.clear();
    for (const Control& control : form.controls())
        if (isfield(control.kind) && insight(form, control)) fields_.push_back(control.name);
    for (std::string line; !form.closed();) {
        print(form);
        if (!std::getline(in_, line)) {
            out_ << "\nkeld2: " << form.name() << " is cancelled: the input has ended\n";
            form.dismiss();
            return;
        }
        carryout(form, trimmed(line));
    }
}

void TerminalForms::print(const Form& form) const {
    out_ << "\n== " << utf8(form.caption()) << " ==\n";
    std::string label;
    for (const Control& control : form.controls()) {
        if (!insight(form, control)) continue;
        if (control.kind == ControlKind::frame && !control.text.empty())
            out_ << utf8(control.text) << '\n';
        if (control.kind == ControlKind::label) label = utf8(control.text) + "  ";
        const auto field = std::ranges::find(fields_, control.name);
        if (field == fields_.end()) continue;
        out_ << std::setw(4) << field - fields_.begin() + 1 << "  " << label << contentof(control)
             << '\n';
        label.clear();
    }
    out_ << "NUMBER=VALUE to fill a field, NUMBER to select an option, ok or cancel: "
         << std::flush;
}

void TerminalForms::carryout(Form& form, const std::string& line) {
    if (line == "ok") return form.click("OKButton");
    if (line == "cancel") return form.click("CancelButton");
    const std::size_t equals = line.find('=');
    const auto number = wholenumber(trimmed(line.substr(0, equals)));
    if (!number || *number < 1 || std::cmp_greater(*number, fields_.size())) {
        out_ << "no such field, expected a number from 1 to " << fields_.size() << '\n';
        return;
    }
    const Control& field = form.control(fields_[static_cast<std::size_t>(*number - 1)]);
    if (field.kind == ControlKind::option && equals == std::string::npos)
        form.click(field.name);
    else if (field.kind != ControlKind::option && equals != std::string::npos)
        fill(form, field, line.substr(equals + 1));
    else
        out_ << "expected " << (equals == std::string::npos ? "NUMBER=VALUE" : "NUMBER alone")
             << " for this field\n";
}

void TerminalForms::fill(Form& form, const Control& field, const std::string& value) {
    if (field.kind == ControlKind::combo) {
        const auto index = wholenumber(trimmed(value));
        if (!index || *index < 0 || std::cmp_greater_equal(*index, field.entries.size()))
            out_ << "no such entry, expected a number from 0 to " << field.entries.size() - 1
                 << '\n';
        else
            form.choose(field.name, *index);
        return;
    }
    form.setselection(field.name, 0);
    for (const char16_t character : utf16(value))
        if (!form.keypress(field.name, character))
            out_ << "refused: " << quotedtext(std::u16string(1, character)) << '\n';
}

}  // namespace keld2::host
