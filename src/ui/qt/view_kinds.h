#pragma once

#include <QScopedValueRollback>
#include <memory>
#include <utility>

#include "core/errors.h"
#include "ui/form.h"
#include "ui/qt/control_view.h"

namespace zrt {

/// While a view writes to its widget, what the widget reports is not the operator's doing.
using Quiet = QScopedValueRollback<bool>;

/// Walking along a strip of tabs by the arrow keys passes windows that a tab opens: they appear, and the keyboard stays
/// on the strip. Set on the strip while it is walked over.
inline constexpr const char* kWalkedOver = "walkedOver";
inline bool IsWalkedOver(const QObject* strip) {
  return strip != nullptr && strip->property(kWalkedOver).toBool();
}

/// Makes the view when the control is of kind `C`; the object must then be a `W`.
template <class C, class View, class W, class... More>
bool TryKind(std::unique_ptr<ControlView>& view, Control& control, QObject* object, More&&... more) {
  auto* fitting = dynamic_cast<C*>(&control);
  if (fitting == nullptr) return false;
  auto* widget = dynamic_cast<W*>(object);
  if (widget == nullptr) throw Error("form " + control.Owner().Name() + " doesn't draw " + control.Name());
  view = std::make_unique<View>(*fitting, widget, std::forward<More>(more)...);
  return true;
}

}  // namespace zrt
