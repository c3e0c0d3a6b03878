#include "mpu/usbkel2mpuprg.h"

#include "external/datstr.h"
#include "run/startup.h"

namespace keld2 {

// How one family is worked. An operation without a procedure passes and touches nothing.
struct MpuFamily {
    using Window = usbkel2mpuprg;
    std::uint8_t prgmode = 0;
    void (Window::*startup)() = nullptr;  // body of the hardware start-up
    void (Window::*readid)() = nullptr;   // fills the id bytes; without it they stay 0
    bool (Window::*readpossible)(int mode) const = nullptr;  // the job's numbers allow it
    void (Window::*read)(int mode) = nullptr;
    bool (Window::*programpossible)() const = nullptr;
    void (Window::*program)() = nullptr;
    bool (Window::*erasepossible)() const = nullptr;  // without it: always
    void (Window::*erase)() = nullptr;
    bool (Window::*configurationpossible)() const = nullptr;
    void (Window::*configuration)() = nullptr;
};

struct MpuFamilies {
    using Window = usbkel2mpuprg;
    static constexpr std::array rows{
        MpuFamily{.prgmode = 21,
                  .startup = &Window::serialstartup,
                  .readid = &Window::serialreadid,
                  .readpossible = &Window::serialreadpossible,
                  .read = &Window::serialread,
                  .programpossible = &Window::serialprogrampossible,
                  .program = &Window::serialprogram,
                  .erase = &Window::serialerase,
                  .configurationpossible = &Window::serialconfigurationpossible,
                  .configuration = &Window::serialconfiguration},
        MpuFamily{.prgmode = 22,
                  .startup = &Window::parallelstartup,
                  .readpossible = &Window::parallelreadpossible,
                  .read = &Window::parallelread,
                  .programpossible = &Window::byteprogrampossible,
                  .program = &Window::byteprogram,
                  .erasepossible = &Window::byteerasepossible,
                  .erase = &Window::byteerase},
        MpuFamily{.prgmode = 23,
                  .startup = &Window::parallelstartup,
                  .readpossible = &Window::parallelreadpossible,
                  .read = &Window::parallelread,
                  .programpossible = &Window::pageprogrampossible,
                  .program = &Window::pageprogram,
                  .erasepossible = &Window::parallelerasepossible,
                  .erase = &Window::pageerase},
    };
    static constexpr MpuFamily none{};

    static const MpuFamily& find(std::uint8_t prgmode) {
        for (const MpuFamily& row : rows)
            if (row.prgmode == prgmode) return row;
        return none;
    }
};

usbkel2mpuprg::usbkel2mpuprg(const RunContext& run)
    : RunWindow(run, "usbkel2mpuprg"),
      family_(&MpuFamilies::find(run.s.prgmode[0])),
      port_(run.devcore) {}

int usbkel2mpuprg::dohwstart() {
    if (const int ready = startup(); ready != status::goon) return ready;
    devcore().drivercommit();
    if (family_->startup != nullptr) (this->*family_->startup)();
    return status::goon;
}

int usbkel2mpuprg::dochipidcheck() {
    if (s().compid[0] == 0) return status::goon;
    for (;;) {
        if (family_->readid != nullptr) (this->*family_->readid)();
        const auto digits = [this](int i) {
            return bytedigits(run().helper, id_.at(static_cast<std::size_t>(i)));
        };
        const std::u16string codes = s().prgnote[9].text() + digits(0) + u"   " +
                                     s().prgnote[10].text() + digits(1) + digits(2);
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
    const auto carryout = [this](bool possible, auto procedure, auto... arguments) {
        if (possible)
            (this->*procedure)(arguments...);
        else
            s().prgresult.release(0, result::failed);
    };
    const auto allowed = [this](auto check, auto... arguments) {
        return check == nullptr || (this->*check)(arguments...);
    };
    const MpuFamily& f = *family_;
    if (op >= operation::read && op <= operation::compare && f.read != nullptr) {
        const int mode = op - operation::read;
        carryout(allowed(f.readpossible, mode), f.read, mode);
    } else if (op == operation::program && f.program != nullptr) {
        carryout(allowed(f.programpossible), f.program);
    } else if (op == operation::erase && f.erase != nullptr) {
        carryout(allowed(f.erasepossible), f.erase);
    } else if (op == operation::configuration && f.configuration != nullptr) {
        carryout(allowed(f.configurationpossible), f.configuration);
    }
}

}  // namespace keld2
