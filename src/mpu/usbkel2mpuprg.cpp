#include "mpu/usbkel2mpuprg.h"

#include "external/datstr.h"
#include "mpu/parallelmcu.h"
#include "mpu/serialmcu.h"
#include "run/startup.h"

namespace keld2 {

int usbkel2mpuprg::dohwstart() {
    if (const int ready = startup(); ready != status::goon) return ready;
    devcore().drivercommit();
    familystartup();
    return status::goon;
}

int usbkel2mpuprg::dochipidcheck() {
    if (s().compid[0] == 0) return status::goon;
    for (;;) {
        readid(id_);
        const auto digits = [this](int i) {
            return bytedigits(run().helper, id_.at(static_cast<std::size_t>(i)));
        };
        const std::u16string codes = s().prgnote[note::maker].text() + digits(0) + u"   " +
                                     s().prgnote[note::device].text() + digits(1) + digits(2);
        if (id_[1] == s().typeid_[0] && id_[0] == s().compid[0]) {
            appendlog(s(), u">>" + codes + u"\n");
            return status::goon;
        }
        const BoxAnswer answer = platform().messagebox(
            {.buttons = BoxButtons::abortretryignore,
             .icon = BoxIcon::exclamation,
             .title = owntext(s(), TextId::warning) + owntext(s(), TextId::devicecodeerror),
             .text = codes});
        if (answer == BoxAnswer::ignore) return status::goon;
        if (answer == BoxAnswer::retry) continue;
        devcore().powerdown();
        return status::ended;
    }
}

void usbkel2mpuprg::dooperation(std::int16_t op) {
    if (possible(op))
        carryout(op);
    else
        s().prgresult.release(0, result::failed);
}

std::unique_ptr<RunWindow> makempuwindow(const RunContext& run) {
    switch (run.s.prgmode[0]) {
        case 21:
            return std::make_unique<SerialMcu>(run);
        case 22:
            return std::make_unique<ByteMcu>(run);
        case 23:
            return std::make_unique<PageMcu>(run);
        default:
            return std::make_unique<usbkel2mpuprg>(run);
    }
}

}  // namespace keld2
