// The operations of ARM devices and the steps around them.
//
// armstatus: 0 goes on, and prgresult[0] tells the outcome; 1 sends the run to the exit that takes
// the power off and leaves 3. An operation whose numbers cannot be carried out answers 1 before
// its first frame.
#pragma once

#include <string>

#include "arm/profile.h"
#include "plugin/texts/texts.h"

namespace keld2 {

// Asks the device code and holds it against compid[0] and typeid[0]; a mismatch asks the user.
// 0 go on, 1 the run is to end. A code that names more bytes than the record has is a RunFault.
int armdevid(const ArmJob& job);

int armread(const ArmJob& job);         // Read and Compare
int armverify(const ArmJob& job);       // Verify
int armprogram(const ArmJob& job);      // Program and Auto Program, from the main buffer
int armprogramfile(const ArmJob& job);  // the same from the file pldtmp.svf, through the buffer
// Every operation that moves no data: one frame and one wait.
int armcommand(const ArmJob& job);

// Configuration bytes of the main buffer into frame bytes 5 to 15. False when they lie outside
// the buffer; then nothing is written.
bool loadconfiguration(const ArmContext& c);
// Whether the main buffer has room for the configuration bytes that a read brings.
bool holdsconfiguration(const ArmContext& c);
// After a Read: the serial number's note where the device has one, and the configuration bytes of
// the status record behind the buffer's data; they are cleared in the record.
void storeconfiguration(const ArmContext& c);

// --- notes -----------------------------------------------------------------------------------

// A text of the plug-in in the host's language.
std::u16string owntext(const ArmContext& c, TextId id);
// The text as the headline of a phase.
void notephase(const ArmContext& c, TextId id);
// Where the device differed, with what it holds and, if wanted, what the buffer holds.
enum class Detail { device, deviceandbuffer };
void notelocation(const ArmContext& c, Detail detail);

}  // namespace keld2
