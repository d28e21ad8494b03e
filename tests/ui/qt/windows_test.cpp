// Windows and boxes by themselves: how long they live, what closes them, and what a closed box answers.

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

#include "ui/form.h"
#include "ui/qt/in_box.h"
#include "ui/qt/qt_desktop.h"

namespace zrt {
namespace {

using test::InBox;

/// A window of the about box's look whose life lies open; its timer and its clicks are what a test makes them.
class Probe final : public Form {
 public:
  explicit Probe(Desktop& desktop) : Form(desktop, "frmSplash") {
    Activate = [this] { log += "A"; };
    Unload = [this] { log += "U"; };
    Complete();
  }
  Label lblVersion{*this, "lblVersion"};
  Label lblProductName{*this, "lblProductName"};
  Timer Timer1{*this, "Timer1", 5, false};
  std::string log;
};

class Windows : public testing::Test {
 protected:
  static QWidget* WindowOf(const Form& form) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->accessibleDescription() == QString::fromStdString(form.Name()) && window->isVisible()) return window;
    }
    return nullptr;
  }

  DriveMap drives_{std::filesystem::temp_directory_path() / "zrt_no_such_folder"};
  QtDesktop desktop_{RegionalFormat{}, drives_};
};

TEST_F(Windows, AModalFormReturnsWhenItIsHiddenAndBoxesAnswerInIt) {
  Probe form(desktop_);
  form.Timer1.Enabled = true;
  form.Timer1.Fire = [&] {
    InBox([](QMessageBox& box) {
      EXPECT_EQ(box.text().toStdString(), "Строка\nвторая");
      box.button(QMessageBox::No)->click();
    });
    EXPECT_EQ(desktop_.MsgBox("Строка\n\rвторая", BoxIcon::kQuestion, BoxButtons::kYesNo), BoxAnswer::kNo);
    form.Hide();
    form.log += "H";
  };
  form.ShowModal();
  EXPECT_EQ(form.log, "AH");  // the handler that hid it has ended before
  EXPECT_TRUE(form.IsLoaded());
  form.Close();
}

TEST_F(Windows, ClosingABoxIsTheAnswerNoAndEnterTheUsualOne) {
  struct Case {
    Qt::Key key;
    BoxButtons buttons;
    std::optional<BoxAnswer> usual;
    BoxAnswer answer;
  };
  for (const Case& one : {Case{Qt::Key_Escape, BoxButtons::kYesNo, {}, BoxAnswer::kNo},
                          {Qt::Key_Escape, BoxButtons::kOkCancel, {}, BoxAnswer::kCancel},
                          {Qt::Key_Escape, BoxButtons::kOk, {}, BoxAnswer::kOk},
                          {Qt::Key_Return, BoxButtons::kYesNo, BoxAnswer::kYes, BoxAnswer::kYes},
                          {Qt::Key_Return, BoxButtons::kYesNo, BoxAnswer::kNo, BoxAnswer::kNo}}) {
    InBox([&](QMessageBox& box) {
      EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()));
      QTest::keyClick(&box, one.key);
    });
    const std::string title = "Заголовок, длиннее всего, что в этом окне написано";
    EXPECT_EQ(desktop_.MsgBox({.text = "?", .buttons = one.buttons, .title = title, .usual = one.usual}), one.answer);
  }
}

TEST_F(Windows, AnInputBoxGivesItsLineOrNothing) {
  for (const bool accepted : {true, false}) {
    InBox<QInputDialog>([=](QInputDialog& box) {
      EXPECT_EQ(box.textValue(), "1");
      box.setTextValue("Привет");
      accepted ? box.accept() : box.reject();
    });
    EXPECT_EQ(desktop_.InputBox("Введите", "Заголовок", "1"), accepted ? "Привет" : "");
  }
  InBox<QInputDialog>([](QInputDialog& box) {
    EXPECT_EQ(box.textEchoMode(), QLineEdit::Password);
    EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()));
    QTest::keyClicks(box.findChild<QLineEdit*>(), "357218");
    box.accept();
  });
  EXPECT_EQ(desktop_.AskPassword("Пароль", "Заголовок, длиннее всего, что в этом окне написано и введено"), "357218");
}

TEST_F(Windows, ATimerDoesNotFireInsideItsOwnHandler) {
  Probe form(desktop_);
  int running = 0;
  int most = 0;
  int fired = 0;
  form.Timer1.Enabled = true;
  form.Timer1.Fire = [&] {
    most = std::max(most, ++running);
    QTest::qWait(30);
    --running;
    if (++fired == 3) form.Timer1.Enabled = false;
  };
  form.Show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return fired == 3; }));
  EXPECT_EQ(most, 1);
  QTest::qWait(50);
  EXPECT_EQ(fired, 3);
  form.Close();
}

TEST_F(Windows, UnloadingInsideItsOwnEventTakesTheWindowAndTheNextShowBeginsAfresh) {
  Probe form(desktop_);
  Probe other(desktop_);  // the program doesn't end while it is there
  form.lblVersion.Caption = "1.2.3";
  form.Show();
  QWidget* window = WindowOf(form);
  EXPECT_LE((window->geometry().center() - window->screen()->availableGeometry().center()).manhattanLength(), 2);
  other.Show();
  const QPointer<QWidget> first = window;
  form.Click = [&] { form.Close(); };
  QTest::mouseClick(window, Qt::LeftButton);
  EXPECT_FALSE(form.IsLoaded());
  EXPECT_EQ(form.log, "AU");
  EXPECT_TRUE(QTest::qWaitFor([&] { return first.isNull(); }));
  form.lblVersion.Caption = "3.2.1";  // a control without a window is still a control
  form.Show();
  EXPECT_EQ(form.log, "AUA");
  other.Close();
  EXPECT_EQ(WindowOf(form)->findChild<QLabel*>("lblVersion")->text(), "3.2.1");
  form.KeyDown = [&](Key&) { form.Close(); };
  QTest::keyClick(WindowOf(form), Qt::Key_A);
  EXPECT_FALSE(form.IsLoaded());
}

}  // namespace
}  // namespace zrt
