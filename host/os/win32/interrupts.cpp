#include "host/os/interrupts.h"

#include <windows.h>

#include <atomic>

namespace keld2::host::os {

namespace {

// A handler of the console gets no argument of ours: this is the one place that it can reach.
std::atomic<Interrupts::Handler>& handlerinuse() {
    static std::atomic<Interrupts::Handler> handler{nullptr};
    return handler;
}

BOOL WINAPI onevent(DWORD) {
    const Interrupts::Handler handler = handlerinuse();
    if (handler == nullptr) return FALSE;
    handler();
    return TRUE;
}

}  // namespace

struct Interrupts::Former {};

Interrupts::Interrupts(Handler handler) {
    handlerinuse() = handler;
    SetConsoleCtrlHandler(onevent, TRUE);
}

Interrupts::~Interrupts() {
    SetConsoleCtrlHandler(onevent, FALSE);
    handlerinuse() = nullptr;
}

void leave(int status) {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    for (;;) Sleep(INFINITE);
}

}  // namespace keld2::host::os
