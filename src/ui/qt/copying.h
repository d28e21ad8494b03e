#pragma once

class QListWidget;
class QWidget;

namespace zrt {

/// To the clipboard: of a grid the current row, its shown columns separated by tabs and numbers as a spreadsheet reads
/// them; of a list the lines that are selected, or all when there is at most one. Nothing of any other widget.
void CopyFrom(const QWidget* widget);

/// The lines of the list can be selected by ranges and copied by a menu.
void LetCopyLines(QListWidget& list);

}  // namespace zrt
