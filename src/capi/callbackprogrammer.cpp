#include "capi/callbackprogrammer.h"

#include <utility>

#include "platform/fault.h"
#include "platform/numbers.h"

namespace keld2::capi {

// The C names stand for the same numbers.
static_assert(static_cast<int>(BoxButtons::abortretryignore) == KELD2_BOX_ABORTRETRYIGNORE);
static_assert(static_cast<int>(BoxAnswer::ignore) == KELD2_ANSWER_IGNORE);
static_assert(static_cast<int>(WindowChange::Kind::pexithidden) == KELD2_WINDOW_STOPHIDDEN);
static_assert(static_cast<int>(BulkState::done) == KELD2_READ_DONE);
static_assert(static_cast<int>(BulkState::failed) == KELD2_READ_FAILED);

void Callbacks::raise() {
    if (!failure.empty()) fault(std::exchange(failure, {}));
}

void Callbacks::fault(const std::string& what) {
    lasterror = what;
    throw RunFault(what);
}

void CallbackPlatform::service() {
    c_.tell(c_.table.service);
    PosixPlatform::service();
    served_();
}

BoxAnswer CallbackPlatform::messagebox(const Box& box) {
    if (c_.table.messagebox == nullptr) return PosixPlatform::messagebox(box);
    const std::string title = utf8(box.title), text = utf8(box.text);
    const int answer = c_.ask("messagebox", c_.table.messagebox, static_cast<int>(box.buttons),
                              title.c_str(), text.c_str());
    const bool known = answer >= KELD2_ANSWER_OK && answer <= KELD2_ANSWER_IGNORE;
    return known ? static_cast<BoxAnswer>(answer) : safeanswer(box.buttons);
}

void CallbackPlatform::window(std::string_view name, const WindowChange& change) {
    const std::string window(name), text = utf8(change.text);
    c_.tell(c_.table.window, window.c_str(), static_cast<int>(change.kind), change.twips,
            text.c_str());
}

}  // namespace keld2::capi
