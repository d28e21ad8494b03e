#include "ui/qt/copying.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QListWidget>
#include <QMenu>
#include <QTableView>
#include <algorithm>

#include "ui/qt/grid_model.h"

namespace zrt {

namespace {

constexpr QChar kGroupMark(0xA0);

QString RowText(const QTableView& table) {
  const QModelIndex current = table.currentIndex();
  const QAbstractItemModel& model = *table.model();
  QStringList cells;
  for (int column = 0; column < model.columnCount(); ++column) {
    if (table.isColumnHidden(column)) continue;
    const QModelIndex cell = model.index(current.row(), column);
    QString text = cell.data().toString();
    const auto align = cell.data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    // A number whose thousands stand apart is a text to a spreadsheet.
    if (align.testFlag(Qt::AlignRight)) text.remove(kGroupMark);
    cells += text.replace('\t', ' ').replace('\n', ' ');
  }
  return cells.join('\t');
}

QString Lines(const QListWidget& list, bool selected_alone) {
  QStringList lines;
  for (int row = 0; row < list.count(); ++row) {
    const QListWidgetItem* item = list.item(row);
    if (!selected_alone || item->isSelected()) lines += item->text();
  }
  return lines.join('\n');
}

}  // namespace

void CopyFrom(const QWidget* widget) {
  QClipboard& clipboard = *QGuiApplication::clipboard();
  if (const auto* table = qobject_cast<const QTableView*>(widget)) {
    const bool row = dynamic_cast<const GridModel*>(table->model()) != nullptr && table->currentIndex().isValid();
    if (row) clipboard.setText(RowText(*table));
  } else if (const auto* list = qobject_cast<const QListWidget*>(widget); list != nullptr && list->count() > 0) {
    clipboard.setText(Lines(*list, list->selectedItems().size() > 1));
  }
}

void LetCopyLines(QListWidget& list) {
  list.setSelectionMode(QAbstractItemView::ExtendedSelection);
  list.setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(&list, &QWidget::customContextMenuRequested, &list, [&list](const QPoint& place) {
    QMenu menu(&list);
    QAction* selected = menu.addAction(QStringLiteral("Копировать выбранное"));
    selected->setEnabled(!list.selectedItems().isEmpty());
    QAction* all = menu.addAction(QStringLiteral("Копировать весь отчёт"));
    all->setEnabled(list.count() > 0);
    const QAction* chosen = menu.exec(list.viewport()->mapToGlobal(place));
    if (chosen != nullptr) QGuiApplication::clipboard()->setText(Lines(list, chosen == selected));
  });
}

}  // namespace zrt
