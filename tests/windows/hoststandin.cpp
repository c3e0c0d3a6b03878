// A host that a script makes: it creates the blocks of a job, and tells what they hold.
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "host/files/files.h"
#include "host/job/dump.h"
#include "host/job/preparation.h"
#include "platform/win32/win32memory.h"
#include "platform/win32/win32strings.h"
#include "windows/automation.h"

namespace keld2::test {
namespace {

class Host {
  public:
    // The run's folder becomes the current one.
    void open(const std::filesystem::path& path) {
        const host::Job job = host::readjob(path);
        host::prepare(job, s_);
        std::filesystem::current_path(job.folder);
    }
    void dump(const std::filesystem::path& path) {
        std::ofstream(path, std::ios::binary) << host::dumptext(s_);
    }
    std::int32_t result() { return s_.prgresult[0]; }

  private:
    Win32Memory memory_;
    Win32Strings strings_;
    SharedVariables s_{memory_, strings_};
};

std::vector<AutomationMethod> hostmethods() {
    const auto host = std::make_shared<Host>();
    return {{L"open",
             [host](const CallArguments& arguments) {
                 host->open(arguments.text(0));
                 return 0;
             }},
            {L"dump",
             [host](const CallArguments& arguments) {
                 host->dump(arguments.text(0));
                 return 0;
             }},
            {L"result", [host](const CallArguments&) { return host->result(); }}};
}

const AutomationClass& hostclass() {
    static const AutomationClass offered{
        {0x3b0f5e11, 0x6a51, 0x4f0c, {0x9d, 0x21, 0x5f, 0x0e, 0x77, 0x18, 0xc4, 0x02}},
        L"Keld2Test.Host",
        hostmethods};
    return offered;
}

}  // namespace
}  // namespace keld2::test

using namespace keld2::test;

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return getclassobject(hostclass(), clsid, iid, object);
}
STDAPI DllCanUnloadNow() { return S_FALSE; }
STDAPI DllRegisterServer() {
    return registerserver(hostclass(), reinterpret_cast<const void*>(&hostmethods));
}
STDAPI DllUnregisterServer() { return unregisterserver(hostclass()); }
