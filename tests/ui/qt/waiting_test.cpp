// The window while the server or the program itself takes its time: it lives, shows that, and can be left.

#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "ui/qt/in_box.h"
#include "ui/qt/main_window.h"

namespace zrt {
namespace {

using test::InBox;
using test::MainWindow;

/// What was seen, every few milliseconds, while an action waited for the server.
class Watch {
 public:
  explicit Watch(std::function<void()> look) : look_(std::move(look)) {
    QObject::connect(&clock_, &QTimer::timeout, [this] { look_(); });
    constexpr int kOften = 20;
    clock_.start(kOften);
  }

 private:
  std::function<void()> look_;
  QTimer clock_;
};

TEST_F(MainWindow, StaysAliveButStillWhileTheServerThinks) {
  Start();
  auto* edit = Find<QLineEdit>("Text1");
  edit->setFocus();
  bool seen = false;
  bool disturbed = false;
  std::string question;
  desktop_->TheServerWait()->GiveUp = [&] { disturbed = true; };
  {
    const Watch watch([&] {
      if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        question = box->text().toStdString();
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        box->button(QMessageBox::No)->click();
      } else if (const auto* note = Find<QLabel>("decoServerNote"); note != nullptr && question.empty()) {
        seen = note->isVisible() && note->text().contains("Жду ответа сервера") && QApplication::overrideCursor();
        desktop_->UserAction([&] { disturbed = true; });
        QTest::keyClicks(edit, "7");
        QTest::keyClick(edit, Qt::Key_Escape);
      }
    });
    desktop_->UserAction([&] { app_->TheSession.ReadOne("SELECT SLEEP(1.6)"); });
  }
  EXPECT_TRUE(seen);
  EXPECT_FALSE(disturbed);
  EXPECT_EQ(edit->text(), "");
  EXPECT_TRUE(app_->Main.IsVisible());  // Esc would have hidden it
  EXPECT_TRUE(question.starts_with("Сервер ещё не ответил.")) << question;
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(Find<QLabel>("decoServerNote"), nullptr);

  // Many quick statements add up to a long action too, and a box takes the cursor away.
  desktop_->UserAction([&] {
    for (int i = 0; i < 30; ++i) app_->TheSession.ReadOne("SELECT SLEEP(0.01)");
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
    InBox([](QMessageBox& box) { box.accept(); });
    desktop_->MsgBox("готово");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  });

  // A window that the operator brings forward meanwhile is in front afterwards.
  desktop_->UserAction([&] { app_->Clear.Show(); });
  {
    const Watch watch([&] { edit->window()->activateWindow(); });
    desktop_->UserAction([&] { app_->TheSession.ReadOne("SELECT SLEEP(1.2)"); });
  }
  Settle();
  EXPECT_EQ(desktop_->Front(), &app_->Main);
}

TEST_F(MainWindow, LongWorkLetsTheWindowLiveAndIsStoppedByEscWhereItOffersThat) {
  Start();
  QWidget* window = Find("FrameProd")->window();
  const auto work = [&](bool offer) {
    std::string note;
    int steps = 0;
    const Watch watch([&] {
      if (const auto* shown = Find<QLabel>("decoServerNote")) note = shown->text().toStdString();
      QTest::keyClick(window, Qt::Key_Escape);
    });
    desktop_->UserAction([&] {
      std::optional<StopOffer> stop;
      if (offer) stop.emplace(*desktop_);
      for (; steps < 300; ++steps) {
        // What offers to be stopped may ask the server nothing, as the reading of a spreadsheet.
        offer ? QThread::msleep(5) : void(app_->TheSession.ReadOne("SELECT SLEEP(0.005)"));
        if (offer) stop->Step();
      }
    });
    return std::pair{steps, note};
  };
  const auto [stopped, note] = work(true);
  EXPECT_GT(stopped, 20);
  EXPECT_LT(stopped, 300);
  EXPECT_TRUE(note.starts_with("Идёт работа: ") && note.ends_with("Esc - остановить")) << note;
  EXPECT_EQ(Find<QLabel>("decoServerNote"), nullptr);
  EXPECT_EQ(work(false), (std::pair{300, std::string()}));
  EXPECT_TRUE(app_->Main.IsVisible());
}

TEST_F(MainWindow, AWindowThatIsClosedWhileTheProgramWorksClosesAfterwards) {
  Start();
  QWindow* main = Find("FrameProd")->window()->windowHandle();
  app_->About.Show();
  Settle();
  const auto close_during = [&](Form& form, QWindow* window, const std::function<void()>& work) {
    {
      const Watch watch([&] { window->close(); });
      desktop_->UserAction(work);
    }
    EXPECT_TRUE(form.IsVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !form.IsVisible(); }));
  };
  // One long call: what is asked meanwhile goes away with the server's answer.
  close_during(app_->About, QApplication::activeWindow()->windowHandle(),
               [&] { app_->TheSession.ReadOne("SELECT SLEEP(1.6)"); });
  EXPECT_TRUE(app_->Main.IsVisible());
  close_during(app_->Main, main, [&] {
    for (int i = 0; i < 300; ++i) app_->TheSession.ReadOne("SELECT SLEEP(0.005)");
  });
}

TEST_F(MainWindow, AStartThatWaitsForTheServerIsEndedByEscOrByClosing) {
  Prepare();
  app_->Start();
  Settle();
  int given_up = 0;
  desktop_->TheServerWait()->GiveUp = [&] { ++given_up; };
  QWidget* splash = QApplication::topLevelWidgets().constFirst();
  for (const bool by_key : {true, false}) {
    const int before = given_up;
    const Watch watch([&] {
      if (Find<QLabel>("decoServerNote") == nullptr || given_up > before) return;
      if (by_key) {
        QTest::keyClick(splash, Qt::Key_Escape);
      } else {
        splash->close();
      }
    });
    desktop_->UserAction(
        [&] { desktop_->TheServerWait()->Make([] { std::this_thread::sleep_for(std::chrono::milliseconds(1300)); }); });
    EXPECT_EQ(given_up, before + 1);
  }
  EXPECT_TRUE(app_->Splash.IsVisible());
}

}  // namespace
}  // namespace zrt
