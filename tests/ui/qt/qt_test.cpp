// The windows of the real screens, drawn without a display: what the operator does to a widget reaches its control,
// what the program does to a control is seen, and neither comes back as an echo.

#include <fmt/format.h>

#include <cstdint>
#include <functional>
#include <string>

#include "core/errors.h"
#include "support/temporary_folder.h"
#include "ui/qt/copying.h"
#include "ui/qt/in_box.h"
#include "ui/qt/key_trigg_widget.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_application.h"

namespace zrt {
namespace {

using test::InBox;
using test::MainWindow;
using test::Stage;

TEST_F(MainWindow, TextsAndTheirCursorGoBothWays) {
  Start();
  auto* edit = Find<QLineEdit>("Text1");
  TextBox& box = Sales().Text1;
  int changes = 0;
  box.Change = [&] { ++changes; };

  edit->setFocus();
  QTest::keyClicks(edit, "124");
  EXPECT_EQ(box.Text(), "124");
  QTest::keyClick(edit, Qt::Key_Left);
  QTest::keyClicks(edit, "3");  // in the middle: the cursor stays behind it
  EXPECT_EQ(box.Text(), "1234");
  EXPECT_EQ(box.SelStart(), 3);
  EXPECT_EQ(edit->cursorPosition(), 3);
  EXPECT_EQ(changes, 4);

  box.Text = "58 & <b>";
  EXPECT_EQ(edit->text(), "58 & <b>");
  box.SelectAll();
  EXPECT_EQ(edit->selectedText(), "58 & <b>");
  EXPECT_EQ(changes, 4);  // what the program writes is no event

  // A handler that empties the field while the operator types.
  box.Change = [&] { box.Text = ""; };
  QTest::keyClicks(edit, "9");
  EXPECT_EQ(edit->text(), "");
  EXPECT_EQ(box.Text(), "");

  Choose("sensor");
  auto* locked = Find<QLineEdit>("Text6");
  locked->setText("7");  // as assistive technology can, though the field is disabled
  EXPECT_EQ(locked->text(), "");
}

TEST_F(MainWindow, KeysReachTheControlThenTheFormAndOnlyOnce) {
  Start();
  std::string log;
  app_->Main.KeyDown = [&](Key& key) { log += fmt::format("form{} ", static_cast<int>(key.code)); };
  Sales().Text3.KeyDown = [&](Key& key) {
    log += fmt::format("text{} ", static_cast<int>(key.code));
    key.swallow = key.code == Key::kEnter;
  };
  auto* edit = Find<QLineEdit>("Text3");
  edit->setFocus();
  QTest::keyClick(edit, Qt::Key_Return);
  QTest::keyClick(edit, Qt::Key_Escape);
  EXPECT_EQ(log,
            fmt::format("text{0} text{1} form{1} ", static_cast<int>(Key::kEnter), static_cast<int>(Key::kEscape)));

  log.clear();
  Sales().Text3.KeyDown = [&](Key& key) { log += key.text; };
  QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, "Ж", Qt::NoModifier);
  EXPECT_EQ(log.substr(0, 2), "Ж");
  EXPECT_EQ(Sales().Text3.Text(), "Ж");

  int clicks = 0;
  Sales().CmdNOpl.Click = [&] { ++clicks; };
  auto* button = Find<QPushButton>("CmdNOpl");
  button->setFocus();
  QTest::keyClick(button, Qt::Key_Return);
  QTest::keyClick(button, Qt::Key_Space);
  EXPECT_EQ(clicks, 2);
  Sales().CmdNOpl.Enabled = false;
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(clicks, 2);
}

TEST_F(MainWindow, FocusAskedForBeforeTheWindowComesWithIt) {
  Prepare();
  desktop_->SetFocus(Sales().Text5);
  app_->Start();
  desktop_->UserAction([this] { app_->Splash.Timer1.UserFire(); });
  Settle();
  EXPECT_EQ(Find<QLineEdit>("Text5")->window()->focusWidget(), Find<QLineEdit>("Text5"));

  Choose("sprav");
  EXPECT_EQ(Find<QTableView>("DataGrid1_0")->window()->focusWidget(), Find<QTableView>("DataGrid1_0"));
}

TEST_F(MainWindow, ListsTellChoicesFromEverythingElse) {
  Start();
  auto* hours = Find<QComboBox>("Combo1");
  EXPECT_EQ(hours->count(), 24);
  EXPECT_EQ(hours->currentText(), "8");
  QWheelEvent wheel({5, 5}, hours->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(hours, &wheel);
  EXPECT_EQ(Sales().Combo1.Text(), "8");
  EXPECT_EQ(database_->Value("SELECT N8 FROM CONST WHERE COD=5"), "8");

  hours->setFocus();
  QTest::keyClick(hours, Qt::Key_Down);
  EXPECT_EQ(Sales().Combo1.Text(), "9");
  EXPECT_EQ(database_->Value("SELECT N8 FROM CONST WHERE COD=5"), "9");

  Sales().Combo1.Text = "31";  // no hour of the list, and yet what the base holds
  EXPECT_EQ(hours->currentIndex(), -1);
  EXPECT_EQ(hours->placeholderText(), "31");
}

TEST_F(MainWindow, AReportsLinesAreAllReadWhole) {
  Start();
  desktop_->UserAction([this] { app_->Main.mnuSystem.UserClick(); });
  Settle();
  auto* list = Find<QListWidget>("List1");
  ListBox& lines = app_->Reports.TextReports.List1;
  const std::string widest(200, 'W');
  lines.AddItem(widest);
  for (int i = 0; i < 5000; ++i) lines.AddItem("=");
  Settle();
  const int needed = list->fontMetrics().horizontalAdvance(QString::fromStdString(widest));
  EXPECT_GE(list->visualItemRect(list->item(0)).width(), needed);
  EXPECT_GE(list->horizontalScrollBar()->maximum(), needed - list->viewport()->width());

  lines.Clear();
  lines.AddItem("=");
  lines.AddItem("ИТОГО");
  lines.AddItem("=");
  Settle();
  const auto copied = [&](int first, int last) {
    list->clearSelection();
    for (int row = first; row <= last; ++row) list->item(row)->setSelected(true);
    CopyFrom(list);
    return QApplication::clipboard()->text().toStdString();
  };
  EXPECT_EQ(copied(1, 1), "=\nИТОГО\n=");  // the line that one stands on is no choice
  EXPECT_EQ(copied(1, 2), "ИТОГО\n=");
  EXPECT_EQ(list->horizontalScrollBar()->maximum(), 0);  // what has gone needs no room
}

TEST_F(MainWindow, AReportsWindowTakesItsWidthAgainAfterItWasDragged) {
  Start();
  Form9& form = app_->Reports.TextReports;
  desktop_->UserAction([this] { app_->Main.mnuSystem.UserClick(); });
  Settle();
  QWidget* window = Find("CmdRun")->window();
  const auto inches = [&](int twips) { return twips * window->logicalDpiX() / 1440; };
  const auto width_after = [&](const std::function<void()>& action) {
    window->resize(inches(12000), window->height());
    desktop_->UserAction(action);
    return window->width();
  };
  EXPECT_EQ(width_after([&] { form.CmdRun.UserClick(); }), inches(9075));
  EXPECT_EQ(width_after([&] { form.CmdRun.UserClick(); }), inches(9075));
  EXPECT_EQ(width_after([&] { form.CmdBack.UserClick(); }), inches(5860));
  EXPECT_EQ(width_after([&] { form.Activate.Raise(); }), inches(5860));
}

TEST_F(MainWindow, AProgressBarGoesOnByHundredths) {
  Start();
  ProgressBar& bar = app_->Main.Catalogue.ProgressBar1;
  bar.Max = 300;
  for (const auto& [value, shown] : {std::pair{3, 3}, {4, 3}, {6, 6}, {300, 300}, {0, 0}}) {
    bar.Value = value;
    EXPECT_EQ(Find<QProgressBar>("ProgressBar1")->value(), shown);
  }
}

TEST_F(MainWindow, OptionsExcludeEachOtherWithinTheirArray) {
  Start();
  Choose("sensor");
  auto* panel = Find<QRadioButton>("Option1_4");
  QTest::mouseClick(panel, Qt::LeftButton, {}, QPoint(8, panel->height() / 2));
  EXPECT_TRUE(app_->Main.Panels.Option1[3].Value());
  EXPECT_FALSE(app_->Main.Panels.Option1[0].Value());
  EXPECT_FALSE(Find<QRadioButton>("Option1_1")->isChecked());
  EXPECT_TRUE(Find<QRadioButton>("Option2_1")->isChecked());  // the levels are another array

  // As a screen reader does it, and then once more by the mouse.
  Find<QRadioButton>("Option1_5")->toggle();
  EXPECT_TRUE(app_->Main.Panels.Option1[4].Value());
  EXPECT_EQ(app_->Main.Panels.PanelNo, 5);
  QTest::mouseClick(panel, Qt::LeftButton, {}, QPoint(8, panel->height() / 2));
  EXPECT_EQ(app_->Main.Panels.PanelNo, 4);
  Find<QCheckBox>("Check1")->toggle();
  EXPECT_TRUE(app_->Main.Check1.Value());
  Find<QCheckBox>("Check1")->toggle();
  app_->Main.Check1.Enabled = false;  // what the program refuses isn't shown either
  Find<QCheckBox>("Check1")->toggle();
  EXPECT_FALSE(Find<QCheckBox>("Check1")->isChecked());
  app_->Main.Check1.Enabled = true;

  app_->Main.Panels.Option1[6].Choose();
  EXPECT_TRUE(Find<QRadioButton>("Option1_7")->isChecked());
  EXPECT_FALSE(panel->isChecked());
}

TEST_F(MainWindow, CalendarOpensOverTheTablesAndClosesWithItsTab) {
  Start();
  auto* calendar = Find<QCalendarWidget>("Month0");
  const QRect grid = Find("DataGrid3")->geometry();
  QTest::mouseClick(Find<QPushButton>("CmdPlus"), Qt::LeftButton);
  ASSERT_TRUE(calendar->isVisible());
  EXPECT_EQ(Find("DataGrid3")->geometry(), grid);  // nothing gives way to it
  EXPECT_EQ(calendar->selectedDate(), QDate(2026, 11, 12));

  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  EXPECT_FALSE(calendar->isVisible());
  EXPECT_EQ(Sales().TextDate.Caption(), "11.11.2026");
  EXPECT_EQ(QApplication::focusWidget(), Find("CmdDat"));

  QTest::mouseClick(Find<QPushButton>("CmdPlus"), Qt::LeftButton);
  Choose("sprav");
  EXPECT_FALSE(calendar->isVisible());
}

TEST_F(MainWindow, TabVisitsFieldsAndTheirButtonsInReadingOrder) {
  Start();
  Find("Text7")->setFocus();
  for (const char* next : {"CmdTerm", "Text3", "CmdOfc", "Text2", "CmdFilCheck", "Text1", "CmdFiltr", "Text5"}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), Find(next)) << next;
  }
}

TEST_F(MainWindow, KeysOfAPanelShowTheirColoursPure) {
  Start();
  Choose("sensor");
  auto* widget = Find<QPushButton>("CmdM_3");
  Button& key = app_->Main.Panels.CmdM[2];
  key.Caption = "&12";
  for (const auto& [colour, shown] :
       {std::pair<Colour, QColor>{0x00FF00, {0, 255, 0}}, {0xFF, {255, 0, 0}}, {0xFF80FF, {255, 128, 255}}}) {
    key.BackColor = colour;
    EXPECT_EQ(widget->grab().toImage().pixelColor(8, 8), shown) << colour;
  }
  EXPECT_EQ(widget->text(), "&&12");  // no shortcut: names come from the base
  key.BackColor = colour::kHighlightEdge;
  EXPECT_EQ(widget->styleSheet(), "");
  EXPECT_FALSE(widget->font().bold());
  key.FontBold = true;
  EXPECT_TRUE(widget->font().bold());
  EXPECT_TRUE(Find<QLabel>("LblSum")->font().bold());  // bold by its design, though the program never says so
}

TEST_F(MainWindow, TwoPositionKeyIsPressedByItsHalves) {
  Start();
  Choose("sensor");
  auto* widget = Find<KeyTriggWidget>("CmdMenu");
  CmdKeyTrigg& key = app_->Main.Panels.CmdMenu;
  EXPECT_EQ(widget->width(), key.Sizes().width * widget->logicalDpiX() / 1440);
  std::string halves;
  key.Click = [&](std::uint8_t half) { halves += std::to_string(half); };
  const QPoint left(5, widget->height() / 2);
  const QPoint right(widget->width() - 5, widget->height() / 2);
  QTest::mouseClick(widget, Qt::LeftButton, {}, right);
  EXPECT_EQ(QApplication::focusWidget(), widget);
  QTest::mouseClick(widget, Qt::LeftButton, {}, right);
  QTest::mouseClick(widget, Qt::LeftButton, {}, left);
  QTest::mouseDClick(widget, Qt::LeftButton, {}, left);  // what follows the first click of a double one
  EXPECT_EQ(halves, "2211");
  EXPECT_EQ(key.Trigger(), 1);
  const auto strongest = [&] {
    const QImage image = widget->grab(QRect(0, 4, widget->width() / 3, widget->height() - 8)).toImage();
    int darkest = 255;
    for (int x = 4; x < image.width(); ++x)
      for (int y = 0; y < image.height(); ++y) darkest = std::min(darkest, qGray(image.pixel(x, y)));
    return darkest;
  };
  const int usable = strongest();
  key.Enabled = false;
  EXPECT_GT(strongest(), usable);  // its pictures fade
}

TEST_F(MainWindow, TabsAndMenusComeAndGo) {
  Start(Stage::kRegister);
  auto* tabs = Find<QTabBar>("TabStrip1");
  EXPECT_EQ(tabs->count(), 5);
  EXPECT_EQ(tabs->tabText(4), "Журнал документов");

  app_->Main.TabStrip1.Remove(1);
  EXPECT_EQ(tabs->count(), 4);
  EXPECT_EQ(app_->Main.TabStrip1.SelectedKey(), "prod");  // nobody clicked
  int clicks = 0;
  app_->Main.TabStrip1.Click = [&] { ++clicks; };
  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(2).center());
  EXPECT_EQ(app_->Main.TabStrip1.SelectedKey(), "sensor");
  EXPECT_EQ(clicks, 1);
  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(2).center());
  EXPECT_EQ(clicks, 2);  // the current tab is clicked too

  const auto* menus = tabs->window()->findChild<QMenuBar*>();
  for (const bool shown : {false, true}) {
    Find<QCheckBox>("Check1")->click();
    EXPECT_EQ(menus->isVisible(), shown);
  }
  // Any key closes the about box, those too that mean something elsewhere, but no modifier alone; so does a click.
  for (const Qt::Key key : {Qt::Key_F5, Qt::Key_Tab, Qt::Key_Escape, Qt::Key_Shift, Qt::Key_Alt}) {
    if (!app_->About.IsLoaded()) desktop_->UserAction([&] { app_->Main.mnuAbout.UserClick(); });
    Settle();  // the keyboard is the box's by now
    QTest::keyClick(Find<QLabel>("lblVersion")->window(), key);
    EXPECT_EQ(app_->About.IsLoaded(), key == Qt::Key_Shift || key == Qt::Key_Alt) << key;
    Settle();
  }
  QTest::mouseClick(Find<QLabel>("lblProductName"), Qt::LeftButton);
  EXPECT_FALSE(app_->About.IsLoaded());
  EXPECT_TRUE(app_->Main.IsVisible());
}

TEST_F(MainWindow, AFailureEndsTheActionInOneBoxWithItsDetailsClosedAtFirst) {
  Start();
  // A handler without a trap, and one that has a message of its own.
  for (const std::string message : {"", "Неправильно введена дата!"}) {
    Sales().CmdNOpl.Click = [&] {
      try {
        app_->TheSession.Write("DROP TABLE NO_SUCH_TABLE");
      } catch (const Error& error) {
        if (message.empty()) throw;
        desktop_->TellFailure(message, error);
      }
    };
    std::string details;
    InBox([&](QMessageBox& box) {
      const auto* text = box.findChild<QTextEdit*>();
      EXPECT_FALSE(text->isVisible());
      box.buttons().constLast()->click();
      QCoreApplication::processEvents();
      EXPECT_TRUE(text->isVisible());
      EXPECT_EQ(box.buttons().constLast()->text().toStdString(), "Подробности");
      details = text->toPlainText().toStdString();
      box.accept();
    });
    QTest::mouseClick(Find<QPushButton>("CmdNOpl"), Qt::LeftButton);
    for (const char* told : {"SQLSTATE 42S02, 1051", "DROP TABLE NO_SUCH_TABLE", "zrt_test"}) {
      EXPECT_NE(details.find(told), std::string::npos) << told << " isn't in " << details;
    }
    EXPECT_EQ(details.find("pwd"), std::string::npos);
  }
  Sales().CmdNOpl.Click = [] { throw FileError("C:\\a.csv", "can't be written"); };
  InBox([](QMessageBox& box) {
    EXPECT_EQ(box.text().toStdString(), "Ошибка выполнения. Действие прервано.\nC:\\a.csv");
    box.accept();
  });
  QTest::mouseClick(Find<QPushButton>("CmdNOpl"), Qt::LeftButton);
  EXPECT_TRUE(Find("FrameProd")->isVisible());
}

TEST_F(MainWindow, FieldsTakeOneLineOfCharactersThatTheBaseHas) {
  Start();
  auto* edit = Find<QLineEdit>("Text1");
  const auto paste = [&](const char* text) {
    edit->clear();
    QApplication::clipboard()->setText(QString::fromUtf8(text));
    edit->paste();
    return Sales().Text1.Text();
  };
  EXPECT_EQ(paste("12\r\nх\t3"), "12  х 3");
  EXPECT_EQ(paste("Ґ€№ ёЁ"), "Ґ€№ ёЁ");
  EXPECT_FALSE(QToolTip::isVisible());
  EXPECT_EQ(paste("а☺б漢😀в"), "абв");
  EXPECT_EQ(edit->cursorPosition(), 3);
  EXPECT_EQ(QToolTip::text().toStdString(), "Этих знаков нет в кодировке базы данных: ☺漢😀");
  QTest::keyClicks(edit, "!");
  EXPECT_EQ(Sales().Text1.Text(), "абв!");
}

TEST_F(MainWindow, FoldersOfADriveOpenFromTheTree) {
  const test::TemporaryFolder root;
  std::filesystem::create_directories(root.Path() / "C" / "Korvina" / "Report" / "2026");
  std::filesystem::create_directories(root.Path() / "D");
  drives_ = DriveMap(root.Path());
  Start();
  Sales().Dir1.Visible = true;
  Sales().Drive1.Visible = true;
  auto* tree = Find<QTreeWidget>("Dir1");
  EXPECT_EQ(tree->currentItem()->text(0), "Report");
  EXPECT_EQ(Find<QComboBox>("Drive1")->count(), 2);
  tree->currentItem()->setExpanded(true);
  tree->setFocus();
  QTest::keyClick(tree, Qt::Key_Down);
  EXPECT_EQ(Sales().Dir1.Path(), "C:\\Korvina\\Report\\2026");
  Sales().Dir1.Visible = false;
  std::filesystem::create_directories(root.Path() / "C" / "Korvina" / "Report" / "2027");
  Sales().Dir1.Visible = true;
  EXPECT_EQ(tree->currentItem()->text(0), "2026");
  EXPECT_EQ(tree->currentItem()->parent()->childCount(), 2);
  Sales().Dir1.Path = "D:";
  EXPECT_EQ(tree->currentItem()->text(0), "D:\\");
}

}  // namespace
}  // namespace zrt

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  zrt::SetUpApplication(application);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
