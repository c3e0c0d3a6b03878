// The plug-in's message boxes as real ones.
#pragma once

#include <QWidget>

#include "platform/platform.h"

namespace keld2::desktop {

// Modal above parent. Enter and Escape take the answer that starts nothing.
BoxAnswer showbox(const Box& box, QWidget* parent);

}  // namespace keld2::desktop
