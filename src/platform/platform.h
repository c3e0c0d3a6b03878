// Platform: the machine that the plug-in runs on.
//
// Named memory, shared strings, message loop, timers, boxes, forms, files and clock. posix/ and
// win32/ carry it out; a host may hand in its own or wrap one (see PlatformDecorator).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace keld2 {

class Form;  // platform/form.h

// --- named memory -------------------------------------------------------------------------------

using MemoryHandle = std::intptr_t;  // 0: none

// Blocks of memory that are known by name to every user on the machine. Names are case-sensitive.
class NamedMemory {
  public:
    virtual ~NamedMemory() = default;
    virtual MemoryHandle open(const std::string& name) = 0;  // 0 when there is no such block
    virtual MemoryHandle create(const std::string& name,
                                std::int32_t size) = 0;  // size in bytes; 0 on failure
    virtual std::span<std::byte> mapview(
        MemoryHandle handle) = 0;  // the whole block; empty on failure
    virtual bool unmapview(std::span<std::byte> view) = 0;
    virtual void close(MemoryHandle handle) = 0;
};

// --- shared strings -----------------------------------------------------------------------------

using StringHandle = std::uint32_t;  // 0: the empty text

// Length-prefixed UTF-16 texts behind 32-bit handles, shared by host and plug-in in one process.
// A handle that is stale or was never given is reported by RunFault, never followed.
class SharedStrings {
  public:
    virtual ~SharedStrings() = default;
    virtual StringHandle allocate(std::u16string_view text) = 0;
    virtual std::u16string text(StringHandle handle) const = 0;
    virtual void free(StringHandle handle) = 0;  // 0 is allowed and does nothing
};

// --- boxes and windows --------------------------------------------------------------------------

enum class BoxButtons { ok, okcancel, abortretryignore };
enum class BoxIcon { none, information, question, exclamation };
enum class BoxAnswer { ok, cancel, abort, retry, ignore };

// The answer that starts nothing.
BoxAnswer safeanswer(BoxButtons buttons);

struct Box {
    BoxButtons buttons = BoxButtons::ok;
    BoxIcon icon = BoxIcon::none;
    std::u16string title = {};
    std::u16string text = {};
};

// One change of a run window. Nothing makes the window visible by itself: a host may show it.
struct WindowChange {
    enum class Kind { load, unload, caption, grow, shrink, pexitshown, pexithidden };
    Kind kind = Kind::load;
    int twips = 0;                       // of grow and shrink
    std::u16string text = {};            // of caption
    std::function<void()> onpexit = {};  // of load: what a click on the Stop button does
};

// --- timers -------------------------------------------------------------------------------------

using TimerId = int;  // 0: none

// --- files --------------------------------------------------------------------------------------

struct FileContent {
    enum class Status {
        read,     // bytes holds the whole file
        missing,  // no such file, or it cannot be read
        refused   // a part of the name leaves the folder: "..", a drive, a separator
    };
    Status status = Status::missing;
    std::vector<std::uint8_t> bytes;
};

// --- the machine --------------------------------------------------------------------------------

class Platform {
  public:
    virtual ~Platform() = default;

    virtual NamedMemory& memory() = 0;
    virtual SharedStrings& strings() = 0;

    // Serves the message loop once: runs what is due (timers, posted events) and, when nothing
    // is, waits for the next event or a millisecond at the most.
    virtual void service() = 0;
    // Wakes a waiting service; may be called from any thread.
    virtual void wake() = 0;

    // A repeating timer (its handler may kill it): handler runs from service() each time that
    // milliseconds have passed, until the timer is killed. Killing an unknown id does nothing.
    virtual TimerId settimer(std::int32_t milliseconds, std::function<void()> handler) = 0;
    virtual void killtimer(TimerId id) = 0;

    virtual BoxAnswer messagebox(const Box& box) = 0;
    virtual void showform(Form& form) = 0;  // modal: returns when the form has closed
    virtual void window(std::string_view name, const WindowChange& change) = 0;

    // A file below the run's current folder, read whole. parts: folder names, then the file's.
    virtual FileContent readfile(std::span<const std::u16string> parts) = 0;

    virtual double secondssincemidnight() = 0;  // local time, with fraction; may wrap at midnight
};

}  // namespace keld2
