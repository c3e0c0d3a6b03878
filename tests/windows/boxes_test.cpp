// Boxes and editors of the library in a host with a message loop, answered by window messages.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "windows/client.h"

namespace keld2::test {
namespace {

std::wstring textof(HWND window) {
    wchar_t text[512] = {};
    GetWindowTextW(window, text, 512);
    return text;
}

struct Seen {
    std::wstring text;  // of all children, one a line
    HWND ok = nullptr;
    HWND bits = nullptr;   // the box with 32 characters
    HWND combo = nullptr;  // one with a choice
};

BOOL CALLBACK look(HWND child, LPARAM place) {
    auto& seen = *reinterpret_cast<Seen*>(place);
    wchar_t kind[64] = {};
    GetClassNameW(child, kind, 64);
    const std::wstring text = textof(child);
    seen.text += text + L"\n";
    if (text == L"OK") seen.ok = child;
    if (lstrcmpiW(kind, L"EDIT") == 0 && text.size() == 32) seen.bits = child;
    if (lstrcmpiW(kind, L"COMBOBOX") == 0 && IsWindowVisible(child) && IsWindowEnabled(child) &&
        SendMessageW(child, CB_GETCOUNT, 0, 0) > 1)
        seen.combo = child;
    return TRUE;
}

// Somebody who waits for a window of this process, looks at it, and does something with it.
class User {
  public:
    using Work = std::function<void(HWND, const Seen&)>;
    explicit User(Work work) : work_(std::move(work)), thread_([this] { wait(); }) {}
    ~User() {
        given_up_ = true;
        thread_.join();
    }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    std::wstring seen;  // texts of the window; read when the call has returned

  private:
    void wait() {
        for (int i = 0; i < 1000 && !given_up_; ++i) {
            Sleep(10);
            HWND window = nullptr;
            EnumWindows(&User::find, reinterpret_cast<LPARAM>(&window));
            if (window == nullptr) continue;
            Seen all;
            EnumChildWindows(window, &look, reinterpret_cast<LPARAM>(&all));
            if (all.ok == nullptr) continue;  // not yet whole
            seen = textof(window) + L"\n" + all.text;
            work_(window, all);
            return;
        }
    }
    static BOOL CALLBACK find(HWND window, LPARAM found) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }

    Work work_;
    std::atomic<bool> given_up_ = false;
    std::thread thread_;
};

void clickok(HWND, const Seen& seen) { SendMessageW(seen.ok, BM_CLICK, 0, 0); }

// A host with a chip of a family, and its main buffer full of '0'.
struct Session {
    Session(std::uint8_t mode, std::int32_t length, std::uint8_t operation) {
        blocks.s.maprows(0, [] {});
        blocks.s.buflength[0] = 8000;
        blocks.s.mapbuffers([] {});
        blocks.s.prgmode[0] = mode;
        blocks.s.tlength[0] = length;
        blocks.s.prgresult[1] = operation;
        std::fill_n(blocks.s.ibuffer.data(), blocks.s.ibuffer.size(), std::uint8_t{'0'});
        client.begin();
    }
    std::vector<std::uint8_t> buffer() {
        return {blocks.s.ibuffer.data(), blocks.s.ibuffer.data() + blocks.s.ibuffer.size()};
    }

    HostBlocks blocks;
    Client client;
};

TEST(Boxes, AMissingComponentIsNamedAndTheRunEndsWithThree) {
    Session session(21, 4112, 3);
    User user([](HWND, const Seen& seen) { SendMessageW(seen.ok, BM_CLICK, 0, 0); });
    EXPECT_EQ(session.client.run(), S_OK);
    EXPECT_NE(user.seen.find(L"DevCore"), std::wstring::npos);
    EXPECT_EQ(session.blocks.s.prgresult[0], 3);
}

TEST(Editors, AUserCodeIsTypedIntoItsBox) {
    constexpr std::int32_t fuses = 100;
    Session session(41, fuses, 0);
    auto expected = session.buffer();
    expected[fuses] = '1';
    User user([](HWND, const Seen& seen) {
        SendMessageW(seen.bits, EM_SETSEL, 0, 0);
        SendMessageW(seen.bits, WM_CHAR, L'1', 0);
        SendMessageW(seen.ok, BM_CLICK, 0, 0);
    });
    EXPECT_EQ(session.client->usercode(), S_OK);
    EXPECT_NE(user.seen.find(L"Edit E_Field"), std::wstring::npos);
    EXPECT_EQ(session.buffer(), expected);
}

TEST(Editors, AConfigurationIsChosenAndWritten) {
    Session session(21, 4112, 0);
    const auto before = session.buffer();
    User user([](HWND window, const Seen& seen) {
        const LRESULT chosen = SendMessageW(seen.combo, CB_GETCURSEL, 0, 0);
        SendMessageW(seen.combo, CB_SETCURSEL, chosen == 0 ? 1 : 0, 0);
        SendMessageW(window, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(seen.combo), CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(seen.combo));
        SendMessageW(seen.ok, BM_CLICK, 0, 0);
    });
    EXPECT_EQ(session.client->editfigkeld2(), S_OK);
    const auto after = session.buffer();
    for (std::size_t i = 0; i < after.size(); ++i)
        EXPECT_TRUE(after[i] == before[i] || i == 4096 || i == 4097) << i;
    EXPECT_NE(after, before);
}

}  // namespace
}  // namespace keld2::test
