#pragma once

#include <QString>
#include <string>

namespace zrt {

inline QString ToQt(const std::string& text) {
  return QString::fromStdString(text);
}

/// For captions of buttons, menus and frames, where the toolkit would take "&" for a shortcut. Names of goods and
/// panels come from the shop's database and hold what they like.
inline QString ToCaption(const std::string& text) {
  return ToQt(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace zrt
