// The algorithm image: chosen by the start-up row, sent to the programmer, read back, compared.
#pragma once

#include <string>
#include <vector>

#include "arm/profile.h"

namespace keld2 {

// A file below the run's folder: folder names, then the file's.
using ArmFileName = std::vector<std::u16string>;

// The two files that a device's image may lie in. The first one is preferred.
struct ArmImageNames {
    ArmFileName first;
    ArmFileName second;
};

ArmImageNames imagenames(SharedVariables& s, const ArmStartupRow& row);

enum class ImageLoad {
    loaded,
    brokenoff,  // a transfer failed or the read-back differs
    unusable,   // no file, an empty or too long one, or one that begins with 0
    stopped     // the user stopped the read-back
};

ImageLoad loadimage(const ArmJob& job, const ArmStartupRow& row);

}  // namespace keld2
