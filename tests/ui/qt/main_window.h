#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <filesystem>
#include <memory>
#include <string>

#include "app/app.h"
#include "support/fixed_clock.h"
#include "support/test_database.h"
#include "ui/qt/qt_desktop.h"

namespace zrt::test {

inline constexpr int kProducts = 3000;

/// The program on a shop of its own with `kProducts` products, up to the visible main window.
class MainWindow : public testing::Test {
 protected:
  void Start(Stage stage = Stage::kPlain) {
    Prepare(stage);
    database_->Sql(
        fmt::format("INSERT INTO TOVAR (ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,"
                    "N6) SELECT 0,seq,1,CONCAT('Товар ',LPAD(seq,5,'0')),0,0,100,'',0,0,0,0,0,0,0,'',0 FROM "
                    "{}",
                    Numbers(kProducts)));
    database_->Sql("UPDATE CONST SET N8=8 WHERE COD=5");
    app_->Start();
    desktop_->UserAction([this] { app_->Splash.Timer1.UserFire(); });
    Settle();
  }

  void Prepare(Stage stage = Stage::kPlain) {
    database_ = std::make_unique<TestDatabase>(stage);
    app_ = std::make_unique<App>(*desktop_, clock_, drives_, AppSettings{database_->Address(), "zrt"});
  }

  static void Settle() { QTest::qWait(1); }

  template <class W = QWidget>
  static W* Find(const std::string& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* widget = window->findChild<W*>(QString::fromStdString(name))) return widget;
    }
    return nullptr;
  }

  void Choose(const std::string& tab) {
    desktop_->UserAction([&] { app_->Main.TabStrip1.UserChoose(tab); });
    Settle();
  }

  SalesTab& Sales() { return app_->Main.Sales; }

  FixedClock clock_;
  DriveMap drives_{std::filesystem::temp_directory_path() / "zrt_no_such_folder"};
  std::unique_ptr<QtDesktop> desktop_ = std::make_unique<QtDesktop>(RegionalFormat{}, drives_);
  std::unique_ptr<TestDatabase> database_;
  std::unique_ptr<App> app_;
};

}  // namespace zrt::test
