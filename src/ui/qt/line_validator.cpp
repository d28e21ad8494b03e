#include "ui/qt/line_validator.h"

#include <QLineEdit>
#include <QToolTip>
#include <QValidator>
#include <string>

#include "core/text.h"

namespace zrt {

namespace {

bool IsBreak(QChar character) {
  return character == '\n' || character == '\r' || character == '\t' || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

bool IsKnownToTheBase(const QString& character) {
  const std::string utf8 = character.toStdString();
  return FromWindows1251(ToWindows1251(utf8)) == utf8;
}

class LineValidator final : public QValidator {
 public:
  explicit LineValidator(QLineEdit& edit) : QValidator(&edit), edit_(edit) {}

  State validate(QString& text, int& cursor) const override {
    QString kept;
    QString refused;
    int kept_cursor = cursor;
    qsizetype at = 0;
    while (at < text.size()) {
      const bool pair = text[at].isHighSurrogate() && at + 1 < text.size();
      const QString character = text.mid(at, pair ? 2 : 1);
      if (IsBreak(text[at])) {
        kept += ' ';
      } else if (IsKnownToTheBase(character)) {
        kept += character;
      } else {
        refused += character;
        if (at < cursor) kept_cursor -= static_cast<int>(character.size());
      }
      at += character.size();
    }
    text = kept;
    cursor = kept_cursor;
    if (!refused.isEmpty()) Tell(refused);
    return Acceptable;
  }

 private:
  void Tell(const QString& refused) const {
    QToolTip::showText(edit_.mapToGlobal(QPoint(0, edit_.height())),
                       QStringLiteral("Этих знаков нет в кодировке базы данных: %1").arg(refused), &edit_);
  }

  QLineEdit& edit_;
};

}  // namespace

void KeepToOneLine(QLineEdit& edit) {
  edit.setValidator(new LineValidator(edit));
}

}  // namespace zrt
