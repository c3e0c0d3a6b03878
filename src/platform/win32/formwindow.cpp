#include "platform/win32/formwindow.h"

#include <windows.h>
//
#include <commctrl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/form.h"

namespace keld2 {

namespace {

constexpr wchar_t windowclass[] = L"tq5keld2.form";
constexpr WORD firstid = 100;  // of the child windows, in the order of the controls
constexpr UINT_PTR boxsubclass = 1;
constexpr int combodrop = 6;  // heights of a combo that its open list may take
constexpr int twipsperinch = 1440;

// As the system can show it: a text ends for it at a character 0, which so stands as a space.
std::wstring wide(const std::u16string& text) {
    std::wstring shown(text.begin(), text.end());
    std::ranges::replace(shown, L'\0', L' ');
    return shown;
}

// How the system makes a control of a kind.
struct NativeKind {
    const wchar_t* windowclass;
    DWORD style;
};

NativeKind nativekind(ControlKind kind) {
    switch (kind) {
        case ControlKind::frame:
            return {L"BUTTON", BS_GROUPBOX};
        case ControlKind::label:
            return {L"STATIC", SS_LEFT | SS_NOPREFIX};
        case ControlKind::combo:
            return {L"COMBOBOX", CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL};
        case ControlKind::text:
            return {L"EDIT", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP};
        case ControlKind::option:
            return {L"BUTTON", BS_RADIOBUTTON | WS_TABSTOP};
        case ControlKind::button:
            return {L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP};
    }
    return {L"STATIC", 0};
}

class FormWindow {
  public:
    explicit FormWindow(Form& form) : form_(form), owner_(GetActiveWindow()) {}
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;
    ~FormWindow() {
        if (window_ != nullptr) DestroyWindow(window_);
    }

    void show() {
        if (!create()) return form_.dismiss();
        if (owner_ != nullptr) EnableWindow(owner_, FALSE);
        ShowWindow(window_, SW_SHOW);
        serve();
        if (owner_ != nullptr) {
            EnableWindow(owner_, TRUE);
            SetForegroundWindow(owner_);
        }
    }

  private:
    struct Child {
        HWND window;
        std::string name;
    };

    // --- making the window ---

    bool create() {
        WNDCLASSW description{};
        description.lpfnWndProc = &FormWindow::procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        description.lpszClassName = windowclass;
        RegisterClassW(&description);  // again for each window: an error then means it is there
        const HDC screen = GetDC(nullptr);
        dotsperinch_ = GetDeviceCaps(screen, LOGPIXELSX);
        ReleaseDC(nullptr, screen);
        window_ = CreateWindowExW(WS_EX_DLGMODALFRAME, windowclass, wide(form_.caption()).c_str(),
                                  WS_POPUP | WS_CAPTION | WS_SYSMENU, CW_USEDEFAULT, CW_USEDEFAULT,
                                  pixels(form_.width()), pixels(form_.height()), owner_, nullptr,
                                  description.hInstance, nullptr);
        if (window_ == nullptr) return false;
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        for (const Control& control : form_.controls()) addchild(control);
        refresh();
        return true;
    }

    void addchild(const Control& control) {
        const auto [kind, style] = nativekind(control.kind);
        const POINT place = absoluteplace(control);
        const int height =
            pixels(control.height) * (control.kind == ControlKind::combo ? combodrop : 1);
        const HWND child = CreateWindowExW(
            0, kind, L"", WS_CHILD | style, place.x, place.y, pixels(control.width), height,
            window_, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(idof(control))),
            GetModuleHandleW(nullptr), nullptr);
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                     0);
        for (const std::u16string& entry : control.entries)
            SendMessageW(child, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(entry).c_str()));
        if (control.kind == ControlKind::text)
            SetWindowSubclass(child, &FormWindow::boxprocedure, boxsubclass,
                              reinterpret_cast<DWORD_PTR>(this));
        children_.push_back({child, control.name});
    }

    // Enter and Escape reach these two by their ids.
    WORD idof(const Control& control) const {
        if (control.name == "OKButton") return IDOK;
        if (control.name == "CancelButton") return IDCANCEL;
        return static_cast<WORD>(firstid + children_.size());
    }

    POINT absoluteplace(const Control& control) const {
        POINT place{pixels(control.left), pixels(control.top)};
        for (const Control* c = form_.find(control.container); c != nullptr;
             c = form_.find(c->container)) {
            place.x += pixels(c->left);
            place.y += pixels(c->top);
        }
        return place;
    }

    int pixels(int twips) const { return MulDiv(twips, dotsperinch_, twipsperinch); }

    // --- showing what the form holds ---

    void refresh() {
        for (const Child& child : children_) {
            const Control& control = form_.control(child.name);
            settext(child.window, control);
            ShowWindow(child.window, shown(control) ? SW_SHOWNA : SW_HIDE);
            EnableWindow(child.window,
                         form_.reachable(control) || control.kind == ControlKind::label);
            const POINT place = absoluteplace(control);
            SetWindowPos(child.window, nullptr, place.x, place.y, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
        for (; beeps_ < form_.beeps(); ++beeps_) MessageBeep(MB_OK);
    }

    void settext(HWND child, const Control& control) {
        switch (control.kind) {
            case ControlKind::combo:
                SendMessageW(child, CB_SETCURSEL, static_cast<WPARAM>(control.index), 0);
                return;
            case ControlKind::option:
                SendMessageW(child, BM_SETCHECK, control.selected ? BST_CHECKED : BST_UNCHECKED, 0);
                break;
            default:
                break;
        }
        SetWindowTextW(child, wide(control.text).c_str());
        if (control.kind == ControlKind::text)
            SendMessageW(child, EM_SETSEL, control.caret,
                         static_cast<LPARAM>(control.caret + control.selection));
    }

    bool shown(const Control& control) const {
        bool visible = control.visible;
        for (const Control* c = form_.find(control.container); c != nullptr;
             c = form_.find(c->container))
            visible = visible && c->visible;
        return visible;
    }

    // --- events ---

    void serve() {
        for (MSG message; !form_.closed();) {
            const BOOL got = GetMessageW(&message, nullptr, 0, 0);
            if (got <= 0) {  // the host is ending: its own loop must see it too
                form_.dismiss();
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            if (IsDialogMessageW(window_, &message)) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    const Child* childof(HWND window) const {
        for (const Child& child : children_)
            if (child.window == window) return &child;
        return nullptr;
    }

    void command(WORD notice, HWND from) {
        const Child* child = childof(from);
        if (child == nullptr) return;
        if (notice == BN_CLICKED && form_.control(child->name).kind != ControlKind::combo)
            form_.click(child->name);
        else if (notice == CBN_SELCHANGE)
            form_.choose(child->name, static_cast<int>(SendMessageW(from, CB_GETCURSEL, 0, 0)));
        else
            return;
        refresh();
    }

    // Where the user has put the caret since the form last knew.
    void takeselection(const Child& box) {
        DWORD begin = 0;
        DWORD end = 0;
        SendMessageW(box.window, EM_GETSEL, reinterpret_cast<WPARAM>(&begin),
                     reinterpret_cast<LPARAM>(&end));
        form_.setselection(box.name, begin, end - begin);
    }

    void type(const Child& box, wchar_t character) {
        takeselection(box);
        form_.keypress(box.name, static_cast<char16_t>(character));
        refresh();
    }

    // A pasted text is its characters pressed one after the other.
    void paste(const Child& box) {
        if (OpenClipboard(box.window) == FALSE) return;
        std::wstring text;
        if (const HANDLE data = GetClipboardData(CF_UNICODETEXT); data != nullptr) {
            if (const void* locked = GlobalLock(data); locked != nullptr) {
                text = static_cast<const wchar_t*>(locked);
                GlobalUnlock(data);
            }
        }
        CloseClipboard();
        for (const wchar_t c : text) type(box, c);
    }

    // True when the message has been dealt with.
    bool boxmessage(HWND box, UINT message, WPARAM w) {
        const Child* child = childof(box);
        if (child == nullptr) return false;
        switch (message) {
            case WM_CHAR:
                return (type(*child, static_cast<wchar_t>(w)), true);
            case WM_PASTE:
                return (paste(*child), true);
            case WM_CUT:  // these would change the box behind the form's back
            case WM_CLEAR:
            case WM_UNDO:
            case EM_UNDO:
                return true;
            case WM_KEYDOWN:
                if (w != VK_DELETE) return false;
                takeselection(*child);
                form_.keydown(child->name, keys::del);
                refresh();
                return true;
            default:
                return false;
        }
    }

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
        auto* self = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self != nullptr && message == WM_COMMAND) {
            self->command(HIWORD(w), reinterpret_cast<HWND>(l));
            return 0;
        }
        if (self != nullptr && message == WM_CLOSE) {
            self->form_.dismiss();
            return 0;
        }
        return DefWindowProcW(window, message, w, l);
    }

    static LRESULT CALLBACK boxprocedure(HWND box, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                         DWORD_PTR self) {
        if (reinterpret_cast<FormWindow*>(self)->boxmessage(box, message, w)) return 0;
        return DefSubclassProc(box, message, w, l);
    }

    Form& form_;
    HWND owner_;
    HWND window_ = nullptr;
    std::vector<Child> children_;
    int dotsperinch_ = 96;
    int beeps_ = 0;
};

}  // namespace

void showformwindow(Form& form) { FormWindow(form).show(); }

}  // namespace keld2
