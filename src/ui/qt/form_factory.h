#pragma once

#include <QWidget>
#include <memory>
#include <string>

namespace zrt {

/// Builds the window that the definition of form `name` describes. Throws Error when there is none. Its source is made
/// by the build from all definitions together.
std::unique_ptr<QWidget> BuildFormWindow(const std::string& name);

}  // namespace zrt
