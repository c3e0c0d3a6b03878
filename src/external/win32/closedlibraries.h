// tq8io.dll and tq5io.dll: loaded by name on first use, called by name.
#pragma once

#include "external/datstr.h"
#include "external/usbtransport.h"

namespace keld2 {

// A loaded library; a missing one, or a missing function, throws ComponentMissing.
class ClosedLibrary {
  public:
    explicit ClosedLibrary(const char* name);
    ~ClosedLibrary();
    ClosedLibrary(const ClosedLibrary&) = delete;
    ClosedLibrary& operator=(const ClosedLibrary&) = delete;

    template <typename Function>
    Function function(const char* name) const {
        return reinterpret_cast<Function>(address(name));
    }

  private:
    void* address(const char* name) const;

    const char* name_;
    void* module_;
};

class ClosedTransport final : public UsbTransport {
  public:
    int usbcomwrite(std::span<const std::uint8_t> frame) override;
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override;
    int usbbulkwrite(std::span<const std::uint8_t> source) override;

  private:
    using Write = std::int32_t(__stdcall*)(const std::uint8_t*, std::int32_t);
    using Read = std::int32_t(__stdcall*)(std::uint8_t*, std::int32_t, std::uint8_t*);

    ClosedLibrary library_{"tq8io.dll"};
    Write comwrite_ = library_.function<Write>("usbcomwrite");
    Read bulkread_ = library_.function<Read>("usbbulkread");
    Write bulkwrite_ = library_.function<Write>("usbbulkwrite");
};

class ClosedTextHelper final : public TextHelper {
  public:
    void datstr(std::array<char16_t, 2>& text, std::uint8_t value, int width) override;

  private:
    using Datstr = void(__stdcall*)(char*, std::uint8_t, std::int32_t);

    ClosedLibrary library_{"tq5io.dll"};
    Datstr datstr_ = library_.function<Datstr>("datstr");
};

}  // namespace keld2
