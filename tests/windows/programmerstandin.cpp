// Stands in for tq8io.dll and for DevCore: writes every call down and answers from a replay.
//
// KELD2_STANDIN_REPLAY and KELD2_STANDIN_TRACE name the files. The trace is whole whenever a run
// has ended.
#include <windows.h>

#include <optional>
#include <stdexcept>

#include "host/replay/replaydevice.h"
#include "host/trace/tracingdevcore.h"
#include "host/trace/tracingtransport.h"
#include "platform/win32/win32memory.h"
#include "platform/win32/win32strings.h"
#include "windows/automation.h"

namespace keld2::test {
namespace {

std::filesystem::path pathof(const char* variable) {
    char value[MAX_PATH] = {};
    if (GetEnvironmentVariableA(variable, value, MAX_PATH) == 0) throw std::runtime_error(variable);
    return value;
}

class Programmer {
  public:
    Programmer() {
        s.map(0, [] { throw std::runtime_error("no blocks"); });
        trace_.open(pathof("KELD2_STANDIN_TRACE"));
    }

    SharedVariables& views() { return s; }
    DevCore& devcore() { return devcore_; }
    UsbTransport& transport() { return transport_; }
    void flush() { trace_.flush(); }

    // The same place in the stand-in's own view of the block; the place itself where there is none.
    std::uint8_t* own(std::uint8_t* place) {
        MEMORY_BASIC_INFORMATION region{};
        VirtualQuery(place, &region, sizeof region);
        const auto offset = place - static_cast<std::uint8_t*>(region.AllocationBase);
        for (SharedArray<std::uint8_t>* block :
             {static_cast<SharedArray<std::uint8_t>*>(&s.ibuffer),
              static_cast<SharedArray<std::uint8_t>*>(&s.ibuf2),
              static_cast<SharedArray<std::uint8_t>*>(&s.algobuf)})
            if (offset < block->size() && aresame(*place, block->data()[offset]))
                return block->data() + offset;
        return place;
    }

  private:
    static bool aresame(std::uint8_t& one, std::uint8_t& other) {
        const std::uint8_t before = one;
        auto& seen = static_cast<volatile std::uint8_t&>(other);
        static_cast<volatile std::uint8_t&>(one) = static_cast<std::uint8_t>(~before);
        const bool same = seen == static_cast<std::uint8_t>(~before);
        static_cast<volatile std::uint8_t&>(one) = before;
        return same && seen == before;
    }

    Win32Memory memory_;
    Win32Strings strings_;
    SharedVariables s{memory_, strings_};
    host::Replay replay_ = host::readreplay(pathof("KELD2_STANDIN_REPLAY"), ".");
    host::VirtualTime time_;
    host::TraceLog trace_;
    host::TracingDevCore devcore_{std::make_unique<host::ReplayDevCore>(replay_, time_, s), trace_,
                                  s};
    host::TracingTransport transport_{std::make_unique<host::ReplayTransport>(replay_), trace_, s};
};

Programmer& programmer() {
    static Programmer one;
    return one;
}

// Arguments come by reference, each of its type.
template <typename Number>
Number argument(const CallArguments& arguments, std::size_t i) {
    constexpr VARTYPE type = sizeof(Number) == 1 ? VT_UI1 : sizeof(Number) == 2 ? VT_I2 : VT_I4;
    if (arguments[i].vt != (VT_BYREF | type)) throw std::invalid_argument("another type");
    return static_cast<Number>(arguments.number(i));
}

template <typename Answer, typename... Numbers, std::size_t... place>
AutomationMethod method(const wchar_t* name, Answer (DevCore::*call)(Numbers...),
                        std::index_sequence<place...>) {
    return {name, [call](const CallArguments& arguments) -> std::int32_t {
                if (arguments.size() != sizeof...(Numbers)) throw std::invalid_argument("count");
                DevCore& devcore = programmer().devcore();
                if constexpr (std::is_void_v<Answer>) {
                    (devcore.*call)(argument<Numbers>(arguments, place)...);
                    return 0;
                } else {
                    return (devcore.*call)(argument<Numbers>(arguments, place)...);
                }
            }};
}

template <typename Answer, typename... Numbers>
AutomationMethod method(const wchar_t* name, Answer (DevCore::*call)(Numbers...)) {
    return method(name, call, std::index_sequence_for<Numbers...>());
}

// The power goes off at the end of nearly every run.
std::int32_t powerdown(const CallArguments&) {
    programmer().devcore().powerdown();
    programmer().flush();
    return 0;
}

template <void (DevCore::*signal)(std::uint8_t)>
std::int32_t lastsignal(const CallArguments& arguments) {
    (programmer().devcore().*signal)(argument<std::uint8_t>(arguments, 0));
    programmer().flush();
    return 0;
}

std::int32_t loadalgobuf(const CallArguments& arguments) {
    argument<std::int32_t>(arguments, 0);
    std::int32_t length = *arguments[0].plVal;
    programmer().devcore().loadalgobuf(length);
    *arguments[0].plVal = length;
    return 0;
}

std::vector<AutomationMethod> devcoremethods() {
    return {
        method(L"setvcc", &DevCore::setvcc),
        method(L"setvpp", &DevCore::setvpp),
        method(L"setgndpin", &DevCore::setgndpin),
        method(L"setvccpin", &DevCore::setvccpin),
        method(L"setvpppin", &DevCore::setvpppin),
        method(L"drivercommit", &DevCore::drivercommit),
        {L"powerdown", powerdown},
        {L"signalpass", lastsignal<&DevCore::signalpass>},
        {L"signalfail", lastsignal<&DevCore::signalfail>},
        method(L"readycheck", &DevCore::readycheck),
        method(L"readyfail", &DevCore::readyfail),
        method(L"modeselect", &DevCore::modeselect),
        method(L"modeselect2", &DevCore::modeselect2),
        method(L"modeselect3", &DevCore::modeselect3),
        method(L"armready", &DevCore::armready),
        method(L"regwrite", &DevCore::regwrite),
        method(L"qregwrite", &DevCore::qregwrite),
        method(L"regread", &DevCore::regread),
        method(L"qregread", &DevCore::qregread),
        method(L"waitshort", &DevCore::waitshort),
        method(L"qwaitshort", &DevCore::qwaitshort),
        method(L"waitlong", &DevCore::waitlong),
        method(L"qwaitlong", &DevCore::qwaitlong),
        method(L"qrun", &DevCore::qrun),
        method(L"buswrite", &DevCore::buswrite),
        method(L"qbuswrite", &DevCore::qbuswrite),
        method(L"busconfig", &DevCore::busconfig),
        method(L"qbusconfig", &DevCore::qbusconfig),
        method(L"checkbyte", &DevCore::checkbyte),
        method(L"checkword", &DevCore::checkword),
        method(L"transferwait", &DevCore::transferwait),
        {L"loadalgobuf", loadalgobuf},
    };
}

const AutomationClass& devcoreclass() {
    static const AutomationClass offered{
        {0x3b0f5e11, 0x6a51, 0x4f0c, {0x9d, 0x21, 0x5f, 0x0e, 0x77, 0x18, 0xc4, 0x01}},
        L"DevCore.DevCore",
        devcoremethods};
    return offered;
}

}  // namespace
}  // namespace keld2::test

using namespace keld2::test;

extern "C" std::int32_t __stdcall usbcomwrite(const std::uint8_t* frame, std::int32_t length) {
    return programmer().transport().usbcomwrite({frame, static_cast<std::size_t>(length)});
}

extern "C" std::int32_t __stdcall usbbulkread(std::uint8_t* target, std::int32_t length,
                                              std::uint8_t* result) {
    programmer().transport().usbbulkread(
        {programmer().own(target), static_cast<std::size_t>(length)}, result);
    return 0;
}

extern "C" std::int32_t __stdcall usbbulkwrite(std::uint8_t* source, std::int32_t length) {
    return programmer().transport().usbbulkwrite(
        {programmer().own(source), static_cast<std::size_t>(length)});
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return getclassobject(devcoreclass(), clsid, iid, object);
}
STDAPI DllCanUnloadNow() { return S_FALSE; }
STDAPI DllRegisterServer() {
    return registerserver(devcoreclass(), reinterpret_cast<const void*>(&usbcomwrite));
}
STDAPI DllUnregisterServer() { return unregisterserver(devcoreclass()); }
