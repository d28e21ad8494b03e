#pragma once

#include <string>

#include "platform/drive_map.h"
#include "ui/desktop.h"

class QWidget;

namespace zrt {

/// Shows the message over `owner` (may be nullptr) until a button is pressed. Details stand behind a button and are
/// closed at first; a folder is opened by a button of its own, which ends the box like OK.
BoxAnswer ShowMessage(const Message& message, const DriveMap& drives, QWidget* owner);

struct Question {
  std::string prompt;
  std::string title;
  std::string preset;
  bool hidden = false;  ///< what is typed isn't shown
};

/// Asks for a line of text; "" when the operator cancels.
std::string AskLine(const Question& question, QWidget* owner);

}  // namespace zrt
