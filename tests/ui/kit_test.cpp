#include <gtest/gtest.h>

#include <string>

#include "core/errors.h"
#include "support/scripted_desktop.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {
namespace {

using test::ScriptedDesktop;

TEST(FormDefinition, RefusesWhatItCannotTrust) {
  EXPECT_THROW(FormDefinition::Read("X", "<ui><widget"), Error);
  EXPECT_THROW(FormDefinition::Read("X", "<html/>"), Error);
  EXPECT_THROW(FormDefinition::Read("X",
                                    R"(<ui><widget class="QWidget" name="X"><widget class="QLabel" name="L"/>
                                       <widget class="QLabel" name="L"/></widget></ui>)"),
               Error);
  EXPECT_THROW(FormDefinition::Of("frmNobody"), Error);
}

/// The about box's definition, with the forms' life laid open.
class Probe final : public Form {
 public:
  explicit Probe(Desktop& desktop, const std::string& name = "frmSplash") : Form(desktop, name) {
    Load = [this] { log += "L"; };
    Activate = [this] { log += "A"; };
    Unload = [this] { log += "U"; };
    Complete();
  }
  Label lblVersion{*this, "lblVersion"};
  Label lblProductName{*this, "lblProductName"};
  std::string log;
};

class Forms : public testing::Test {
 protected:
  ScriptedDesktop desktop_;
  Probe back_{desktop_};
  Probe front_{desktop_};
};

/// The about box's definition with one control alone.
template <class C>
class Lone final : public Form {
 public:
  Lone(Desktop& desktop, const char* name, bool complete) : Form(desktop, "frmSplash"), control(*this, name) {
    if (complete) Complete();
  }
  C control;
};

TEST(Form, EachSideMustHaveWhatTheOtherHas) {
  ScriptedDesktop desktop;
  EXPECT_THROW(Lone<Label>(desktop, "lblVersion", true), Error);
  EXPECT_THROW(Lone<Label>(desktop, "lblNobody", false), Error);
  EXPECT_THROW(Lone<Button>(desktop, "lblVersion", false), Error);
  EXPECT_EQ(desktop.FindForm("frmSplash"), nullptr);  // none of them is left behind
}

TEST_F(Forms, LoadsOnceActivatesInFrontAndStartsAfreshAfterUnloading) {
  const std::string initial = back_.lblVersion.Caption();
  back_.Show();
  EXPECT_EQ(back_.log, "LA");
  back_.lblVersion.Caption = "изменено";
  back_.Hide();
  back_.Show();
  EXPECT_EQ(back_.log, "LAA");
  EXPECT_EQ(back_.lblVersion.Caption(), "изменено");

  front_.Show();
  EXPECT_EQ(desktop_.Front(), &front_);
  front_.Close();  // the window behind comes to the front again
  EXPECT_EQ(front_.log, "LAU");
  EXPECT_EQ(back_.log, "LAAA");
  EXPECT_EQ(desktop_.Front(), &back_);

  back_.Close();
  EXPECT_EQ(back_.lblVersion.Caption(), initial);
  EXPECT_FALSE(back_.IsLoaded());
  back_.Show();
  EXPECT_EQ(back_.log, "LAAAULA");
}

TEST_F(Forms, AFailingLoadLeavesItUnloadedAndAFailingUnloadStillTakesItAway) {
  front_.Load = [] { throw Error("no table"); };
  EXPECT_THROW(front_.Show(), Error);
  EXPECT_FALSE(front_.IsLoaded());
  EXPECT_FALSE(front_.IsVisible());
  EXPECT_TRUE(desktop_.LoadedForms().empty());

  front_.Load = [] {};
  front_.Show();
  front_.Unload = [] { throw Error("no server"); };
  EXPECT_THROW(front_.Close(), Error);
  EXPECT_FALSE(front_.IsLoaded());
  EXPECT_TRUE(desktop_.LoadedForms().empty());
  EXPECT_EQ(desktop_.Front(), nullptr);
}

TEST_F(Forms, StoppingTakesEveryFormAlongWhateverFails) {
  Probe second(desktop_);
  back_.Show();
  front_.Show();
  second.Show();
  second.Unload = [] { throw Error("no server"); };
  EXPECT_THROW(desktop_.UnloadAllBut(back_), Error);
  EXPECT_FALSE(front_.IsLoaded());
  EXPECT_FALSE(second.IsLoaded());
  EXPECT_TRUE(back_.IsLoaded());
}

TEST_F(Forms, AWindowThatComesForwardByItselfIsNoNewAction) {
  back_.Show();
  front_.Show();
  int actions = 0;
  desktop_.OnUserAction = [&] { ++actions; };
  back_.Activate = [] { throw Error("no server"); };
  desktop_.ExpectRuntimeError();
  std::string after;
  desktop_.UserAction([&] {
    front_.Hide();
    after = "went on";  // the failure of the window behind is its own
  });
  EXPECT_EQ(actions, 1);
  EXPECT_EQ(after, "went on");
}

TEST(Desktop, AFailureEndsTheHandlerAndNotTheProgram) {
  ScriptedDesktop desktop;
  int actions = 0;
  int errors = 0;
  desktop.OnUserAction = [&] { ++actions; };
  desktop.OnRuntimeError = [&] { ++errors; };
  desktop.ExpectRuntimeError();
  testing::internal::CaptureStderr();
  desktop.UserAction([] { throw DatabaseError("HY000", 2006, "gone\naway").During("SELECT 1"); });
  const std::string line = testing::internal::GetCapturedStderr();
  ASSERT_GT(line.size(), 20U);
  EXPECT_EQ(line.substr(19), " -: HY000/2006: gone away | SELECT 1\n");
  desktop.UserAction([] {});
  EXPECT_EQ(actions, 2);
  EXPECT_EQ(errors, 1);
}

TEST(DataGrid, LetsGoOfASetThatEnds) {
  struct GridForm final : Form {
    explicit GridForm(Desktop& desktop) : Form(desktop, "Form2") {}
    DataGrid Grid{*this, "DataGrid5"};
  };
  ScriptedDesktop desktop;
  GridForm form(desktop);
  {
    Recordset set;
    form.Grid.Bind(set);
    form.Grid.Unbind();
    EXPECT_EQ(form.Grid.Source(), nullptr);
    form.Grid.Bind(set);
    EXPECT_EQ(form.Grid.Source(), &set);
  }
  EXPECT_EQ(form.Grid.Source(), nullptr);
}

TEST_F(Forms, TellsTheViewOnlyOfChanges) {
  {
    const test::Told told(front_.lblVersion);
    front_.lblVersion.Caption = "Version 9";
    front_.lblVersion.Caption = "Version 9";
    front_.lblVersion.Visible = false;
    EXPECT_EQ(told.Text, "Caption=Version 9 Visible=False ");
  }
  front_.lblVersion.Caption = "Version 10";  // without a view a control is still a control
}

}  // namespace
}  // namespace zrt
