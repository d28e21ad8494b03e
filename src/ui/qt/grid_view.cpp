#include "ui/qt/grid_view.h"

#include <QBoxLayout>
#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QToolTip>
#include <algorithm>
#include <vector>

#include "platform/twips.h"
#include "ui/form.h"
#include "ui/qt/column_widths.h"
#include "ui/qt/kept_look.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/shortcuts.h"

namespace zrt {

namespace {

using Quiet = QScopedValueRollback<bool>;
using Align = GridColumn::Align;

constexpr int kRowPadding = 5;
constexpr int kAfterScrolling = 150;  // milliseconds

/// Pixels that the cell needs to show its text whole, with the grid's line.
int WholeWidth(const QTableView& table, const QModelIndex& cell) {
  return table.sizeHintForIndex(cell).width() + 1;
}

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
  row_height_ = table->fontMetrics().height() + kRowPadding;
  rows->setDefaultSectionSize(row_height_);
  QHeaderView* columns = table->horizontalHeader();
  columns->setHighlightSections(false);
  columns->setSectionsClickable(false);
  columns->setMinimumSectionSize(10);

  header_height_ =
      columns->fontMetrics().height() + 2 * table->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, columns);

  connect(columns, &QHeaderView::sectionResized, this, [this] {
    if (!busy_) KeepWidths();
  });
  table->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(table, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { ShowRowMenu(*table_, table_->viewport()->mapToGlobal(place)); });
  connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) { WentTo(index); });
  connect(table, &QTableView::doubleClicked, this, [this] { Act([this] { grid_.UserDblClick(); }); });
  connect(table->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
    KeepFirstRow();
    FitSoon(kAfterScrolling);
  });
  fit_.setSingleShot(true);
  connect(&fit_, &QTimer::timeout, this, [this] {
    if (!IsAlive()) return;
    CatchUp();
    FitColumns();
  });
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
  // The table may outlive the grid for a moment.
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
  // Where the screen has no use of its own for Enter, it changes the row as F2 does.
  if (key.code == Key::kEnter && !grid_.KeyDown) PressRowButton(*table_, QStringLiteral("F2"));
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
  FitSoon(0);
}

void GridView::FitSoon(int milliseconds) {
  const bool comes_sooner = fit_.isActive() && fit_.interval() < milliseconds;
  if (!comes_sooner) fit_.start(milliseconds);
}

void GridView::ShowColumns() {
  const std::vector<GridColumn>& columns = grid_.Columns();
  if (static_cast<int>(columns.size()) != model_.columnCount()) {
    // Columns are announced before the rows when a grid is bound; both together make a table again.
    const Quiet quiet(busy_, true);
    model_.Renew();
  }
  model_.RenewHeader();
  needed_.clear();
  FitColumns();
  table_->viewport()->update();
}

void GridView::FitColumns() {
  const Quiet quiet(busy_, true);
  const std::vector<GridColumn>& columns = grid_.Columns();
  QHeaderView* header = table_->horizontalHeader();
  std::vector<int> shown;
  std::vector<ColumnRoom> rooms;
  for (int i = 0; i < model_.columnCount(); ++i) {
    const bool hidden = columns[static_cast<std::size_t>(i)].width <= 0;
    header->setSectionHidden(i, hidden);
    if (hidden) continue;
    shown.push_back(i);
    needed_.resize(static_cast<std::size_t>(model_.columnCount()));
    rooms.push_back(RoomOf(i));
    int& needed = needed_[static_cast<std::size_t>(i)];
    rooms.back().needed = needed = std::max(needed, rooms.back().needed);
  }
  if (ShowKeptWidths()) return;
  const std::vector<int> widths = FitWidths(rooms, table_->viewport()->width());
  for (std::size_t i = 0; i < shown.size(); ++i) header->resizeSection(shown[i], widths[i]);
}

ColumnRoom GridView::RoomOf(int column) const {
  const GridColumn& layout = grid_.Columns()[static_cast<std::size_t>(column)];
  const int heading = table_->horizontalHeader()->sectionSizeHint(column);
  ColumnRoom room{layout.width * table_->logicalDpiX() / kTwipsPerInch, heading, false, heading};
  if (!table_->isVisible()) {
    room.text = layout.align == Align::kLeft;
    return room;
  }
  const int first = std::max(table_->verticalScrollBar()->value(), 0);
  const int last = std::min(first + table_->viewport()->height() / row_height_ + 1, model_.rowCount());
  std::vector<QString> texts;
  qsizetype longest = 0;
  for (int row = first; row < last; ++row) {
    const QString& text = texts.emplace_back(model_.index(row, column).data().toString());
    longest = std::max(longest, text.size());
    room.text = room.text || std::ranges::any_of(text, [](QChar character) { return character.isLetter(); });
  }
  // Of a column that shows nothing yet the layout says what it is for.
  if (longest == 0) room.text = layout.align == Align::kLeft;
  // Measuring costs more than all the rest; a text that is much shorter than another one isn't wider.
  constexpr double kMuchShorter = 0.7;
  int widest = 0;
  int widest_row = first;
  for (int row = first; row < last; ++row) {
    const QString& text = texts[static_cast<std::size_t>(row - first)];
    if (static_cast<double>(text.size()) < kMuchShorter * static_cast<double>(longest)) continue;
    const int width = table_->fontMetrics().horizontalAdvance(text);
    if (width <= widest) continue;
    widest = width;
    widest_row = row;
  }
  if (widest > 0) room.needed = std::max(room.needed, WholeWidth(*table_, model_.index(widest_row, column)));
  return room;
}

QString GridView::WidthsKey() const {
  QStringList names;
  for (const GridColumn& column : grid_.Columns()) {
    if (column.width > 0) names += ToQt(column.header);
  }
  // A slash would make groups of the settings.
  return QStringLiteral("columns/%1.%2.%3")
      .arg(ToQt(grid_.Owner().Name()), ToQt(grid_.Name()), names.join('|').replace('/', ' '));
}

bool GridView::ShowKeptWidths() {
  const QStringList kept = KeptLook(WidthsKey()).toStringList();
  QHeaderView* header = table_->horizontalHeader();
  if (kept.size() != header->count() || kept.isEmpty()) return false;
  for (int i = 0; i < header->count(); ++i) {
    const int width = kept[i].toInt();
    if (!header->isSectionHidden(i) && width > 0) header->resizeSection(i, width);
  }
  return true;
}

void GridView::KeepWidths() const {
  const QHeaderView& header = *table_->horizontalHeader();
  QStringList widths;
  for (int i = 0; i < header.count(); ++i) widths += QString::number(header.sectionSize(i));
  KeepLook(WidthsKey(), widths);
}

void GridView::FitHeights() {
  QHeaderView* header = table_->horizontalHeader();
  const int room = table_->viewport()->height() + header->height() - header_height_;
  if (room < row_height_) return;
  constexpr int kMostGrowth = 2;
  int best = row_height_;
  for (int height = row_height_; height <= row_height_ + kMostGrowth; ++height) {
    if (room % height < room % best) best = height;
  }
  if (table_->verticalHeader()->defaultSectionSize() != best) table_->verticalHeader()->setDefaultSectionSize(best);
  const int wanted = header_height_ + room % best;
  if (header->height() != wanted) header->setFixedHeight(wanted);
}

bool GridView::ShowCutText(const QHelpEvent& help) {
  const QModelIndex cell = table_->indexAt(help.pos());
  if (!cell.isValid() || WholeWidth(*table_, cell) <= table_->columnWidth(cell.column())) return false;
  // As a text for sure, whatever the shop calls its goods.
  const QString text = QStringLiteral("<p style='white-space:pre'>%1</p>").arg(cell.data().toString().toHtmlEscaped());
  QToolTip::showText(help.globalPos(), text, table_->viewport(), table_->visualRect(cell));
  return true;
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
    switch (event->type()) {
      case QEvent::Resize:
        FitHeights();
        FitColumns();
        break;
      case QEvent::Show:
        FitSoon(0);
        break;
      case QEvent::MouseButtonPress:
        CatchUp();
        break;
      case QEvent::ToolTip:
        return ShowCutText(*static_cast<QHelpEvent*>(event));
      default:
        break;
    }
    return false;
  }
  return ControlView::eventFilter(watched, event);
}

}  // namespace zrt
