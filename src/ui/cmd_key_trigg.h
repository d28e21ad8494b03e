#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "ui/controls.h"

namespace zrt {

/// Places and sizes of the parts of a CmdKeyTrigg, in twips.
struct KeyTriggSizes {
  std::int16_t label_width;
  std::int16_t label_top;
  std::int16_t shape1_width;
  std::int16_t shape1_height;
  std::int16_t shape2_width;
  std::int16_t shape2_height;
  std::int16_t width;  ///< of the control itself
  std::int16_t height;
};

/// The sizes that SizeWidth and SizeHeigth stand for. Throws OverflowError when any step of the 16-bit arithmetic
/// leaves its range; the widest key has SizeWidth 272.
KeyTriggSizes KeyTriggSizesOf(std::int16_t size_width, std::int16_t size_height);

/// The program's own two-position key: one wide button with two halves, each with a picture; its caption says which
/// half is on. All its properties are stored in the form's definition under their names; what is to be stored is told
/// by the values alone, so that assigning the value that a property has marks nothing as changed.
class CmdKeyTrigg final : public Control {
 public:
  /// Takes the stored properties from the definition. Throws as ReadProperties.
  CmdKeyTrigg(Form& form, std::string name);

  /// What the caption label shows. A caption that is assigned shows at once only if its half is on; a Trigger other
  /// than 1 and 2 shows the second caption as it was when the Trigger was assigned.
  Property<std::string> Label0{*this, "Label0"};

  Property<std::string> Caption_1{*this, "Caption_1"};
  Property<std::string> Caption_2{*this, "Caption_2"};
  Property<Colour> GrndColor{*this, "GrndColor"};          ///< behind the shapes, whose colour is BackColor
  Property<std::int16_t> SizeWidth{*this, "SizeWidth"};    ///< units of 120 twips; throws as KeyTriggSizesOf
  Property<std::int16_t> SizeHeigth{*this, "SizeHeigth"};  ///< units of 60 twips, likewise; stored with this spelling
  Property<std::uint8_t> SizeFont{*this, "SizeFont"};      ///< points
  Property<std::uint8_t> Trigger{*this, "Trigger"};        ///< the half that is on; any value but 1 is the second
  Property<std::string> Image_1Red{*this, "Image_1Red"};   ///< pictures are names of the program's resources
  Property<std::string> Image_2Red{*this, "Image_2Red"};
  Property<std::string> Image_1Green{*this, "Image_1Green"};
  Property<std::string> Image_2Green{*this, "Image_2Green"};
  Property<std::int16_t> ImgTop{*this, "ImgTop"};      ///< twips, of all pictures
  Property<std::int16_t> Img1Left{*this, "Img1Left"};  ///< twips, of the first half's pictures
  Property<std::int16_t> Img2Left{*this, "Img2Left"};

  /// A half was pressed, also one that was on already; with 1 or 2. A double click presses twice.
  Event<std::uint8_t&> Click{*this, "Click"};

  bool FirstIsOn() const { return Trigger() == 1; }
  /// The pictures seen: the half that is on shows its green one, the other its red one.
  const std::string& FirstImage() const { return FirstIsOn() ? Image_1Green() : Image_1Red(); }
  const std::string& SecondImage() const { return FirstIsOn() ? Image_2Red() : Image_2Green(); }
  KeyTriggSizes Sizes() const { return KeyTriggSizesOf(SizeWidth(), SizeHeigth()); }

  /// Stored properties by their names; numbers in decimal, colours without a sign.
  using StoredProperties = std::map<std::string, std::string, std::less<>>;
  /// Assigns every property in its fixed order, its default where `stored` lacks it. Throws TypeMismatch for a text
  /// that is no number, OverflowError for a number that the property can't take; those before it are assigned then.
  void ReadProperties(const StoredProperties& stored);
  /// The properties that differ from their defaults.
  StoredProperties WriteProperties() const;

  void UserPress(std::uint8_t half);
  void UserSet(const std::string& value) override;  ///< "1" or "2"
  void UserClick() override;                        ///< presses the half that is off
};

}  // namespace zrt
