// The algorithm image: chosen by the start-up row, sent to the programmer, read back, compared.
#pragma once

#include "arm/profile.h"

namespace keld2 {

enum class ImageLoad {
    loaded,
    brokenoff,  // a transfer failed or the read-back differs
    unusable,   // no file, an empty or too long one, or one that begins with 0
    stopped     // the user stopped the read-back
};

ImageLoad loadimage(const ArmJob& job, const ArmStartupRow& row);

}  // namespace keld2
