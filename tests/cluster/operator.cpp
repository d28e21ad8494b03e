// zrt_operator HOST SCHEMA DOCUMENTS LINES NODE: works in the real forms of the program without a window. Posts
// invoices of LINES lines, in and out by turns, and reads reports and sends balances to the terminals between them.
// Whatever fails he presses again, as an operator does; the program finds its way back to the server by itself. Before
// that he takes another node of the cluster for a reserve server, which must be refused. Ends with 0 when all documents
// say that they are posted; tells how many presses failed, and by which errors.

#include <fmt/format.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <thread>

#include "app/app.h"
#include "core/errors.h"
#include "platform/system_clock.h"
#include "support/headless_desktop.h"
#include "support/temporary_folder.h"

namespace {

using namespace zrt;

constexpr const char* kLink = "C:\\node.udl";
constexpr int kPresses = 300;
constexpr auto kBetweenPresses = std::chrono::milliseconds(200);
constexpr int kDocumentsPerReport = 5;
/// Thousandths. Each document has a price of its own: two of a kind with one sum in one second would be taken for one.
constexpr int kFirstPrice = 5000;

/// Agrees to everything and counts what fails.
class PersistentDesktop final : public test::HeadlessDesktop {
 public:
  std::map<std::string, int> Failures;
  bool Failed = false;

 protected:
  BoxAnswer DoMsgBox(const Message& message) override {
    if (message.icon == BoxIcon::kCritical) Note(message.text + ": " + message.details);
    return message.buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kOk;
  }
  std::string DoInputBox(const std::string&, const std::string&, const std::string&) override { return {}; }
  void DoModalLoop(Form& form) override { Hide(form); }
  void DoRuntimeError(const std::exception& error) override { Note(error.what()); }

 private:
  void Note(const std::string& text) {
    ++Failures[text];
    Failed = true;
  }
};

class Operator {
 public:
  Operator(const std::string& host, const std::string& schema)
      : app_(desktop_, clock_, drives_, {{host, "zrt", schema}, "zrt"}) {
    app_.Start();
    desktop_.UserAction([this] { app_.Splash.Timer1.UserFire(); });
    if (!app_.IsRunning()) throw Error("the program doesn't start: " + Told());
  }

  /// Throws Error when the other node of the shop's own cluster isn't refused as its reserve.
  void TryAsReserve(const std::string& node, const std::string& schema) {
    std::filesystem::create_directories(drives_.ToNative("C:\\"));
    std::ofstream(drives_.ToNative(kLink)) << "[oledb]\n; Everything after this line is an OLE DB "
                                              "initstring\nProvider=MSDASQL.1;Extended Properties=\"SERVER="
                                           << node << ";DATABASE=" << schema << ";UID=zrt;PWD=41730926\"\n";
    frmExpImp& screen = app_.Exchange;
    Do([this] { app_.Main.mnuExport.UserClick(); });
    Do([&] { screen.TxtUDL1.UserType(kLink); });
    Do([&] { screen.CmdConn1.UserClick(); });
    if (screen.LblConn1.Visible() || !Refused())
      throw Error("a node of the cluster was taken for a reserve server:\n" + Told());
    Do([&] { screen.Close(); });
    desktop_.Failures.clear();
  }

  /// Throws Error when he gives up.
  void Post(DocType type, int lines, int price) {
    DocumentForm& form = app_.StockDocuments.Form(type);
    Menu& menu = type == DocType::kIncoming ? app_.Main.mnuDocPN : app_.Main.mnuDocRN;
    Until([&] { return form.IsLoaded() && form.DocOpen; }, [&] { menu.UserClick(); });
    const Recordset& products = app_.TheSession.Pool().RsProducts;
    for (int line = 0; line < lines; ++line) {
      const int row = (next_ * 13) % products.RecordCount() + 1;
      const std::int32_t cod = static_cast<std::int32_t>(products.At(row, 0).Int());
      ++next_;
      Until([&] { return form.DataGrid7.Rows() > line; },
            [&] { app_.Stock.BroadcastToForm(cod, 1000, price, NumberOf(type)); });
    }
    Until([&] { return form.DocRun; }, [&] { form.RUNButton.UserClick(); });
    Until([&] { return !form.IsLoaded(); }, [&] { form.Close(); });
  }

  void ReadReports() {
    Form9& reports = app_.Reports.TextReports;
    Do([&] { reports.Show(); });
    for (Button* report : {&reports.CmdDat, &reports.CmdDat1, &reports.CmdDat2}) UntilWhole(*report);
    Do([&] { reports.Close(); });
    // Balances and what was sold today, for the terminals: rows that they write themselves meanwhile.
    Do([this] { app_.Main.TabStrip1.UserChoose("sprav"); });
    UntilWhole(app_.Main.Catalogue.CmdRefrTov);
  }

  std::string Told() const {
    std::string all;
    for (const auto& [text, count] : desktop_.Failures) all += fmt::format("  {} times {}\n", count, text);
    return all;
  }

 private:
  bool Refused() const {
    return desktop_.Failures.size() == 1 && desktop_.Failures.begin()->first.find("основного") != std::string::npos;
  }
  void Do(const std::function<void()>& action) {
    desktop_.Failed = false;
    desktop_.UserAction(action);
    if (desktop_.Failed) std::this_thread::sleep_for(kBetweenPresses);
  }
  void Until(const std::function<bool()>& done, const std::function<void()>& press) {
    for (int i = 0; i < kPresses; ++i) {
      if (done()) return;
      Do(press);
    }
    if (!done()) throw Error("he gives up:\n" + Told());
  }

  void UntilWhole(Button& button) {
    desktop_.Failed = true;
    Until([this] { return !desktop_.Failed; }, [&] { button.UserClick(); });
  }

  PersistentDesktop desktop_;
  SystemClock clock_;
  test::TemporaryFolder folder_;
  DriveMap drives_{folder_.Path()};
  App app_;
  int next_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    std::cerr << "usage: zrt_operator HOST SCHEMA DOCUMENTS LINES NODE\n";
    return 2;
  }
  try {
    Operator hands(argv[1], argv[2]);
    hands.TryAsReserve(argv[5], argv[2]);
    const int documents = std::stoi(argv[3]);
    for (int document = 1; document <= documents; ++document) {
      hands.Post(document % 2 == 1 ? DocType::kIncoming : DocType::kOutgoing, std::stoi(argv[4]),
                 kFirstPrice + document);
      std::cout << document << std::endl;
      if (document % kDocumentsPerReport == 0) hands.ReadReports();
    }
    std::cout << "failed:\n" << hands.Told();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
