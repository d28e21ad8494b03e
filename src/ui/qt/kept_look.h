#pragma once

#include <QString>
#include <QVariant>

namespace zrt {

/// What the operator has made of the windows - their sizes, the widths of columns - and wants to find again: kept in
/// the user's own settings of the toolkit, apart from all that the shop keeps. Nothing is kept by a process that hasn't
/// given the toolkit an organization's name, as tests.
QVariant KeptLook(const QString& key);
void KeepLook(const QString& key, const QVariant& value);

}  // namespace zrt
