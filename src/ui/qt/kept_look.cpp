#include "ui/qt/kept_look.h"

#include <QCoreApplication>
#include <QSettings>

namespace zrt {

namespace {

bool IsKept() {
  return !QCoreApplication::organizationName().isEmpty();
}

}  // namespace

QVariant KeptLook(const QString& key) {
  return IsKept() ? QSettings().value(key) : QVariant();
}

void KeepLook(const QString& key, const QVariant& value) {
  if (IsKept()) QSettings().setValue(key, value);
}

}  // namespace zrt
