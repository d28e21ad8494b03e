#pragma once

class QWidget;

namespace zrt {

/// Shows the operator's guide over `window`, at the page that the window's definition names (`guidePage`, of the window
/// or of the part of it that is in sight), else at its first page. The guide is built into the program. It is a window
/// beside others: it stays readable while a modal window is worked in, and Esc closes it.
void OpenGuide(QWidget& window);

}  // namespace zrt
