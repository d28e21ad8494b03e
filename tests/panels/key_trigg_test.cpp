// The two-position key without a window: what it shows, what it stores, how large it may be.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

#include "core/errors.h"
#include "support/scripted_desktop.h"
#include "ui/cmd_key_trigg.h"

namespace zrt {
namespace {

/// The main window's key alone, as a form's constructor makes it.
class KeyForm final : public Form {
 public:
  explicit KeyForm(Desktop& desktop) : Form(desktop, "Form2") {}
  CmdKeyTrigg CmdMenu{*this, "CmdMenu"};
};

class KeyTrigg : public testing::Test {
 protected:
  test::ScriptedDesktop desktop_;
  KeyForm form_{desktop_};
  CmdKeyTrigg& key_ = form_.CmdMenu;
};

TEST_F(KeyTrigg, WhatIsStoredComesBackAndDefaultsAreNotStored) {
  key_.ReadProperties({});
  EXPECT_EQ(key_.BackColor(), 0x8000000E);
  EXPECT_EQ(key_.ForeColor(), 0x80000012);
  EXPECT_EQ(key_.GrndColor(), 0x8000000F);
  EXPECT_EQ(key_.SizeWidth() + key_.SizeHeigth() * 100 + key_.SizeFont() * 10000, 100915);
  EXPECT_EQ(key_.ImgTop() + key_.Img1Left() * 100 + key_.Img2Left() * 10000, 13806020);
  EXPECT_EQ(key_.Trigger(), 1);
  EXPECT_EQ(key_.FirstImage() + key_.SecondImage() + key_.Label0(), "");
  EXPECT_TRUE(key_.WriteProperties().empty());

  CmdKeyTrigg::StoredProperties stored = {{"Caption_1", "Зал"},
                                          {"Caption_2", "Летняя площадка"},
                                          {"BackColor", "4294967295"},
                                          {"ForeColor", "255"},
                                          {"GrndColor", "0"},
                                          {"SizeWidth", "-3"},
                                          {"SizeHeigth", "12"},
                                          {"SizeFont", "255"},
                                          {"Trigger", "2"},
                                          {"Image_1Red", "a"},
                                          {"Image_2Red", "b"},
                                          {"Image_1Green", "c"},
                                          {"Image_2Green", "d"},
                                          {"ImgTop", "-20"},
                                          {"Img1Left", "32767"},
                                          {"Img2Left", "1"}};
  key_.ReadProperties(stored);
  EXPECT_EQ(key_.WriteProperties(), stored);
  EXPECT_EQ(key_.Label0(), "Летняя площадка");
  // One of them back at its default leaves the store, and a default that is stored does no harm.
  key_.SizeHeigth = std::int16_t{9};
  stored.erase("SizeHeigth");
  EXPECT_EQ(key_.WriteProperties(), stored);
  stored["Img2Left"] = "1380";
  key_.ReadProperties(stored);
  EXPECT_FALSE(key_.WriteProperties().contains("Img2Left"));

  EXPECT_THROW(key_.ReadProperties({{"Trigger", "256"}}), OverflowError);
  EXPECT_THROW(key_.ReadProperties({{"ImgTop", "32768"}}), OverflowError);
  EXPECT_THROW(key_.ReadProperties({{"SizeFont", "-1"}}), TypeMismatch);
  for (const char* no_number : {"red", "12pt", ""}) {
    EXPECT_THROW(key_.ReadProperties({{"ForeColor", no_number}}), TypeMismatch);
    EXPECT_THROW(key_.ReadProperties({{"SizeWidth", no_number}}), TypeMismatch);
  }
}

TEST_F(KeyTrigg, TheCaptionFollowsTheHalfThatIsOn) {
  key_.ReadProperties({{"Image_1Red", "r1"}, {"Image_2Red", "r2"}, {"Image_1Green", "g1"}, {"Image_2Green", "g2"}});
  key_.Caption_2 = "второе";
  EXPECT_EQ(key_.Label0(), "");
  key_.Caption_1 = "первое";
  EXPECT_EQ(key_.Label0(), "первое");
  EXPECT_EQ(key_.FirstImage() + key_.SecondImage(), "g1r2");
  for (const std::uint8_t half : {std::uint8_t{2}, std::uint8_t{0}, std::uint8_t{3}}) {
    key_.Trigger = std::uint8_t{1};
    key_.Trigger = half;
    EXPECT_EQ(key_.Label0(), "второе");
    EXPECT_EQ(key_.FirstImage() + key_.SecondImage(), "r1g2");
  }
  // With neither half on a caption waits for the next Trigger, be it the same one.
  key_.Caption_2 = "новое";
  EXPECT_EQ(key_.Label0(), "второе");
  key_.Trigger = std::uint8_t{3};
  EXPECT_EQ(key_.Label0(), "новое");

  // Every press is reported, also of the half that is on.
  std::string halves;
  key_.Click = [&](std::uint8_t& half) { halves += std::to_string(half) + std::to_string(key_.Trigger()) + " "; };
  Frame sensor(form_, "FrameSensor");
  sensor.Visible = true;
  for (const std::uint8_t half : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{2}}) key_.UserPress(half);
  key_.UserClick();
  EXPECT_EQ(halves, "11 22 22 11 ");
  key_.Enabled = false;
  key_.UserPress(2);
  EXPECT_EQ(key_.Trigger(), 1);
}

TEST_F(KeyTrigg, SizesFitSixteenBitsOrFail) {
  const KeyTriggSizes sizes = KeyTriggSizesOf(15, 9);
  const std::array found = {sizes.label_width,  sizes.label_top,     sizes.shape1_width, sizes.shape1_height,
                            sizes.shape2_width, sizes.shape2_height, sizes.width,        sizes.height};
  EXPECT_EQ(found, (std::array<std::int16_t, 8>{1680, 120, 1770, 510, 1810, 550, 1815, 555}));
  EXPECT_EQ(KeyTriggSizesOf(272, 545).width, 32655);
  EXPECT_EQ(KeyTriggSizesOf(272, 545).height, 32715);
  EXPECT_EQ(KeyTriggSizesOf(-272, 0).label_width, -32760);
  for (const auto& [width, height] : {std::pair{273, 9}, {15, 546}, {-273, 9}, {15, -546}, {32767, 32767}}) {
    EXPECT_THROW(KeyTriggSizesOf(static_cast<std::int16_t>(width), static_cast<std::int16_t>(height)), OverflowError)
        << width << "x" << height;
  }
  // A size that fails isn't taken.
  key_.SizeWidth = std::int16_t{272};
  EXPECT_THROW(key_.SizeWidth = std::int16_t{273}, OverflowError);
  EXPECT_THROW(key_.SizeHeigth = std::int16_t{546}, OverflowError);
  EXPECT_EQ(key_.Sizes().width, 32655);
}

}  // namespace
}  // namespace zrt
