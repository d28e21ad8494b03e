#include "app/app.h"

#include <cstdint>

namespace zrt {

App::App(Desktop& desktop, const Clock& clock, const DriveMap& drives, AppSettings settings)
    : TheSession(std::move(settings.database), clock, desktop.Format()),
      Stock(TheSession, desktop),
      About(desktop, ZRT_VERSION),
      ProductCard(desktop, TheSession),
      Picker(desktop, TheSession, Stock, ProductCard),
      PickDialog(desktop, TheSession, Stock),
      StockDocuments(desktop, TheSession, Stock, Picker, PickDialog),
      DiscountCard(desktop, TheSession),
      CardKinds(desktop, TheSession),
      Clear(desktop, TheSession),
      ClearLite(desktop, TheSession),
      DelChek(desktop, TheSession),
      PanelCopy(desktop, TheSession, drives),
      Reports(desktop, TheSession, Stock, Picker, drives, settings.printer, settings.spreadsheet),
      Exchange(desktop, TheSession, drives, settings.executable),
      Import(desktop, TheSession, Stock, drives),
      LineExport(desktop, TheSession, drives),
      Main(desktop, TheSession, Stock, drives, settings.executable,
           {.About = About,
            .ProductCard = ProductCard,
            .StockDocuments = StockDocuments,
            .DiscountCard = DiscountCard,
            .CardKinds = CardKinds,
            .Clear = Clear,
            .ClearLite = ClearLite,
            .DelChek = DelChek,
            .PanelCopy = PanelCopy,
            .Reports = Reports,
            .Exchange = Exchange,
            .Import = Import},
           [this] { ShutdownApplication(); }),
      Splash(desktop, TheSession, drives, settings.executable, Main),
      desktop_(desktop) {
  ProductCard.ProductsChanged = [this] { Main.Catalogue.RequeryProducts(); };
  ProductCard.ShowInCatalogue = [this](const std::string& name) { Main.Catalogue.ShowProduct(name); };
  ProductCard.ShowInPicker = [this](const std::string& name) { Picker.ShowProduct(name); };
  Picker.DeleteProduct = [this](std::int32_t cod) { Main.Catalogue.DeleteProduct(cod); };
  DiscountCard.CardSaved = [this](std::int16_t rez) { Main.Cards.ShowCard(rez); };
  Exchange.CloseProgram = [this] { Main.Close(); };
  Import.ProductsChanged = [this] { Main.Catalogue.RequeryProducts(); };
  Import.LinesChanged = [this](int mode) { ShowLoadedLines(mode); };
  StockDocuments.Inventory.LoadCounts = [this] { Import.Open(frmImpTov::kInventory); };
  StockDocuments.TransferIn.LoadFromFile = [this] { Import.Open(frmImpTov::kTransferIn); };
  StockDocuments.TransferOut.LoadFromFile = [this] { Import.Open(frmImpTov::kTransferOut); };
  StockDocuments.Inventory.ExportLines = [this](const Recordset& lines) { LineExport.Open(lines); };
  TheSession.MainConnection.SetServerWait(desktop_.TheServerWait());
  TheSession.ConnReserve.SetServerWait(desktop_.TheServerWait());
  desktop_.OnUserAction = [this] {
    TheSession.MainConnection.AllowReopen();
    TheSession.ConnReserve.AllowReopen();
  };
  desktop_.OnRuntimeError = [this] {
    if (!started_) desktop_.Quit(1);
  };
  desktop_.OnShown = [this](const Form& form) {
    if (&form == &Main) started_ = true;
  };
}

App::~App() {
  desktop_.DropWindows();
  desktop_.OnUserAction = nullptr;
  desktop_.OnRuntimeError = nullptr;
  desktop_.OnShown = nullptr;
}

void App::Start() {
  desktop_.UserAction([this] { Splash.Show(); });
}

void App::ShowLoadedLines(int import_mode) {
  switch (import_mode) {
    case frmImpTov::kTransferIn:
      return StockDocuments.TransferIn.RefreshRS7prp();
    case frmImpTov::kTransferOut:
      return StockDocuments.TransferOut.RefreshRS7prm();
    default:
      return StockDocuments.Inventory.RefreshRS7in();
  }
}

void App::ShutdownApplication() {
  std::exception_ptr failure;
  try {
    desktop_.UnloadAllBut(Main);
  } catch (...) {
    // Whatever a form left behind, the program ends and lets go of the server.
    failure = std::current_exception();
  }
  TheSession.Disconnect();
  desktop_.Quit(0);
  if (failure) std::rethrow_exception(failure);
}

}  // namespace zrt
