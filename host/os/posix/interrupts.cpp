#include "host/os/interrupts.h"

#include <unistd.h>

#include <atomic>
#include <csignal>

namespace keld2::host::os {

namespace {

// A signal handler gets no argument of ours: this is the one place that it can reach.
std::atomic<Interrupts::Handler>& handlerinuse() {
    static std::atomic<Interrupts::Handler> handler{nullptr};
    return handler;
}

extern "C" void onsignal(int) {
    if (const Interrupts::Handler handler = handlerinuse()) handler();
}

}  // namespace

struct Interrupts::Former {
    struct sigaction interrupt {};
    struct sigaction terminate {};
    struct sigaction hangup {};
    struct sigaction brokenpipe {};
};

Interrupts::Interrupts(Handler handler) : former_(std::make_unique<Former>()) {
    handlerinuse() = handler;
    struct sigaction action {};
    action.sa_handler = onsignal;
    ::sigaction(SIGINT, &action, &former_->interrupt);
    ::sigaction(SIGTERM, &action, &former_->terminate);
    ::sigaction(SIGHUP, &action, &former_->hangup);
    if (former_->hangup.sa_handler == SIG_IGN) ::sigaction(SIGHUP, &former_->hangup, nullptr);
    action.sa_handler = SIG_IGN;  // a reader of the log that has gone ends no run
    ::sigaction(SIGPIPE, &action, &former_->brokenpipe);
}

Interrupts::~Interrupts() {
    ::sigaction(SIGINT, &former_->interrupt, nullptr);
    ::sigaction(SIGTERM, &former_->terminate, nullptr);
    ::sigaction(SIGHUP, &former_->hangup, nullptr);
    ::sigaction(SIGPIPE, &former_->brokenpipe, nullptr);
}

void leave(int status) { ::_exit(status); }

}  // namespace keld2::host::os
