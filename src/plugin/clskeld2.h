// ClsKELD2: the plug-in's one class, as a host calls it.
//
// No method returns a value: every answer goes back through the shared variables. No exception
// leaves a method. All methods run on the host's user-interface thread.
#pragma once

#include <cstdint>

#include "plugin/module.h"

namespace keld2 {

struct ArmProfile;

class ClsKELD2 {
  public:
    // module must outlive the class. The class keeps no state of its own.
    explicit ClsKELD2(Module& module) : module_(module) {}

    // Runs the job that the shared variables describe and returns at its end. usbenable is not
    // read. Afterwards prgresult[0] and MainRtstr[0] tell how it went.
    void runKeld2Prg(const bool& usbenable);
    // The configuration editor and the user-code editor, each as a modal window.
    void editfigkeld2();
    void usercode();
    // Maps all shared blocks for host instance num. Must come before all other calls.
    void bufcomkeld2(const std::int16_t& num);
    // Releases the main buffer, before the host resizes it.
    void freesharebufferkeld2();
    // Shows the warnings of the selected device.
    void keld2warn(const std::uint8_t& no);
    // Initialises the configuration area of the main buffer for the fixed logic family.
    void sinitkeld2();

  private:
    // Runs work; a fault leaves 1 in prgresult[0], a missing component 3 and a box that names it.
    template <typename Work>
    bool guarded(Work work);
    void runarm(const ArmProfile& profile);
    void reportmissing(const ComponentMissing& component);

    Module& module_;
};

}  // namespace keld2
