#include "platform/platform.h"

namespace keld2 {

BoxAnswer safeanswer(BoxButtons buttons) {
    switch (buttons) {
        case BoxButtons::okcancel:
            return BoxAnswer::cancel;
        case BoxButtons::abortretryignore:
            return BoxAnswer::abort;
        default:
            return BoxAnswer::ok;
    }
}

}  // namespace keld2
