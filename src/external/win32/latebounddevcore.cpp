#include "external/win32/latebounddevcore.h"

#include <windows.h>
//
#include <oleauto.h>

#include <string>

#include "shared/components.h"

namespace keld2 {

enum LateBoundDevCore::Method : std::size_t {
    m_setvcc,
    m_setvpp,
    m_setgndpin,
    m_setvccpin,
    m_setvpppin,
    m_drivercommit,
    m_powerdown,
    m_signalpass,
    m_signalfail,
    m_readycheck,
    m_readyfail,
    m_modeselect,
    m_modeselect2,
    m_modeselect3,
    m_armready,
    m_regwrite,
    m_qregwrite,
    m_regread,
    m_qregread,
    m_waitshort,
    m_qwaitshort,
    m_waitlong,
    m_qwaitlong,
    m_qrun,
    m_buswrite,
    m_qbuswrite,
    m_busconfig,
    m_qbusconfig,
    m_checkbyte,
    m_checkword,
    m_transferwait,
    m_loadalgobuf,
};

const std::array<const wchar_t*, LateBoundDevCore::methods> LateBoundDevCore::names{
    L"setvcc",       L"setvpp",      L"setgndpin",  L"setvccpin",  L"setvpppin", L"drivercommit",
    L"powerdown",    L"signalpass",  L"signalfail", L"readycheck", L"readyfail", L"modeselect",
    L"modeselect2",  L"modeselect3", L"armready",   L"regwrite",   L"qregwrite", L"regread",
    L"qregread",     L"waitshort",   L"qwaitshort", L"waitlong",   L"qwaitlong", L"qrun",
    L"buswrite",     L"qbuswrite",   L"busconfig",  L"qbusconfig", L"checkbyte", L"checkword",
    L"transferwait", L"loadalgobuf",
};

namespace {

// An argument by reference, by the type of the variable.
VARIANTARG byreference(std::uint8_t& value) {
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_UI1;
    argument.pbVal = &value;
    return argument;
}

VARIANTARG byreference(std::int16_t& value) {
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_I2;
    argument.piVal = &value;
    return argument;
}

VARIANTARG byreference(int& value) {
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_I4;
    argument.plVal = reinterpret_cast<LONG*>(&value);
    return argument;
}

// A component's answer as a number; true is -1 there.
std::int32_t numberof(VARIANT& answer) {
    VARIANT number;
    VariantInit(&number);
    const bool converted = SUCCEEDED(VariantChangeType(&number, &answer, 0, VT_I4));
    VariantClear(&answer);
    return converted ? number.lVal : 0;
}

}  // namespace

LateBoundDevCore::LateBoundDevCore() {
    CLSID clsid{};
    void* made = nullptr;
    if (FAILED(CLSIDFromProgID(L"DevCore.DevCore", &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_ALL, IID_IDispatch, &made)))
        throw ComponentMissing("DevCore");
    object_ = static_cast<IDispatch*>(made);
    ids_.fill(DISPID_UNKNOWN);
}

LateBoundDevCore::~LateBoundDevCore() {
    if (object_ != nullptr) object_->Release();
}

template <typename... Arguments>
std::int32_t LateBoundDevCore::call(Method method, Arguments&... arguments) {
    DISPID& id = ids_[method];
    auto* name = const_cast<LPOLESTR>(names[method]);
    if (id == DISPID_UNKNOWN &&
        FAILED(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id)))
        throw RunFault("DevCore has no such operation",
                       std::string(name, name + std::char_traits<wchar_t>::length(name)));
    constexpr std::size_t count = sizeof...(arguments);
    std::array<VARIANTARG, count + 1> list{};
    std::size_t place = count;  // the last argument comes first
    ((list[--place] = byreference(arguments)), ...);
    DISPPARAMS parameters{
        .rgvarg = list.data(), .rgdispidNamedArgs = nullptr, .cArgs = count, .cNamedArgs = 0};
    VARIANT answer;
    VariantInit(&answer);
    if (FAILED(object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                               &answer, nullptr, nullptr)))
        throw RunFault("DevCore reports an error", "DevCore");
    return numberof(answer);
}

void LateBoundDevCore::setvcc(std::int32_t mv) { call(m_setvcc, mv); }

void LateBoundDevCore::setvpp(std::int32_t mv, std::uint8_t channel) {
    call(m_setvpp, mv, channel);
}

void LateBoundDevCore::setgndpin(std::uint8_t pin, std::uint8_t on) { call(m_setgndpin, pin, on); }

void LateBoundDevCore::setvccpin(std::uint8_t pin, std::uint8_t on) { call(m_setvccpin, pin, on); }

void LateBoundDevCore::setvpppin(std::uint8_t pin, std::uint8_t on) { call(m_setvpppin, pin, on); }

void LateBoundDevCore::drivercommit() { call(m_drivercommit); }

void LateBoundDevCore::powerdown() { call(m_powerdown); }

void LateBoundDevCore::signalpass(std::uint8_t zero) { call(m_signalpass, zero); }

void LateBoundDevCore::signalfail(std::uint8_t zero) { call(m_signalfail, zero); }

int LateBoundDevCore::readycheck() { return call(m_readycheck); }

void LateBoundDevCore::readyfail() { call(m_readyfail); }

int LateBoundDevCore::modeselect(std::uint8_t mode) { return call(m_modeselect, mode); }

int LateBoundDevCore::modeselect2(std::uint8_t mode, int second) {
    return call(m_modeselect2, mode, second);
}

int LateBoundDevCore::modeselect3(std::uint8_t mode, int second) {
    return call(m_modeselect3, mode, second);
}

int LateBoundDevCore::armready() { return call(m_armready); }

void LateBoundDevCore::regwrite(std::int32_t value, std::uint8_t reg) {
    call(m_regwrite, value, reg);
}

void LateBoundDevCore::qregwrite(std::int32_t value, std::uint8_t reg) {
    call(m_qregwrite, value, reg);
}

std::uint8_t LateBoundDevCore::regread(std::uint8_t reg) {
    return static_cast<std::uint8_t>(call(m_regread, reg));
}

void LateBoundDevCore::qregread(std::uint8_t reg) { call(m_qregread, reg); }

void LateBoundDevCore::waitshort(std::int32_t n) { call(m_waitshort, n); }

void LateBoundDevCore::qwaitshort(std::int32_t n) { call(m_qwaitshort, n); }

void LateBoundDevCore::waitlong(std::int32_t n) { call(m_waitlong, n); }

void LateBoundDevCore::qwaitlong(std::int32_t n) { call(m_qwaitlong, n); }

void LateBoundDevCore::qrun() { call(m_qrun); }

void LateBoundDevCore::buswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) {
    call(m_buswrite, address, data, control);
}

void LateBoundDevCore::qbuswrite(std::int32_t address, std::uint8_t data, std::uint8_t control) {
    call(m_qbuswrite, address, data, control);
}

void LateBoundDevCore::busconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) {
    call(m_busconfig, zero, direction, mode);
}

void LateBoundDevCore::qbusconfig(std::int32_t zero, std::uint8_t direction, std::uint8_t mode) {
    call(m_qbusconfig, zero, direction, mode);
}

int LateBoundDevCore::checkbyte(std::int16_t value, std::int32_t address, int mode) {
    return call(m_checkbyte, value, address, mode);
}

int LateBoundDevCore::checkword(std::uint8_t low, std::uint8_t high, std::int32_t address, int mode,
                                int blank) {
    return call(m_checkword, low, high, address, mode, blank);
}

bool LateBoundDevCore::transferwait(std::uint8_t count) { return call(m_transferwait, count) != 0; }

void LateBoundDevCore::loadalgobuf(std::int32_t& length) { call(m_loadalgobuf, length); }

}  // namespace keld2
