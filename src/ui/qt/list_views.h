#pragma once

#include <memory>

#include "ui/qt/control_view.h"

namespace zrt {

/// The view for a list of lines, folders, drives or files, drawn by `object`; nullptr for any other kind of control.
/// Throws Error when the two don't go together.
std::unique_ptr<ControlView> MakeListView(Control& control, QObject* object, const DriveMap& drives);

}  // namespace zrt
