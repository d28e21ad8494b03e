#include "ui/qt/grid_view.h"

#include <QBoxLayout>
#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <vector>

#include "platform/twips.h"
#include "ui/qt/qt_text.h"

namespace zrt {

namespace {

using Quiet = QScopedValueRollback<bool>;
using Align = GridColumn::Align;

constexpr int kRowPadding = 5;

/// The row or column of widgets that holds the table, somewhere in the layout of its window.
QBoxLayout* BoxAround(QLayout* layout, QTableView& table) {
  if (layout == nullptr) return nullptr;
  if (auto* box = qobject_cast<QBoxLayout*>(layout); box != nullptr && box->indexOf(&table) >= 0) return box;
  for (int i = 0; i < layout->count(); ++i) {
    if (QBoxLayout* found = BoxAround(layout->itemAt(i)->layout(), table)) return found;
  }
  return nullptr;
}

}  // namespace

GridView::GridView(DataGrid& grid, QTableView* table)
    : ControlView(grid, table), grid_(grid), table_(table), model_(grid) {
  table->setModel(&model_);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setSelectionMode(QAbstractItemView::SingleSelection);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setAlternatingRowColors(true);
  table->setWordWrap(false);
  table->setTabKeyNavigation(false);
  table->setCornerButtonEnabled(false);
  table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table->setStyleSheet(QStringLiteral("QTableView { gridline-color: #dfe2e6; }"));
  // One height for all rows: measuring them is what makes a table of a million rows slow.
  QHeaderView* rows = table->verticalHeader();
  rows->hide();
  rows->setSectionResizeMode(QHeaderView::Fixed);
  rows->setMinimumSectionSize(1);
  rows->setDefaultSectionSize(table->fontMetrics().height() + kRowPadding);
  QHeaderView* columns = table->horizontalHeader();
  columns->setHighlightSections(false);
  columns->setSectionsClickable(false);
  columns->setMinimumSectionSize(10);

  connect(columns, &QHeaderView::sectionResized, this, [this] {
    if (!busy_) widths_by_hand_ = true;
  });
  connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) { WentTo(index); });
  connect(table, &QTableView::doubleClicked, this, [this] { Act([this] { grid_.UserDblClick(); }); });
  connect(table->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { KeepFirstRow(); });
  WatchKeys(table);
  table->viewport()->installEventFilter(this);
  grid_.OnRows = [this] { RowsChanged(); };
  grid_.OnRow = [this] { RowChanged(); };
  Start();
  RowsChanged();
}

void GridView::LetGo() {
  grid_.OnRows = nullptr;
  grid_.OnRow = nullptr;
  // The table goes a moment later than the grid may.
  table_->setModel(nullptr);
}

void GridView::Show(const PropertyBase& property) {
  if (&property == &grid_.Columns) {
    ShowColumns();
  } else if (&property == &grid_.Caption) {
    ShowCaption();
  } else if (&property == &grid_.FirstRow) {
    ShowFirstRow();
  } else {
    ControlView::Show(property);
  }
}

bool GridView::KeyLeft(const Key& key) {
  if (key.code == Key::kHome || key.code == Key::kEnd) {
    // First and last row, where the table by itself would go to the first and last column.
    if (grid_.Rows() > 0) Act([&] { grid_.UserRow(key.code == Key::kHome ? 1 : grid_.Rows()); });
    return true;
  }
  return key.code == Key::kCharacter || key.code == Key::kEnter;
}

void GridView::ShowVisible(bool visible) {
  ControlView::ShowVisible(visible);
  ShowCaption();
}

void GridView::ShowCaption() {
  const QString caption = ToQt(grid_.Caption());
  if (heading_ == nullptr) {
    QBoxLayout* box = BoxAround(table_->parentWidget()->layout(), *table_);
    if (caption.isEmpty() || box == nullptr) return;
    heading_ = new QLabel(table_->parentWidget());
    heading_->setTextFormat(Qt::PlainText);
    QFont font = heading_->font();
    font.setBold(true);
    heading_->setFont(font);
    box->insertWidget(box->indexOf(table_), heading_);
  }
  heading_->setText(caption);
  heading_->setVisible(!caption.isEmpty() && grid_.Visible());
}

void GridView::RowsChanged() {
  const Quiet quiet(busy_, true);
  model_.Renew();
  ShowColumns();
  late_ = true;
  CatchUp();
}

void GridView::ShowColumns() {
  const std::vector<GridColumn>& columns = grid_.Columns();
  if (static_cast<int>(columns.size()) != model_.columnCount()) {
    // Columns are announced before the rows when a grid is bound; both together make a table again.
    const Quiet quiet(busy_, true);
    model_.Renew();
  }
  model_.RenewHeader();
  widths_by_hand_ = false;
  FitColumns();
  table_->viewport()->update();
}

void GridView::FitColumns() {
  if (widths_by_hand_) return;
  const Quiet quiet(busy_, true);
  const std::vector<GridColumn>& columns = grid_.Columns();
  QHeaderView* header = table_->horizontalHeader();
  int left = table_->viewport()->width();
  int widest = -1;
  for (int i = 0; i < model_.columnCount(); ++i) {
    const GridColumn& column = columns[static_cast<std::size_t>(i)];
    header->setSectionHidden(i, column.width <= 0);
    if (column.width <= 0) continue;
    header->resizeSection(i, column.width * table_->logicalDpiX() / kTwipsPerInch);
    left -= header->sectionSize(i);
    const bool text = column.align == Align::kLeft;
    if (text && (widest < 0 || column.width > columns[static_cast<std::size_t>(widest)].width)) widest = i;
  }
  // What is left over goes to the longest texts.
  if (left > 0 && widest >= 0) header->resizeSection(widest, header->sectionSize(widest) + left);
}

void GridView::RowChanged() {
  if (late_) return;
  late_ = true;
  QTimer::singleShot(0, this, [this] {
    if (IsAlive()) CatchUp();
  });
}

void GridView::CatchUp() {
  if (!late_ || !IsAlive()) return;
  late_ = false;
  const Quiet quiet(busy_, true);
  const int row = grid_.Row();
  if (row == 0) {
    table_->selectionModel()->clear();
  } else {
    const QModelIndex present = table_->currentIndex();
    int column = std::max(present.column(), 0);
    while (column < model_.columnCount() - 1 && table_->isColumnHidden(column)) ++column;
    // The row is brought into sight without moving the columns sideways.
    const int sideways = table_->horizontalScrollBar()->value();
    table_->setCurrentIndex(model_.index(row - 1, column));
    table_->horizontalScrollBar()->setValue(sideways);
  }
  KeepFirstRow();
}

void GridView::WentTo(const QModelIndex& index) {
  if (busy_ || !index.isValid()) return;
  const int row = index.row() + 1;
  if (row != grid_.Row()) Act([&] { grid_.UserRow(row); });
}

void GridView::ShowFirstRow() {
  if (busy_) return;
  const Quiet quiet(busy_, true);
  table_->verticalScrollBar()->setValue(grid_.FirstRow() - 1);
}

void GridView::KeepFirstRow() {
  if (!IsAlive()) return;
  const Quiet quiet(busy_, true);
  grid_.FirstRow = table_->verticalScrollBar()->value() + 1;
}

bool GridView::eventFilter(QObject* watched, QEvent* event) {
  if (!IsAlive()) return false;
  if (watched == table_->viewport()) {
    if (event->type() == QEvent::Resize) FitColumns();
    if (event->type() == QEvent::MouseButtonPress) CatchUp();
    return false;
  }
  return ControlView::eventFilter(watched, event);
}

}  // namespace zrt
