// What the player of the shop's journeys must not let pass: a play is worth as much as what makes it fail.

#include "play/player.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "core/errors.h"
#include "support/test_database.h"

namespace zrt::play {
namespace {

class Plays : public testing::Test {
 protected:
  /// What a play says against itself; "" when all of its lines hold.
  std::string Said(const std::string& text) {
    try {
      Play(text, shop_.Address());
      return "";
    } catch (const Failure& failure) {
      return failure.text;
    } catch (const Error& error) {
      return error.what();
    }
  }

  test::TestDatabase shop_{test::Stage::kRegister};
};

TEST_F(Plays, WhatAPlayDoesNotCheckItDoesNotPass) {
  const std::string shop = "start\ntab jurn\n";
  const std::string card =
      "start\ntab sprav\nclick CmdNew\nset TextPrise 0\ndialog \"Розничная цена не может быть равной ";
  const std::pair<std::string, const char*> kPlays[] = {
      {"start now", "no more than 1 words"},
      {"start\nmenu mnuAbout 2", "no more than 2 words"},
      {"start\nset Text1 1 Text2", "wants more words"},
      {"clock 2026-11-12", "wants more words"},
      {"start\n\tone line too many", "takes no lines below it"},
      {"fault 3x", "a number is wanted"},
      {"jump", "no action is called"},
      {"sql \"a\\tb\"", "stand in a text"},
      {"start\ntab prod\nerror\nclick LblSum", "can't be clicked"},
      {"start\nerror\ntab nowhere", "no tab"},
      {"start\nerror tab prod", "stayed away"},
      {"start\nexpect form.Focus Text1", "form.Focus"},
      {"start\nexpect form.Caption zrt Text1.Text", "a value is wanted"},
      {"start\nexpect form.Caption zrt Text1.Text x", "Text1.Text"},
      {"dialog \"a\" -> OK OK", "behind the answer"},
      {"dialog \"a\" loud -> OK", "no such icon"},
      {"file-write \"C:\\\\a.txt\"\n\tline\nno-file \"C:\\\\a*.txt\"", "there is"},
      {"rows \"SELECT 1\"\n\t2", "expected"},
      {"rows \"SELECT 1\" 1 1", "expected"},
      {"start\nclick CmdDG_1 CmdNowhere", "no control CmdNowhere"},
      // The question's title, and its prescribed LF CR told from a plain break.
      {shop + "dialog \"Введите номер документа\" \"Удаление\" -> \"\"\nmenu mnuDelOneDoc", "the title"},
      {shop + "dialog \"Введите номер документа\" -> OK\nmenu mnuDelOneDoc", "an input box came"},
      {card + "нулю!\\r\\nВведите розничную цену!\" critical -> OK\nclick OKButton", "the box"}};
  for (const auto& [text, failure] : kPlays) {
    const std::string said = Said(text);
    EXPECT_NE(said.find(failure), std::string::npos) << text << "\n  said: " << said;
  }
  for (const std::string& good :
       {std::string("file-write \"C:\\\\a.txt\"\n\tline\nfile \"C:\\\\a.txt\"\n\tline\nno-file \"C:\\\\b*.txt\""),
        shop + "dialog \"Введите номер документа\" \"Удаление ОДНОГО документа\" -> \"\"\nmenu mnuDelOneDoc",
        card + "нулю!\\n\\rВведите розничную цену!\" critical -> OK\nclick OKButton\nkey TextName Esc"}) {
    EXPECT_EQ(Said(good), "") << good;
  }
}

TEST_F(Plays, APlayThatGoesOnSaysEachDifference) {
  std::ostringstream differences;
  EXPECT_EQ(Play("rows \"SELECT 1\"\n\t2\nrows \"SELECT 1\"\n\t1\nrows \"SELECT 1\"\n\t3\n", shop_.Address(),
                 {.differences = &differences}),
            2);
  EXPECT_NE(differences.str().find("line 1:"), std::string::npos);
  EXPECT_NE(differences.str().find("line 5:"), std::string::npos);
}

}  // namespace
}  // namespace zrt::play
