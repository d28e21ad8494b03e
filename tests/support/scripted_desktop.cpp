#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <optional>

namespace zrt::test {

ScriptedDesktop::~ScriptedDesktop() {
  CheckAllCame();
}

void ScriptedDesktop::Expect(std::string text, BoxAnswer answer, std::optional<BoxIcon> icon,
                             std::optional<std::string> title) {
  boxes_.push_back({std::move(text), answer, icon, std::move(title), {}});
}

void ScriptedDesktop::ExpectInput(std::string prompt, std::string entry) {
  boxes_.push_back({std::move(prompt), BoxAnswer::kOk, {}, {}, std::move(entry)});
}

void ScriptedDesktop::InModal(std::function<void(Form&)> work) {
  modal_work_.push_back(std::move(work));
}

void ScriptedDesktop::CheckAllCame() {
  for (const Box& box : boxes_) ADD_FAILURE() << "this box stayed away: " << box.text;
  if (!modal_work_.empty()) ADD_FAILURE() << "a modal form stayed away";
  if (errors_expected_ > 0) ADD_FAILURE() << "a run-time error stayed away";
  boxes_.clear();
  modal_work_.clear();
  errors_expected_ = 0;
}

std::optional<ScriptedDesktop::Box> ScriptedDesktop::Next(const std::string& text, bool input) {
  if (boxes_.empty()) {
    ADD_FAILURE() << "an unasked box: " << text;
    return {};
  }
  Box box = std::move(boxes_.front());
  boxes_.pop_front();
  EXPECT_EQ(box.text, text);
  EXPECT_EQ(box.entry.has_value(), input) << text;
  return box;
}

BoxAnswer ScriptedDesktop::DoMsgBox(const Message& message) {
  last_message_ = message;
  const auto& [text, icon, buttons, title, details, folder, usual] = message;
  const std::optional<Box> box = Next(text, false);
  if (!box) return buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kCancel;
  if (box->icon) {
    EXPECT_EQ(*box->icon, icon) << text;
  }
  if (box->title) {
    EXPECT_EQ(*box->title, title) << text;
  }
  EXPECT_TRUE(Offers(buttons, box->answer)) << "no such button: " << text;
  return box->answer;
}

std::string ScriptedDesktop::DoInputBox(const std::string& prompt, const std::string&, const std::string&) {
  const std::optional<Box> box = Next(prompt, true);
  return box ? box->entry.value_or("") : std::string();
}

void ScriptedDesktop::DoModalLoop(Form& form) {
  if (modal_work_.empty()) {
    ADD_FAILURE() << "an unasked modal form: " << form.Name();
  } else {
    const auto work = std::move(modal_work_.front());
    modal_work_.pop_front();
    work(form);
    EXPECT_FALSE(form.IsVisible()) << form.Name() << " is still open";
  }
  Hide(form);
}

void ScriptedDesktop::DoRuntimeError(const std::exception& error) {
  if (errors_expected_ == 0) {
    ADD_FAILURE() << "a run-time error: " << error.what();
  } else {
    --errors_expected_;
  }
}

}  // namespace zrt::test
