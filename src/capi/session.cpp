#include "capi/session.h"

#include "shared/notes.h"

using keld2::capi::StatusError;

namespace {

keld2_callbacks checked(const keld2_callbacks& callbacks) {
    if (callbacks.size != sizeof(keld2_callbacks))
        throw StatusError(KELD2_EARGUMENT, "callbacks: size is " + std::to_string(callbacks.size) +
                                               ", expected " +
                                               std::to_string(sizeof(keld2_callbacks)));
    return callbacks;
}

keld2::PosixOptions machineof(const keld2_options& options, const keld2_session* session) {
    return {.scope = keld2::uniquescope(session),
            .folder = options.folder != nullptr ? options.folder : "."};
}

}  // namespace

keld2_session::keld2_session(const keld2_options& options, const keld2_callbacks& callbacks)
    : callbacks_{.table = checked(callbacks), .finishread = [this](int end) { finishread(end); }},
      platform_(machineof(options, this), callbacks_, [this] { writestop(); }),
      host_(platform_.memory(), platform_.strings()),
      module_(platform_, external()),
      plugin_(module_) {
    host_.maprows(options.instance, [] {
        throw StatusError(KELD2_EMEMORY, "a block of the shared variables cannot be made");
    });
    mapbuffers(options.buflength);
}

keld2::External keld2_session::external() {
    using namespace keld2::capi;
    return {.devcore = [this](auto&) { return std::make_unique<CallbackDevCore>(callbacks_); },
            .transport = [this](auto&) { return std::make_unique<CallbackTransport>(callbacks_); }};
}

void keld2_session::mapbuffers(std::int32_t buflength) {
    if (buflength < 0)
        throw StatusError(KELD2_EARGUMENT,
                          "buflength is " + std::to_string(buflength) + ", expected 0 or more");
    host_.buflength[0] = buflength;
    host_.mapbuffers([buflength] {
        throw StatusError(KELD2_EMEMORY, "a main buffer of " + std::to_string(buflength) + " and " +
                                             std::to_string(keld2::bufferextra) +
                                             " bytes cannot be made");
    });
}

void keld2_session::resize(std::int32_t buflength) {
    checkidle();
    module_.variables().releasebuffers();
    host_.releasebuffers();
    mapbuffers(buflength);
}

void keld2_session::checkthread() const {
    if (std::this_thread::get_id() != owner_)
        throw StatusError(KELD2_ETHREAD, "the session belongs to another thread");
}

void keld2_session::checkidle() const {
    if (busy_) throw StatusError(KELD2_EBUSY, "a method of the plug-in is at work");
}

void keld2_session::stop() {
    stopasked_ = true;
    platform_.wake();
}

// A stop is written at every service as long as the run goes on: some procedures clear the result
// cell when they begin.
void keld2_session::writestop() {
    namespace result = keld2::result;
    if (stopasked_ && host_.prgresult.acquire(0) == result::well)
        host_.prgresult.release(0, result::stopped);
}

void keld2_session::finishread(int state) {
    host_.usbpip2readresult.release(0, static_cast<std::uint8_t>(state));
    platform_.wake();
}

// lasterror belongs to the owning thread.
int keld2_session::remember(keld2_status status, const char* what) noexcept {
    if (status == KELD2_ETHREAD) return status;
    try {
        callbacks_.lasterror = what;
    } catch (const std::bad_alloc&) {
        callbacks_.lasterror.clear();
    }
    return status;
}
