#include "host/forms/scriptedform.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "platform/numbers.h"

namespace keld2::host {

namespace {

using nlohmann::ordered_json;
using Kind = FormAction::Kind;

std::string_view nameof(ControlKind kind) {
    constexpr std::string_view names[]{"a frame",    "a label",   "a combo",
                                       "a text box", "an option", "a button"};
    return names[static_cast<std::size_t>(kind)];
}

ordered_json jsonof(const Control& control) {
    ordered_json object{{"text", utf8(control.text)}};
    if (control.kind == ControlKind::combo) {
        object["entries"] = ordered_json::array();
        for (const std::u16string& entry : control.entries)
            object["entries"].push_back(utf8(entry));
        object["index"] = control.index;
    }
    if (control.kind == ControlKind::option) object["selected"] = control.selected;
    if (control.kind == ControlKind::text) {
        object["caret"] = control.caret;
        object["selection"] = control.selection;
    }
    object["enabled"] = control.enabled;
    object["visible"] = control.visible;
    object["left"] = control.left;
    object["top"] = control.top;
    return object;
}

}  // namespace

ScriptedForms::ScriptedForms(FormScript script, const std::optional<std::filesystem::path>& log,
                             std::ostream& messages)
    : script_(std::move(script)), logpath_(log.value_or("")), messages_(messages) {
    if (!log) return;
    log_.open(logpath_, std::ios::binary | std::ios::trunc);
    if (!log_)
        throw HostError(exitstatus::nofile, logpath_.string() + ": cannot be opened for writing");
}

void ScriptedForms::show(Form& form) {
    const bool more = shown_ < script_.editors.size();
    try {
        if (!error_) play(form, more ? script_.editors[shown_] : std::vector<FormAction>{});
    } catch (const HostError& error) {
        error_ = error;
    }
    ++shown_;
    if (!form.closed() && !error_)
        messages_ << "keld2: " << form.name() << " is cancelled: " << script_.path.string()
                  << " has no further actions for it, expected [\"ok\"] or [\"cancel\"]\n";
    form.dismiss();
}

void ScriptedForms::check() const {
    if (error_) throw HostError(*error_);
    if (!log_) throw HostError(exitstatus::nofile, logpath_.string() + ": cannot be written");
}

void ScriptedForms::play(Form& form, const std::vector<FormAction>& actions) {
    writelog(form, {});
    for (const FormAction& action : actions) {
        const std::optional<bool> passed = carryout(form, action);
        if (&action != &actions.back()) writelog(form, passed);
    }
}

// Answers whether a key passed, nothing for all other actions.
std::optional<bool> ScriptedForms::carryout(Form& form, const FormAction& action) const {
    switch (action.kind) {
        case Kind::caret:
            wanted(form, action, ControlKind::text);
            form.setselection(action.control, static_cast<std::size_t>(action.number),
                              static_cast<std::size_t>(action.selection));
            break;
        case Kind::key:
            wanted(form, action, ControlKind::text);
            return form.keypress(action.control, action.character);
        case Kind::keydown:
            wanted(form, action, ControlKind::text);
            return form.keydown(action.control, static_cast<int>(action.number));
        case Kind::choose:
            checkindex(wanted(form, action, ControlKind::combo), action);
            form.choose(action.control, static_cast<int>(action.number));
            break;
        case Kind::select:
            wanted(form, action, ControlKind::option);
            form.click(action.control);
            break;
        case Kind::ok:
            form.click("OKButton");
            break;
        case Kind::cancel:
            form.click("CancelButton");
            break;
    }
    return std::nullopt;
}

const Control& ScriptedForms::wanted(const Form& form, const FormAction& action,
                                     ControlKind kind) const {
    const Control* found = form.find(action.control);
    if (found != nullptr && found->kind == kind) return *found;
    std::string names;
    for (const Control& control : form.controls())
        if (control.kind == kind) names += (names.empty() ? "" : ", ") + control.name;
    const std::string kindname(nameof(kind));
    refuse(action,
           action.control + (found == nullptr ? " is no control of " + form.name()
                                              : " is " + std::string(nameof(found->kind))),
           names.empty() ? "a window with " + kindname : kindname + ": " + names);
}

void ScriptedForms::checkindex(const Control& combo, const FormAction& action) const {
    if (std::cmp_less(action.number, combo.entries.size())) return;
    refuse(action, combo.name + " has no entry " + std::to_string(action.number),
           combo.entries.empty()
               ? "a combo with entries"
               : "an index from 0 to " + std::to_string(combo.entries.size() - 1));
}

void ScriptedForms::refuse(const FormAction& action, const std::string& wrong,
                           const std::string& expected) const {
    throw HostError(exitstatus::data, script_.path.string() + ":" + std::to_string(action.line) +
                                          ": " + wrong + ", expected " + expected);
}

void ScriptedForms::writelog(const Form& form, std::optional<bool> passed) {
    if (!log_.is_open()) return;
    ordered_json object{{"window", form.name()},
                        {"caption", utf8(form.caption())},
                        {"width", form.width()},
                        {"height", form.height()},
                        {"beeps", form.beeps()}};
    if (passed) object["passed"] = *passed;
    ordered_json& controls = object["controls"] = ordered_json::object();
    for (const Control& control : form.controls()) controls[control.name] = jsonof(control);
    log_ << object.dump() << '\n';
    log_.flush();
}

}  // namespace keld2::host
