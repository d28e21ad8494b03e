// What the player of the shop's journeys must not let pass: a play is worth as much as what makes it fail.

#include "play/player.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/temporary_folder.h"
#include "support/test_database.h"

namespace zrt::play {
namespace {

class Plays : public testing::Test {
 protected:
  /// What a play says against itself; "" when all of its lines hold.
  std::string Play(const std::string& text, const PlayOutput& output = {}) {
    const test::TemporaryFolder folder;
    try {
      Player player(shop_.Address(), folder.Path(), output);
      player.Run(ReadScript(text));
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
  struct Case {
    const char* text;
    const char* failure;  ///< a part of it; "" when the play holds
  };
  const Case kCases[] = {
      {"start now", "no more than 1 words"},
      {"start\nset TextDate 1 2", "no more than 3 words"},
      {"clock 2026-11-12", "wants more words"},
      {"start\n\tone line too many", "takes no lines below it"},
      {"fault 3x", "a number is wanted"},
      {"jump", "no action is called"},
      {"sql \"a\\tb\"", "stand in a text"},
      {"start\ntab prod\nerror\nclick LblSum", "can't be clicked"},
      {"start\nerror\ntab nowhere", "no tab"},
      {"start\nerror\ntab prod", "stayed away"},
      {"dialog \"a\" -> OK OK", "behind the answer"},
      {"dialog \"a\" loud -> OK", "no such icon"},
      {"file-write \"C:\\\\a.txt\"\n\tline\nfile \"C:\\\\a.txt\"\n\tline\nno-file \"C:\\\\b*.txt\"", ""},
      {"file-write \"C:\\\\a.txt\"\n\tline\nno-file \"C:\\\\a*.txt\"", "there is"},
      {"rows \"SELECT 1\"\n\t2", "expected"},
      // The question's title, and its prescribed LF CR told from a plain break.
      {"start\ntab jurn\ndialog \"Введите номер документа\" \"Удаление ОДНОГО документа\" -> \"\"\nmenu mnuDelOneDoc",
       ""},
      {"start\ntab jurn\ndialog \"Введите номер документа\" \"Удаление\" -> \"\"\nmenu mnuDelOneDoc", "the title"},
      {"start\ntab jurn\ndialog \"Введите номер документа\" -> OK\nmenu mnuDelOneDoc", "an input box came"},
      {"start\ntab sprav\nclick CmdNew\nset TextPrise 0\ndialog \"Розничная цена не может быть равной "
       "нулю!\\n\\rВведите "
       "розничную цену!\" critical -> OK\nclick OKButton\nkey TextName Esc",
       ""},
      {"start\ntab sprav\nclick CmdNew\nset TextPrise 0\ndialog \"Розничная цена не может быть равной "
       "нулю!\\r\\nВведите "
       "розничную цену!\" critical -> OK\nclick OKButton",
       "the box"},
  };
  for (const Case& one : kCases) {
    const std::string said = Play(one.text);
    if (*one.failure == 0) {
      EXPECT_EQ(said, "") << one.text;
    } else {
      EXPECT_NE(said.find(one.failure), std::string::npos) << one.text << "\n  said: " << said;
    }
  }
}

TEST_F(Plays, APlayThatGoesOnSaysEachDifference) {
  std::ostringstream differences;
  EXPECT_EQ(
      Play("rows \"SELECT 1\"\n\t2\nrows \"SELECT 1\"\n\t1\nrows \"SELECT 1\"\n\t3\n", {.differences = &differences}),
      "");
  EXPECT_NE(differences.str().find("line 1:"), std::string::npos);
  EXPECT_EQ(differences.str().find("line 3:"), std::string::npos);
  EXPECT_NE(differences.str().find("line 5:"), std::string::npos);
}

}  // namespace
}  // namespace zrt::play
