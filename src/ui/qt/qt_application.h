#pragma once

class QApplication;

namespace zrt {

/// The look of the whole program: Fusion in a light palette whatever the desktop's theme, one legible font, Qt's own
/// texts in Russian, the program's icon. To be called once, before the first window.
void SetUpApplication(QApplication& application);

}  // namespace zrt
