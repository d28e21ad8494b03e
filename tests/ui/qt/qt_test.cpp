// The windows of the real screens, drawn without a display: what the operator does to a widget reaches its control,
// what the program does to a control is seen, and neither comes back as an echo.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "app/app.h"
#include "core/errors.h"
#include "support/headless_desktop.h"
#include "support/temporary_folder.h"
#include "support/test_database.h"
#include "ui/qt/column_widths.h"
#include "ui/qt/copying.h"
#include "ui/qt/in_box.h"
#include "ui/qt/key_trigg_widget.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace zrt {
namespace {

using test::FixedClock;
using test::InBox;
using test::Stage;
using test::TestDatabase;

constexpr int kProducts = 3000;

/// The program on a shop of its own with `kProducts` products, up to the visible main window.
class MainWindow : public testing::Test {
 protected:
  void Start(Stage stage = Stage::kPlain) {
    Prepare(stage);
    database_->Sql(
        fmt::format("INSERT INTO TOVAR (ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,"
                    "N6) SELECT 0,seq,1,CONCAT('Товар ',LPAD(seq,5,'0')),0,0,100,'',0,0,0,0,0,0,0,'',0 FROM "
                    "{}",
                    test::Numbers(kProducts)));
    database_->Sql("UPDATE CONST SET N8=8 WHERE COD=5");
    app_->Start();
    desktop_->UserAction([this] { app_->Splash.Timer1.UserFire(); });
    Settle();
  }

  void Prepare(Stage stage = Stage::kPlain) {
    database_ = std::make_unique<TestDatabase>(stage);
    app_ = std::make_unique<App>(*desktop_, clock_, drives_, AppSettings{database_->Address(), "zrt"});
  }

  static void Settle() { QTest::qWait(1); }

  template <class W = QWidget>
  static W* Find(const std::string& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* widget = window->findChild<W*>(QString::fromStdString(name))) return widget;
    }
    return nullptr;
  }

  void Choose(const std::string& tab) {
    desktop_->UserAction([&] { app_->Main.TabStrip1.UserChoose(tab); });
    Settle();
  }

  SalesTab& Sales() { return app_->Main.Sales; }

  FixedClock clock_;
  DriveMap drives_{std::filesystem::temp_directory_path() / "zrt_no_such_folder"};
  std::unique_ptr<QtDesktop> desktop_ = std::make_unique<QtDesktop>(RegionalFormat{}, drives_);
  std::unique_ptr<TestDatabase> database_;
  std::unique_ptr<App> app_;
};

/// What was seen, every few milliseconds, while an action waited for the server.
class Watch {
 public:
  explicit Watch(std::function<void()> look) : look_(std::move(look)) {
    QObject::connect(&clock_, &QTimer::timeout, [this] { look_(); });
    constexpr int kOften = 20;
    clock_.start(kOften);
  }

 private:
  std::function<void()> look_;
  QTimer clock_;
};

TEST_F(MainWindow, StaysAliveButStillWhileTheServerThinks) {
  Start();
  auto* edit = Find<QLineEdit>("Text1");
  edit->setFocus();
  bool seen = false;
  bool disturbed = false;
  std::string question;
  desktop_->TheServerWait()->GiveUp = [&] { disturbed = true; };
  {
    const Watch watch([&] {
      if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        question = box->text().toStdString();
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        box->button(QMessageBox::No)->click();
      } else if (const auto* note = Find<QLabel>("decoServerNote"); note != nullptr && question.empty()) {
        seen = note->isVisible() && note->text().contains("Жду ответа сервера") && QApplication::overrideCursor();
        desktop_->UserAction([&] { disturbed = true; });
        QTest::keyClicks(edit, "7");
        QTest::keyClick(edit, Qt::Key_Escape);
      }
    });
    desktop_->UserAction([&] { app_->TheSession.ReadOne("SELECT SLEEP(1.6)"); });
  }
  EXPECT_TRUE(seen);
  EXPECT_FALSE(disturbed);
  EXPECT_EQ(edit->text(), "");
  EXPECT_TRUE(app_->Main.IsVisible());  // Esc would have hidden it
  EXPECT_TRUE(question.starts_with("Сервер ещё не ответил.")) << question;
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(Find<QLabel>("decoServerNote"), nullptr);

  // Many quick statements add up to a long action too, and a box takes the cursor away.
  desktop_->UserAction([&] {
    for (int i = 0; i < 30; ++i) app_->TheSession.ReadOne("SELECT SLEEP(0.01)");
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
    InBox([](QMessageBox& box) { box.accept(); });
    desktop_->MsgBox("готово");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  });
}

TEST_F(MainWindow, LongWorkLetsTheWindowLiveAndIsStoppedByEscWhereItOffersThat) {
  Start();
  QWidget* window = Find("FrameProd")->window();
  const auto work = [&](bool offer) {
    std::string note;
    int steps = 0;
    const Watch watch([&] {
      if (const auto* shown = Find<QLabel>("decoServerNote")) note = shown->text().toStdString();
      QTest::keyClick(window, Qt::Key_Escape);
    });
    desktop_->UserAction([&] {
      std::optional<StopOffer> stop;
      if (offer) stop.emplace(*desktop_);
      for (; steps < 300; ++steps) {
        // What offers to be stopped may ask the server nothing, as the reading of a spreadsheet.
        offer ? QThread::msleep(5) : void(app_->TheSession.ReadOne("SELECT SLEEP(0.005)"));
        if (offer) stop->Step();
      }
    });
    return std::pair{steps, note};
  };
  const auto [stopped, note] = work(true);
  EXPECT_GT(stopped, 20);
  EXPECT_LT(stopped, 300);
  EXPECT_TRUE(note.starts_with("Идёт работа: ") && note.ends_with("Esc - остановить")) << note;
  EXPECT_EQ(Find<QLabel>("decoServerNote"), nullptr);
  EXPECT_EQ(work(false), (std::pair{300, std::string()}));
  EXPECT_TRUE(app_->Main.IsVisible());
}

TEST_F(MainWindow, AWindowThatIsClosedWhileTheProgramWorksClosesAfterwards) {
  Start();
  QWindow* main = Find("FrameProd")->window()->windowHandle();
  app_->About.Show();
  Settle();
  const auto close_during = [&](Form& form, QWindow* window, const std::function<void()>& work) {
    {
      const Watch watch([&] { window->close(); });
      desktop_->UserAction(work);
    }
    EXPECT_TRUE(form.IsVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !form.IsVisible(); }));
  };
  // One long call: what is asked meanwhile goes away with the server's answer.
  close_during(app_->About, QApplication::activeWindow()->windowHandle(),
               [&] { app_->TheSession.ReadOne("SELECT SLEEP(1.6)"); });
  EXPECT_TRUE(app_->Main.IsVisible());
  close_during(app_->Main, main, [&] {
    for (int i = 0; i < 300; ++i) app_->TheSession.ReadOne("SELECT SLEEP(0.005)");
  });
}

TEST_F(MainWindow, AStartThatWaitsForTheServerIsEndedByEscOrByClosing) {
  Prepare();
  app_->Start();
  Settle();
  int given_up = 0;
  desktop_->TheServerWait()->GiveUp = [&] { ++given_up; };
  QWidget* splash = QApplication::topLevelWidgets().constFirst();
  for (const bool by_key : {true, false}) {
    const int before = given_up;
    const Watch watch([&] {
      if (Find<QLabel>("decoServerNote") == nullptr || given_up > before) return;
      if (by_key) {
        QTest::keyClick(splash, Qt::Key_Escape);
      } else {
        splash->close();
      }
    });
    desktop_->UserAction(
        [&] { desktop_->TheServerWait()->Make([] { std::this_thread::sleep_for(std::chrono::milliseconds(1300)); }); });
    EXPECT_EQ(given_up, before + 1);
  }
  EXPECT_TRUE(app_->Splash.IsVisible());
}

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

/// The catalogue in front, with its recordset.
class Catalogue : public MainWindow {
 protected:
  Catalogue() {
    Start();
    Choose("sprav");
    table_ = Find<QTableView>("DataGrid1_0");
  }

  DataGrid& Grid() { return app_->Main.Catalogue.DataGrid1[0]; }
  Recordset& Products() { return app_->TheSession.Pool().RsProducts; }

  QTableView* table_ = nullptr;
};

TEST_F(Catalogue, GridAndRecordsetShareTheirRow) {
  ASSERT_EQ(table_->model()->rowCount(), kProducts);
  EXPECT_EQ(table_->model()->headerData(1, Qt::Horizontal).toString(), "Name");
  EXPECT_EQ(table_->model()->index(41, 1).data().toString(), "Товар 00042");
  EXPECT_EQ(table_->model()->index(41, 2).data().toString(), "1,00");
  EXPECT_EQ(table_->model()->index(0, 2).data(Qt::TextAlignmentRole).toInt(), Qt::AlignRight | Qt::AlignVCenter);
  EXPECT_TRUE(table_->verticalHeader()->isHidden());

  Products().SetBookmark(1500);
  Settle();
  EXPECT_EQ(table_->currentIndex().row(), 1499);
  EXPECT_EQ(Grid().FirstRow(), table_->rowAt(1) + 1 + (table_->rowViewportPosition(table_->rowAt(1)) < 0 ? 1 : 0));

  QTest::keyClick(table_, Qt::Key_Down);
  EXPECT_EQ(Products().Bookmark(), 1501);
  QTest::keyClick(table_, Qt::Key_End);
  EXPECT_EQ(Products().Bookmark(), kProducts);
  QTest::keyClick(table_, Qt::Key_Home);
  Settle();
  EXPECT_EQ(Products().Bookmark(), 1);
  EXPECT_EQ(Grid().FirstRow(), 1);

  const QPoint third(20, table_->rowViewportPosition(2) + 3);
  QTest::mouseClick(table_->viewport(), Qt::LeftButton, {}, third);
  EXPECT_EQ(Products().Bookmark(), 3);

  Grid().FirstRow = 700;
  EXPECT_EQ(table_->verticalScrollBar()->value(), 699);
  // A key finds the table on the recordset's row, also before the window had time to follow.
  Products().SetBookmark(10);
  QTest::keyClick(table_, Qt::Key_Up);
  EXPECT_EQ(Products().Bookmark(), 9);

  Products().MoveFirst();
  Products().Move(-1);
  Settle();
  EXPECT_FALSE(table_->currentIndex().isValid());  // before the first row none is marked
  Products().MoveLast();
  Products().MoveNext();
  EXPECT_EQ(Grid().Row(), 0);  // nor is one behind the last
  // Walking through it moves the table once.
  int moves = 0;
  QObject::connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, table_, [&] { ++moves; });
  for (Products().MoveFirst(); !Products().Eof(); Products().MoveNext()) continue;
  Products().SetBookmark(5);
  Settle();
  EXPECT_EQ(moves, 1);
}

TEST_F(Catalogue, ColumnsFollowTheirLayoutAndTheBindingTheirRecordset) {
  const int barcode = 11;
  const int ukt = 12;
  EXPECT_FALSE(table_->isColumnHidden(barcode));
  EXPECT_TRUE(table_->isColumnHidden(ukt));
  Grid().Layout(std::to_array<ColumnLayout>(
      {{"Barcode", 0, GridColumn::Align::kLeft}, {"UKTZED", 1440, GridColumn::Align::kLeft}}));
  EXPECT_TRUE(table_->isColumnHidden(barcode));
  EXPECT_EQ(table_->columnWidth(ukt), table_->logicalDpiX());  // an inch

  Grid().Caption = "Товары";  // a heading comes and goes with its table
  const auto is_headed = [this] {
    return std::ranges::any_of(table_->window()->findChildren<QLabel*>(),
                               [](const QLabel* label) { return label->text() == "Товары" && label->isVisible(); });
  };
  EXPECT_TRUE(is_headed());
  Grid().Visible = false;
  EXPECT_FALSE(is_headed());
  Grid().Visible = true;

  app_->TheSession.BindSet(Products(), "SELECT COD As 'Cod' FROM TOVAR WHERE COD<5");
  table_->viewport()->repaint();  // as a box would between opening and binding
  Grid().Bind(Products());
  EXPECT_EQ(table_->model()->columnCount(), 1);
  EXPECT_EQ(table_->model()->rowCount(), 4);
  Products().Close();
  EXPECT_EQ(table_->model()->rowCount(), 0);
}

TEST_F(Catalogue, ATableShowsWholeRowsAndWholeTextsAndCopiesThem) {
  for (const int more : {0, 7, 13, 20}) {
    table_->window()->resize(table_->window()->width(), 740 + more);
    table_->verticalScrollBar()->setValue(table_->verticalScrollBar()->maximum());
    Settle();
    EXPECT_EQ(table_->rowViewportPosition(table_->rowAt(0)), 0) << more;
    EXPECT_EQ(table_->rowAt(table_->viewport()->height() - 1), kProducts - 1) << more;
  }

  database_->Sql("UPDATE TOVAR SET PRISE=123456789, NAME='Арбуз <b>, у которого очень длинное название' WHERE COD=1");
  desktop_->UserAction([&] { Products().Requery(); });
  Grid().FirstRow = 1;
  Settle();
  const int price = 2;
  const QString shown = "1234567,89";
  ASSERT_EQ(table_->model()->index(0, price).data().toString(), shown);
  EXPECT_GT(table_->columnWidth(price), table_->fontMetrics().horizontalAdvance(shown));
  const auto tip_over = [&](int column) {
    QToolTip::hideText();
    QHelpEvent help(QEvent::ToolTip, table_->visualRect(table_->model()->index(0, column)).center(), QPoint(50, 50));
    QApplication::sendEvent(table_->viewport(), &help);
    return QToolTip::text();
  };
  EXPECT_FALSE(tip_over(price).contains("567"));  // what is read whole needs no tip
  table_->setColumnWidth(1, 60);
  EXPECT_TRUE(tip_over(1).contains("Арбуз &lt;b&gt;, у которого очень длинное название")) << tip_over(1).toStdString();

  Products().SetBookmark(1);
  Settle();
  table_->setFocus();
  QTest::keyClick(table_, Qt::Key_C, Qt::ControlModifier);
  const QStringList copied = QApplication::clipboard()->text().split('\t');
  EXPECT_EQ(copied.mid(0, 3), (QStringList{"1", "Арбуз <b>, у которого очень длинное название", "1234567,89"}));

  const int wide = table_->columnWidth(price);
  database_->Sql("UPDATE TOVAR SET PRISE=100 WHERE COD=1");
  desktop_->UserAction([&] { Products().Requery(); });
  Settle();
  EXPECT_LT(table_->columnWidth(price), wide) << "a column needs what is in it now";
}

TEST(ColumnWidths, WhatIsLeftGoesWhereSomethingIsCut) {
  const ColumnRoom cod{40, 35, false}, name{200, 120, true}, price{60, 90, false}, note{80, 200, true};
  using Widths = std::vector<int>;
  EXPECT_EQ(FitWidths({cod, name}, 300), (Widths{40, 260}));             // the rest to the longest texts
  EXPECT_EQ(FitWidths({cod, name, price}, 340), (Widths{40, 210, 90}));  // first to what is cut
  EXPECT_EQ(FitWidths({cod, name, price}, 300), (Widths{40, 170, 90}));  // then at the cost of what has too much
  EXPECT_EQ(FitWidths({cod, name, price}, 270), (Widths{40, 140, 90}));  // also where the layout is too wide
  EXPECT_EQ(FitWidths({cod, name, price, note}, 380), (Widths{35, 120, 90, 135}));  // the least cut first
  EXPECT_EQ(FitWidths({cod, name, price}, 100), (Widths{35, 100, 90}));  // a number is read whole, a text by half
  EXPECT_EQ(FitWidths({cod, name, price}, 230), (Widths{35, 105, 90}));
  EXPECT_EQ(FitWidths({cod, name, {40, 90, true, 55}}, 170), (Widths{35, 105, 55}));  // as is a header
  EXPECT_EQ(FitWidths({cod, price}, 140), (Widths{45, 95}));
}

TEST_F(Catalogue, TypingInAGridIsTheProgramsAffair) {
  std::string typed;
  Grid().KeyDown = [&](Key& key) { typed += key.code == Key::kEnter ? "<Enter>" : key.text; };
  int double_clicks = 0;
  Grid().DblClick = [&] { ++double_clicks; };
  const int row = table_->currentIndex().row();
  QTest::keyClicks(table_, "t1");
  QTest::keyClick(table_, Qt::Key_Return);
  EXPECT_EQ(typed, "t1<Enter>");
  EXPECT_EQ(table_->currentIndex().row(), row);  // the table doesn't search by itself
  const QPoint first(20, table_->rowViewportPosition(table_->rowAt(1)) + 3);
  QTest::mouseClick(table_->viewport(), Qt::LeftButton, {}, first);
  QTest::mouseDClick(table_->viewport(), Qt::LeftButton, {}, first);
  EXPECT_EQ(double_clicks, 1);

  // Its keys work from elsewhere in the window as well, but for the one that deletes.
  std::string pressed;
  app_->Main.Catalogue.CmdNew.Click = [&] { pressed += "new "; };
  app_->Main.Catalogue.CmdDelPLU.Click = [&] { pressed += "deleted "; };
  for (QWidget* place : {Find("CmdSortCod"), Find("DataGrid1_0")}) {
    place->setFocus();
    for (const Qt::Key key : {Qt::Key_Insert, Qt::Key_Delete}) QTest::keyClick(place, key);
  }
  EXPECT_EQ(pressed, "new new deleted ");
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
