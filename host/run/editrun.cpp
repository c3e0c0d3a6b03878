#include "host/run/editrun.h"

#include <algorithm>

#include "host/os/machine.h"
#include "host/run/hosttexts.h"
#include "platform/platformdecorator.h"
#include "plugin/clskeld2.h"

namespace keld2::host {

namespace {

constexpr std::int16_t instance = 0;
constexpr std::uint8_t blankbyte = 255;
constexpr std::uint8_t blankfuse = '1';

// The machine with the editor that the user sees.
class EditMachine final : public PlatformDecorator {
  public:
    EditMachine(Platform& inner, FormFrontEnd& front) : PlatformDecorator(inner), front_(front) {}

    void showform(Form& form) override {
        front_.show(form);
        accepted_ = form.accepted();
    }
    bool accepted() const { return accepted_; }

  private:
    FormFrontEnd& front_;
    bool accepted_ = false;
};

}  // namespace

bool canedit(const Device& device, Editor editor) {
    const std::int64_t mode = device.value("prgmode");
    if (editor == Editor::usercode) return mode >= 41 && mode <= 43;
    return mode == 21 || (mode >= 1 && mode <= 3);
}

std::vector<std::uint8_t> blankbuffer(const Device& device) {
    const bool fuses = device.content == Content::fuses;
    return std::vector<std::uint8_t>(static_cast<std::size_t>(device.buffersize()),
                                     fuses ? blankfuse : blankbyte);
}

std::optional<std::vector<std::uint8_t>> editbuffer(const Device& device, Editor editor,
                                                    std::vector<std::uint8_t> buffer,
                                                    std::int32_t language, FormFrontEnd& front) {
    const auto machine = os::makemachine();
    EditMachine platform(*machine, front);
    SharedVariables s(platform.memory(), platform.strings());
    s.maprows(instance, {});
    for (const SharedSetting& setting : device.shared) apply(setting, s);
    s.mapbuffers({});
    writetexts(s, device, language);
    const auto count = std::min<std::int64_t>(s.ibuffer.size(), std::ssize(buffer));
    std::copy_n(buffer.begin(), count, s.ibuffer.data());
    Module module(platform, {});
    ClsKELD2 plugin(module);
    plugin.bufcomkeld2(instance);
    editor == Editor::config ? plugin.editfigkeld2() : plugin.usercode();
    front.check();
    if (!platform.accepted()) return std::nullopt;
    std::copy_n(s.ibuffer.data(), count, buffer.begin());
    return buffer;
}

}  // namespace keld2::host
