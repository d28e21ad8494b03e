#include "ui/cmd_key_trigg.h"

#include <charconv>
#include <limits>
#include <type_traits>

#include "core/errors.h"
#include "core/numbers.h"
#include "ui/form.h"

namespace zrt {

namespace {

/// Every stored property with its default, in the order in which they are loaded.
template <class Key, class Visit>
void ForEachStored(Key& key, Visit visit) {
  visit(key.Caption_1, "");
  visit(key.Caption_2, "");
  visit(key.BackColor, colour::kHighlightEdge);
  visit(key.ForeColor, colour::kButtonText);
  visit(key.GrndColor, colour::kButtonFace);
  visit(key.SizeWidth, std::int16_t{15});
  visit(key.SizeHeigth, std::int16_t{9});
  visit(key.SizeFont, std::uint8_t{10});
  visit(key.Trigger, std::uint8_t{1});
  visit(key.Image_1Red, "");
  visit(key.Image_2Red, "");
  visit(key.Image_1Green, "");
  visit(key.Image_2Green, "");
  visit(key.ImgTop, std::int16_t{20});
  visit(key.Img1Left, std::int16_t{60});
  visit(key.Img2Left, std::int16_t{1380});
}

template <class T>
T StoredNumber(const std::string& text) {
  T value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) throw OverflowError("number out of range: " + text);
  if (error != std::errc() || end != text.data() + text.size()) throw TypeMismatch("no number: " + text);
  return value;
}

std::int16_t Times(std::int16_t value, int factor) {
  return ToInt16(value * factor);
}

std::int16_t Plus(std::int16_t value, int amount) {
  return ToInt16(value + amount);
}

}  // namespace

KeyTriggSizes KeyTriggSizesOf(std::int16_t size_width, std::int16_t size_height) {
  const std::int16_t width = Times(size_width, 120);
  const std::int16_t height = Times(size_height, 60);
  return {.label_width = Plus(width, -120),
          .label_top = Plus(Times(size_height, 20), -60),
          .shape1_width = Plus(width, -30),
          .shape1_height = Plus(height, -30),
          .shape2_width = Plus(width, 10),
          .shape2_height = Plus(height, 10),
          .width = Plus(width, 15),
          .height = Plus(height, 15)};
}

CmdKeyTrigg::CmdKeyTrigg(Form& form, std::string name)
    : Control(form, std::move(name), {"QWidget/keytrigg", "KeyTriggWidget"}) {
  Caption_1.Let = [this](const std::string& caption) {
    if (Trigger() == 1) Label0 = caption;
  };
  Caption_2.Let = [this](const std::string& caption) {
    if (Trigger() == 2) Label0 = caption;
  };
  Trigger.Let = [this](std::uint8_t half) { Label0 = half == 1 ? Caption_1() : Caption_2(); };
  SizeWidth.Let = [this](std::int16_t width) { KeyTriggSizesOf(width, SizeHeigth()); };
  SizeHeigth.Let = [this](std::int16_t height) { KeyTriggSizesOf(SizeWidth(), height); };
  ReadProperties(Definition().properties);
}

void CmdKeyTrigg::ReadProperties(const StoredProperties& stored) {
  ForEachStored(*this, [&]<class T>(Property<T>& property, const auto& otherwise) {
    const auto found = stored.find(property.Name());
    if (found == stored.end()) {
      property = otherwise;
    } else if constexpr (std::is_same_v<T, std::string>) {
      property = found->second;
    } else {
      property = StoredNumber<T>(found->second);
    }
  });
}

CmdKeyTrigg::StoredProperties CmdKeyTrigg::WriteProperties() const {
  StoredProperties stored;
  ForEachStored(*this, [&](const auto& property, const auto& otherwise) {
    if (property() != otherwise) stored.emplace(property.Name(), property.AsText());
  });
  return stored;
}

void CmdKeyTrigg::UserPress(std::uint8_t half) {
  if (!IsUsable()) return;
  Trigger = half;
  Click.Raise(half);
}

void CmdKeyTrigg::UserSet(const std::string& value) {
  if (value != "1" && value != "2") throw ScriptError(Name() + " has the halves 1 and 2");
  UserPress(value == "1" ? 1 : 2);
}

void CmdKeyTrigg::UserClick() {
  UserPress(FirstIsOn() ? 2 : 1);
}

}  // namespace zrt
