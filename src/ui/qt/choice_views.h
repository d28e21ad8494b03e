#pragma once

#include <memory>

#include "ui/qt/control_view.h"

namespace zrt {

/// The view for a tick, an option, a drop-down list or a calendar, drawn by `object`; nullptr for any other kind of
/// control. Throws Error when the two don't go together.
std::unique_ptr<ControlView> MakeChoiceView(Control& control, QObject* object);

}  // namespace zrt
