#include "platform/win32/win32platform.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include "platform/win32/formwindow.h"

namespace keld2 {

namespace {

std::wstring wide(const std::u16string& text) { return {text.begin(), text.end()}; }

std::int64_t now() { return static_cast<std::int64_t>(GetTickCount64()); }  // ms

UINT boxflags(const Box& box) {
    constexpr std::array<UINT, 3> buttons{MB_OK, MB_OKCANCEL, MB_ABORTRETRYIGNORE};
    constexpr std::array<UINT, 4> icons{0, MB_ICONINFORMATION, MB_ICONQUESTION, MB_ICONEXCLAMATION};
    return buttons.at(static_cast<std::size_t>(box.buttons)) |
           icons.at(static_cast<std::size_t>(box.icon)) | MB_TASKMODAL;
}

BoxAnswer answerof(int pressed, BoxButtons buttons) {
    switch (pressed) {
        case IDOK:
            return BoxAnswer::ok;
        case IDCANCEL:
            return BoxAnswer::cancel;
        case IDRETRY:
            return BoxAnswer::retry;
        case IDIGNORE:
            return BoxAnswer::ignore;
        case IDABORT:
            return BoxAnswer::abort;
        default:
            return buttons == BoxButtons::abortretryignore ? BoxAnswer::abort : BoxAnswer::cancel;
    }
}

// A part that cannot lead out of its folder.
bool plainpart(const std::u16string& part) {
    return !part.empty() && part != u"." && part != u".." &&
           part.find_first_of(std::u16string_view(u"\\/:\0", 4)) == std::u16string::npos;
}

std::wstring currentfolder() {
    std::wstring folder(32768, L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    return folder;
}

class OpenFile {
  public:
    explicit OpenFile(const std::wstring& path)
        : handle_(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    ~OpenFile() {
        if (opened()) CloseHandle(handle_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool opened() const { return handle_ != INVALID_HANDLE_VALUE; }
    FileContent content() const {
        LARGE_INTEGER size{};
        DWORD taken = 0;
        if (GetFileSizeEx(handle_, &size) == FALSE || size.HighPart != 0) return {};
        FileContent file{.status = FileContent::Status::read, .bytes = {}};
        file.bytes.resize(size.LowPart);
        const BOOL done = ReadFile(handle_, file.bytes.data(), size.LowPart, &taken, nullptr);
        return done != FALSE && taken == size.LowPart ? file : FileContent{};
    }

  private:
    HANDLE handle_;
};

}  // namespace

Win32Platform::Win32Platform(Win32Options options)
    : folder_(std::move(options.folder)),
      memory_(std::move(options.scope)),
      wakeevent_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

Win32Platform::~Win32Platform() { CloseHandle(wakeevent_); }

void Win32Platform::service() {
    const bool messages = servemessages();
    const bool timers = timers_.run(now());
    if (messages || timers) return;
    HANDLE event = wakeevent_;
    MsgWaitForMultipleObjects(1, &event, FALSE, 1, QS_ALLINPUT);
}

void Win32Platform::wake() { SetEvent(wakeevent_); }

bool Win32Platform::servemessages() {
    bool any = false;
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE; any = true) {
        if (message.message == WM_QUIT) {  // for the host's own loop
            PostQuitMessage(static_cast<int>(message.wParam));
            return true;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return any;
}

TimerId Win32Platform::settimer(std::int32_t milliseconds, std::function<void()> handler) {
    return timers_.add(now(), milliseconds, std::move(handler));
}

BoxAnswer Win32Platform::messagebox(const Box& box) {
    const int pressed = MessageBoxW(GetActiveWindow(), wide(box.text).c_str(),
                                    wide(box.title).c_str(), boxflags(box));
    return answerof(pressed, box.buttons);
}

FileContent Win32Platform::readfile(std::span<const std::u16string> parts) {
    if (!std::ranges::all_of(parts, plainpart))
        return {.status = FileContent::Status::refused, .bytes = {}};
    std::wstring path = folder_.empty() ? currentfolder() : folder_;
    for (const std::u16string& part : parts) path += L"\\" + wide(part);
    const OpenFile file(path);
    return file.opened() ? file.content() : FileContent{};
}

double Win32Platform::secondssincemidnight() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now.wHour * 3600.0 + now.wMinute * 60.0 + now.wSecond + now.wMilliseconds / 1000.0;
}

void Win32Platform::showform(Form& form) { showformwindow(form); }

}  // namespace keld2
