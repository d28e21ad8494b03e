// The tables of the window: rows, columns and their widths, copying, typing.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "ui/qt/column_widths.h"
#include "ui/qt/copying.h"
#include "ui/qt/main_window.h"

namespace zrt {
namespace {

using test::kProducts;
using test::MainWindow;

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

}  // namespace
}  // namespace zrt
