// Automation objects by a table of methods, and the library that offers one.
#pragma once

#include <windows.h>
//
#include <oleauto.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace keld2::test {

// The arguments of a call, the first one first.
class CallArguments {
  public:
    explicit CallArguments(const DISPPARAMS& parameters) : parameters_(parameters) {}

    std::size_t size() const { return parameters_.cArgs; }
    // The argument as it was passed.
    VARIANTARG& operator[](std::size_t i) const { return parameters_.rgvarg[size() - 1 - i]; }
    // By value or by reference.
    std::int32_t number(std::size_t i) const;
    std::wstring text(std::size_t i) const;

  private:
    const DISPPARAMS& parameters_;
};

// A method answers a number. Whatever it throws is an error for the caller.
struct AutomationMethod {
    std::wstring name;
    std::function<std::int32_t(const CallArguments&)> call;
};

// A class that a library offers: its names, and how its objects come to their methods.
struct AutomationClass {
    CLSID clsid;
    std::wstring progid;
    std::function<std::vector<AutomationMethod>()> methods;
};

// What a library's entry points do for its one class.
HRESULT getclassobject(const AutomationClass& offered, REFCLSID clsid, REFIID iid, void** object);
HRESULT registerserver(const AutomationClass& offered, const void* insidelibrary);
HRESULT unregisterserver(const AutomationClass& offered);

}  // namespace keld2::test
