#include "ui/qt/list_views.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QListWidget>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <algorithm>
#include <string>
#include <vector>

#include "platform/twips.h"
#include "ui/qt/copying.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/view_kinds.h"

namespace zrt {

namespace {

/// Gives all lines of a list the size of its widest one. One size for all keeps a list quick that grows by thousands of
/// lines; left to itself, it would be that of the last line, and any wider one would be cut short without a way to
/// scroll there.
class WidestLine final : public QStyledItemDelegate {
 public:
  explicit WidestLine(QListWidget* list) : QStyledItemDelegate(list), list_(list) {
    list->setUniformItemSizes(true);
    list->setItemDelegate(this);
    connect(list->model(), &QAbstractItemModel::modelReset, this, [this] { widest_ = 0; });
    connect(list->model(), &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
      for (int row = first; row <= last; ++row) {
        if (WidthOf(row) > WidthOf(widest_)) widest_ = row;
      }
    });
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index.siblingAtRow(widest_));
  }

 private:
  int WidthOf(int row) const { return list_->fontMetrics().horizontalAdvance(list_->item(row)->text()); }

  QListWidget* list_;
  int widest_ = 0;
};

class ListView final : public ControlView {
 public:
  ListView(ListBox& list, QListWidget* widget) : ControlView(list, widget), list_(list), widget_(widget) {
    connect(widget, &QListWidget::currentRowChanged, this, [this](int row) {
      // While the mouse is pressed the click that follows is the choice.
      if (!busy_ && row != list_.ListIndex() && QApplication::mouseButtons() == Qt::NoButton) Choose(row);
    });
    connect(widget, &QListWidget::clicked, this, [this](const QModelIndex& index) { Choose(index.row()); });
    connect(widget, &QListWidget::doubleClicked, this, [this] { Act([this] { list_.UserDblClick(); }); });
    list.OnAdded = [this] { widget_->addItem(ToQt(list_.Items().back())); };
    new WidestLine(widget);
    // One whose lines can't be chosen is a report.
    if (!list.DblClick) LetCopyLines(*widget);
    WatchKeys(widget);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &list_.Items) {
      const Quiet quiet(busy_, true);
      widget_->clear();
      for (const std::string& item : list_.Items()) widget_->addItem(ToQt(item));
      widget_->setCurrentRow(list_.ListIndex());
    } else if (&property == &list_.ListIndex) {
      const Quiet quiet(busy_, true);
      widget_->setCurrentRow(list_.ListIndex());
    } else if (&property == &list_.Width) {
      widget_->setMinimumWidth(list_.Width() * widget_->logicalDpiX() / kTwipsPerInch);
    } else {
      ControlView::Show(property);
    }
  }

  /// A list that grows may be drawn for a fifth of the time, as drawing every line can cost more than its query. While
  /// the queries are slow that is enough for each line, so the operator reads the newest one during the next query;
  /// what quick ones add is seen a few milliseconds late.
  bool RepaintAlone() override {
    constexpr qint64 kShare = 5;
    constexpr qint64 kMostSaved = 40'000'000;  // nanoseconds
    if (drawn_.isValid()) saved_ = std::min(kMostSaved, saved_ + drawn_.nsecsElapsed() / kShare);
    drawn_.start();
    if (saved_ < 0) return true;
    widget_->viewport()->repaint();
    saved_ -= drawn_.nsecsElapsed();
    return true;
  }

 protected:
  void LetGo() override { list_.OnAdded = nullptr; }

 private:
  void Choose(int row) {
    if (row >= 0) Act([&] { list_.UserChoose(row); });
  }

  ListBox& list_;
  QListWidget* widget_;
  QElapsedTimer drawn_;  ///< since the last line was to be drawn
  qint64 saved_ = 0;     ///< time that drawing may still take, nanoseconds; below zero after a drawing that took more
  bool busy_ = false;
};

/// A tree of folders whose current entry is Path. Folders are read when their entry is opened.
class DirListView final : public ControlView {
 public:
  DirListView(DirListBox& list, QTreeWidget* tree, const DriveMap& drives)
      : ControlView(list, tree), list_(list), tree_(tree), drives_(drives) {
    tree->setHeaderHidden(true);
    connect(tree, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* entry) { Fill(entry); });
    connect(tree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* entry) {
      if (!busy_ && entry != nullptr) Act([&] { list_.UserOpen(PathOf(entry)); });
    });
    WatchKeys(tree);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property != &list_.Path) return ControlView::Show(property);
    const QTreeWidgetItem* present = tree_->currentItem();
    if (present == nullptr || ToQt(PathOf(present)) != PathOfList()) ShowPath();
  }

 protected:
  void ShowVisible(bool visible) override {
    // Folders come and go while the list is out of sight.
    if (visible) ShowPath();
    ControlView::ShowVisible(visible);
  }

 private:
  static std::string PathOf(const QTreeWidgetItem* entry) {
    if (entry->parent() == nullptr) return entry->text(0).toStdString();
    std::string path = entry->text(0).toStdString();
    for (entry = entry->parent(); entry != nullptr; entry = entry->parent()) {
      const std::string folder = entry->text(0).toStdString();
      path.insert(0, folder.ends_with('\\') ? "" : "\\").insert(0, folder);
    }
    return path;
  }

  static QTreeWidgetItem* Child(QTreeWidgetItem* entry, const QString& name) {
    for (int i = 0; i < entry->childCount(); ++i) {
      if (entry->child(i)->text(0).compare(name, Qt::CaseInsensitive) == 0) return entry->child(i);
    }
    return nullptr;
  }

  static QTreeWidgetItem* NewEntry(const QString& name) {
    auto* entry = new QTreeWidgetItem({name});
    entry->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return entry;
  }

  void Fill(QTreeWidgetItem* entry) {
    const std::vector<std::string> folders = drives_.Folders(PathOf(entry));
    for (const std::string& folder : folders) {
      if (Child(entry, ToQt(folder)) == nullptr) entry->addChild(NewEntry(ToQt(folder)));
    }
    entry->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
  }

  QString PathOfList() const { return ToQt(list_.Path()).replace(QLatin1Char('/'), QLatin1Char('\\')); }

  void ShowPath() {
    const QString path = PathOfList();
    if (path.isEmpty()) return;
    const Quiet quiet(busy_, true);
    tree_->clear();
    const QStringList folders = path.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    QTreeWidgetItem* entry = NewEntry(folders.first() + QLatin1Char('\\'));
    tree_->addTopLevelItem(entry);
    for (const QString& folder : folders.mid(1)) {
      Fill(entry);
      QTreeWidgetItem* child = Child(entry, folder);
      if (child == nullptr) entry->addChild(child = NewEntry(folder));
      entry->setExpanded(true);
      entry = child;
    }
    tree_->setCurrentItem(entry);
    tree_->scrollToItem(entry);
  }

  DirListBox& list_;
  QTreeWidget* tree_;
  const DriveMap& drives_;
  bool busy_ = false;
};

class DriveView final : public ControlView {
 public:
  DriveView(DriveListBox& list, QComboBox* widget, const DriveMap& drives)
      : ControlView(list, widget), list_(list), widget_(widget) {
    for (const std::string& drive : drives.Drives()) widget->addItem(ToQt(drive));
    connect(widget, &QComboBox::activated, this, [this](int index) {
      const std::string drive = widget_->itemText(index).toStdString();
      Act([&] { list_.UserChoose(drive); });
    });
    WatchKeys(widget);
    Start();
  }
  void Show(const PropertyBase& property) override {
    if (&property == &list_.Drive) return widget_->setCurrentText(ToQt(list_.Drive()));
    ControlView::Show(property);
  }

 private:
  DriveListBox& list_;
  QComboBox* widget_;
};

/// The files of a folder, read again whenever the list comes into sight.
class FileListView final : public ControlView {
 public:
  FileListView(FileListBox& list, QListWidget* widget, const DriveMap& drives)
      : ControlView(list, widget), list_(list), widget_(widget), drives_(drives) {
    new WidestLine(widget);
    connect(widget, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
      if (!busy_ && item != nullptr) Act([&] { list_.UserChoose(item->text().toStdString()); });
    });
    WatchKeys(widget);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &list_.Path || &property == &list_.Pattern) return Fill();
    if (&property == &list_.FileName) return ShowChosen();
    ControlView::Show(property);
  }

 protected:
  void ShowVisible(bool visible) override {
    if (visible) Fill();
    ControlView::ShowVisible(visible);
  }

 private:
  void Fill() {
    const Quiet quiet(busy_, true);
    widget_->clear();
    if (list_.Path().empty()) return;
    for (const std::string& file : drives_.Files(list_.Path(), list_.Pattern())) widget_->addItem(ToQt(file));
    ShowChosen();
  }

  void ShowChosen() {
    const Quiet quiet(busy_, true);
    const QList<QListWidgetItem*> found = widget_->findItems(ToQt(list_.FileName()), Qt::MatchFixedString);
    widget_->setCurrentItem(found.isEmpty() ? nullptr : found.first());
  }

  FileListBox& list_;
  QListWidget* widget_;
  const DriveMap& drives_;
  bool busy_ = false;
};

}  // namespace

std::unique_ptr<ControlView> MakeListView(Control& control, QObject* object, const DriveMap& drives) {
  std::unique_ptr<ControlView> view;
  const bool known = TryKind<ListBox, ListView, QListWidget>(view, control, object) ||
                     TryKind<DirListBox, DirListView, QTreeWidget>(view, control, object, drives) ||
                     TryKind<DriveListBox, DriveView, QComboBox>(view, control, object, drives) ||
                     TryKind<FileListBox, FileListView, QListWidget>(view, control, object, drives);
  return known ? std::move(view) : nullptr;
}

}  // namespace zrt
