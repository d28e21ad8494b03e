#include "ui/qt/grid_view.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QScrollBar>

namespace zrt {

namespace {

constexpr int kTwipsPerPoint = 20;
constexpr int kPointsPerInch = 72;

int PixelsOf(int twips, const QWidget& widget) {
  return twips * widget.logicalDpiX() / (kTwipsPerPoint * kPointsPerInch);
}

}  // namespace

GridView::GridView(ViewContext context, DataGrid& control, QTableView* widget)
    : ControlView(context, control, widget), control_(control), widget_(widget), model_(control) {
  widget->setModel(&model_);
  widget->setSelectionBehavior(QAbstractItemView::SelectRows);
  widget->setSelectionMode(QAbstractItemView::SingleSelection);
  widget->setEditTriggers(QAbstractItemView::NoEditTriggers);
  widget->setAlternatingRowColors(true);
  widget->setWordWrap(false);
  widget->setTabKeyNavigation(false);
  widget->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  widget->verticalHeader()->hide();
  widget->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  widget->verticalHeader()->setMinimumSectionSize(1);
  widget->verticalHeader()->setDefaultSectionSize(widget->fontMetrics().height() + 4);
  widget->horizontalHeader()->setHighlightSections(false);
  widget->horizontalHeader()->setMinimumSectionSize(8);
  widget->horizontalHeader()->setFixedHeight(widget->fontMetrics().height() + 8);
  PutCaptionAbove();

  connect(widget->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& now) {
    if (!showing_ && now.isValid()) Act([&] { control_.UserRow(now.row() + 1); });
  });
  connect(widget, &QTableView::doubleClicked, this, [this] { Act([this] { control_.UserDblClick(); }); });
  connect(widget->verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int top) {
    if (!IsDead()) control_.FirstRow = top + 1;
  });
  control.OnRows = [this] { ShowRows(); };
  control.OnRow = [this] { ShowRow(); };
  Attach();
  ShowRows();
}

void GridView::Detach() {
  control_.OnRows = nullptr;
  control_.OnRow = nullptr;
  ControlView::Detach();
}

void GridView::ShowOwn(const PropertyBase& property) {
  if (&property == &control_.Columns) ShowColumns();
  if (&property == &control_.Caption && caption_ != nullptr) {
    caption_->setText(QString::fromStdString(control_.Caption()));
  }
}

bool GridView::OwnKey(const Key& key) {
  // First and last row, where the widget would go to the first and last column.
  if (control_.Rows() == 0 || (key.code != Key::kHome && key.code != Key::kEnd)) return false;
  Act([&] { control_.UserRow(key.code == Key::kHome ? 1 : control_.Rows()); });
  return true;
}

void GridView::PutCaptionAbove() {
  QWidget* parent = widget_->parentWidget();
  if (control_.Caption().empty() || parent == nullptr || parent->layout() == nullptr) return;
  auto* box = new QWidget(parent);
  delete parent->layout()->replaceWidget(widget_, box);
  auto* column = new QVBoxLayout(box);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  caption_ = new QLabel(box);
  QFont bold = caption_->font();
  bold.setBold(true);
  caption_->setFont(bold);
  column->addWidget(caption_);
  column->addWidget(widget_);
}

void GridView::ShowColumns() {
  const std::vector<GridColumn>& columns = control_.Columns();
  if (model_.columnCount() != static_cast<int>(columns.size())) {
    ShowRows();
    return;
  }
  model_.RenewHeader();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int section = static_cast<int>(i);
    widget_->setColumnHidden(section, columns[i].width == 0);
    if (columns[i].width > 0) widget_->setColumnWidth(section, PixelsOf(columns[i].width, *widget_));
  }
  widget_->viewport()->update();
}

void GridView::ShowRows() {
  showing_ = true;
  model_.Renew();
  showing_ = false;
  ShowColumns();
  ShowRow();
}

void GridView::ShowRow() {
  if (model_.rowCount() != control_.Rows()) return;
  showing_ = true;
  const int row = control_.Row() - 1;
  const QModelIndex current = widget_->currentIndex();
  if (row < 0) {
    widget_->setCurrentIndex({});
    widget_->clearSelection();
  } else if (current.row() != row) {
    widget_->setCurrentIndex(model_.index(row, std::max(0, current.column())));
  }
  showing_ = false;
}

}  // namespace zrt
