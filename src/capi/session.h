// The session of the C interface: a host's own views of the shared variables, the plug-in, and the
// callbacks between them.
#pragma once

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

#include "capi/callbackprogrammer.h"
#include "plugin/clskeld2.h"

namespace keld2::capi {

// An error for which the C interface has a status of its own.
class StatusError : public std::runtime_error {
  public:
    StatusError(keld2_status status, const std::string& what)
        : std::runtime_error(what), status_(status) {}
    keld2_status status() const { return status_; }

  private:
    keld2_status status_;
};

}  // namespace keld2::capi

struct keld2_session {
  public:
    // Throws StatusError (KELD2_EMEMORY, KELD2_EARGUMENT).
    keld2_session(const keld2_options& options, const keld2_callbacks& callbacks);
    keld2_session(const keld2_session&) = delete;
    keld2_session& operator=(const keld2_session&) = delete;

    // Runs work of the owning thread; what it throws becomes a status and lasterror.
    template <typename Work>
    int call(Work work) noexcept {
        try {
            checkthread();
            work(*this);
            return KELD2_OK;
        } catch (const keld2::capi::StatusError& error) {
            return remember(error.status(), error.what());
        } catch (const std::exception& error) {
            return remember(KELD2_EFAULT, error.what());
        }
    }
    // The same with a method of the plug-in, which callbacks must not call.
    template <typename Method>
    int method(Method run) noexcept {
        return call([&run](keld2_session& session) {
            session.checkidle();
            session.callbacks_.lasterror.clear();
            session.busy_ = true;
            run(session.plugin_);
            session.busy_ = false;
            session.stopasked_ = false;
            session.callbacks_.failure.clear();
        });
    }

    void checkthread() const;  // StatusError: the caller is another thread
    void checkidle() const;    // StatusError: a method is at work
    void resize(std::int32_t buflength);

    // From any thread.
    void stop();
    void finishread(int state);

    keld2::SharedVariables& variables() { return host_; }
    keld2::capi::Callbacks& callbacks() { return callbacks_; }
    const std::string& lasterror() const { return callbacks_.lasterror; }

  private:
    keld2::External external();
    void writestop();
    void mapbuffers(std::int32_t buflength);
    int remember(keld2_status status, const char* what) noexcept;

    const std::thread::id owner_ = std::this_thread::get_id();
    bool busy_ = false;
    std::atomic<bool> stopasked_ = false;
    keld2::capi::Callbacks callbacks_;
    keld2::capi::CallbackPlatform platform_;
    keld2::SharedVariables host_;
    keld2::Module module_;
    keld2::ClsKELD2 plugin_;
};
