#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/headless_desktop.h"

namespace zrt::test {

/// Keeps what a view is told of a control from here on, as "Property=value ".
class Told final : public ElementView {
 public:
  explicit Told(Element& element) : element_(element) {
    element.SetView(this);
    Text.clear();
  }
  ~Told() override { element_.SetView(nullptr); }
  Told(const Told&) = delete;
  Told& operator=(const Told&) = delete;
  void Show(const PropertyBase& property) override {
    Text += std::string(property.Name()) + "=" + property.AsText() + " ";
  }
  std::string Text;

 private:
  Element& element_;
};

/// The host of unit tests: boxes are announced with their answers before the action that causes them, what the operator
/// does in a modal form is a function. A box that comes unasked, or stays away, fails the test; so does a run-time
/// error that the test didn't expect.
class ScriptedDesktop final : public HeadlessDesktop {
 public:
  ~ScriptedDesktop() override;

  /// The next box must say `text`, with this icon and title where they are given; it is answered with `answer`. Boxes
  /// come in the order of the announcements.
  void Expect(std::string text, BoxAnswer answer = BoxAnswer::kOk, std::optional<BoxIcon> icon = {},
              std::optional<std::string> title = {});
  /// The next input box must ask `prompt`; the operator enters `entry`, "" for Cancel.
  void ExpectInput(std::string prompt, std::string entry);
  /// What the operator does in the next modal form. The form must be hidden afterwards.
  void InModal(std::function<void(Form&)> work);
  /// The next action ends in a run-time error.
  void ExpectRuntimeError() { ++errors_expected_; }

  /// The details and the folder that the last message offered.
  const Message& LastMessage() const { return last_message_; }

  /// Fails the test for everything that was announced and didn't come.
  void CheckAllCame();

 protected:
  BoxAnswer DoMsgBox(const Message& message) override;
  std::string DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) override;
  void DoModalLoop(Form& form) override;
  void DoRuntimeError(const std::exception& error) override;

 private:
  struct Box {
    std::string text;
    BoxAnswer answer = BoxAnswer::kOk;
    std::optional<BoxIcon> icon;
    std::optional<std::string> title;
    std::optional<std::string> entry;  ///< given: an input box
  };

  std::optional<Box> Next(const std::string& text, bool input);

  std::deque<Box> boxes_;
  std::deque<std::function<void(Form&)>> modal_work_;
  int errors_expected_ = 0;
  Message last_message_;
};

}  // namespace zrt::test
