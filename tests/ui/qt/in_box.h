#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

namespace zrt::test {

/// What the operator does in the next box, once it is open. Nothing happens to a box of another kind; the test fails
/// then.
template <class Box = QMessageBox, class Work>
void InBox(Work work) {
  QTimer::singleShot(20, qApp, [work] {
    auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    work(*box);
  });
}

}  // namespace zrt::test
