#pragma once

class QLineEdit;

namespace zrt {

/// What is typed or pasted into the field stays one line that the database can hold: line breaks and tabs become
/// blanks, characters that windows-1251 lacks are left out, with a short notice at the field that says so.
void KeepToOneLine(QLineEdit& edit);

}  // namespace zrt
