#include "reference/catalogue_tab.h"

#include <fmt/format.h>

#include <array>

#include "core/numbers.h"
#include "reference/product_list.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kProducts =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(PRISE/100,2) As 'Price',ROUND((OST-KOL)/1000,3) As 'Value',NDS As 'nds',"
    "N1 As 'akz',N2 As 'loc',REZ As 'kats',N4 As 'ves',N5/1000 As 'drob',N7 As 'part',BARCODE As 'Barcode',"
    "UKT As 'UKTZED' FROM TOVAR";
constexpr std::string_view kOnlyPriced = " WHERE PRISE>0";
constexpr std::string_view kByName = " GROUP BY COD ORDER BY NAME";
constexpr std::string_view kByCod = " GROUP BY COD ORDER BY COD";
constexpr std::string_view kByPrice = " GROUP BY COD ORDER BY PRISE";
constexpr std::string_view kByBarcode = " GROUP BY COD ORDER BY BARCODE";

constexpr int kBarcodeWidth = 1300;

/// A progress bar that doesn't stay behind when the work fails.
struct HiddenAgain {
  ProgressBar& bar;
  ~HiddenAgain() { bar.Visible = false; }
};

}  // namespace

CatalogueTab::CatalogueTab(Form& form, Session& session, ModuleReg& stock, frmPLU& card)
    : FormSection(form), session_(session), stock_(stock), card_(card) {
  CmdSortName.Click = [this] { Sort(kByName); };
  CmdSortCod.Click = [this] { Sort(kByCod); };
  CmdSortPrice.Click = [this] { Sort(kByPrice); };
  CmdSortBar.Click = [this] { Sort(kByBarcode); };
  CmdReqr.Click = [this] { RequeryProducts(); };
  CheckUkt.Click = [this] { FormatProductGrid(); };
  CmdRefrTov.Click = [this] { CmdRefrTov_Click(); };
  CmdImportTov.Click = [this] { ImportProducts(); };
  CmdNew.Click = [this] { card_.NewProductCard(ProductCardCaller::kCatalogue); };
  CmdCopy.Click = [this] { CmdCopy_Click(); };
  CmdShow.Click = [this] { CmdShow_Click(); };
  CmdDelPLU.Click = [this] { CmdDelPLU_Click(); };
  CmdClrAllPLU.Click = [this] { CmdClrAllPLU_Click(); };
  for (int index = 0; index < 2; ++index) {
    const auto at = static_cast<std::size_t>(index);
    TextFind[at].Change = [this, index] { TextFind_Change(index); };
    TextFind[at].KeyDown = [this, index](Key& key) { TextFind_KeyDown(index, key); };
    DataGrid1[at].KeyDown = [this, index](Key& key) { DataGrid1_KeyDown(index, key); };
    DataGrid1[at].DblClick = [this, index] {
      if (HasRows()) Choose(index);
    };
  }
}

void CatalogueTab::FirstFill() {
  Sort(kByName);
}

void CatalogueTab::Sort(std::string_view tail) {
  session_.BindSet(Products(), fmt::format("{}{}{}", kProducts, session_.FullEditMode ? "" : kOnlyPriced, tail));
  for (DataGrid& grid : DataGrid1) grid.Bind(Products());
  FormatProductGrid();
  Session::ShowLastRow(Products());
}

void CatalogueTab::RequeryProducts() {
  Products().Requery();
  Session::ShowLastRow(Products());
  FormatProductGrid();
}

void CatalogueTab::FormatProductGrid() {
  const bool ukt = CheckUkt.Value();
  for (DataGrid& grid : DataGrid1) {
    const auto layout = std::to_array<ColumnLayout>({{"Cod", 750, Align::kRight},
                                                     {"Name", 3750, Align::kLeft},
                                                     {"Price", 1050, Align::kRight, "0.00"},
                                                     {"Value", 1050, Align::kRight, "0.000"},
                                                     {"nds", 525, Align::kRight},
                                                     {"akz", 525, Align::kRight},
                                                     {"loc", 525, Align::kRight},
                                                     {"kats", 525, Align::kRight},
                                                     {"ves", 600, Align::kRight},
                                                     {"drob", 600, Align::kRight},
                                                     {"part", 600, Align::kRight},
                                                     {"Barcode", ukt ? 0 : kBarcodeWidth, Align::kLeft},
                                                     {"UKTZED", ukt ? kBarcodeWidth : 0, Align::kLeft}});
    grid.Layout(layout);
  }
}

void CatalogueTab::FindProductByName(std::int16_t index) {
  const auto at = static_cast<std::size_t>(index);
  zrt::FindProductByName(TextFind.at(at), DataGrid1.at(at), "Name");
}

void CatalogueTab::ShowProduct(const std::string& name) {
  ShowByName(TextFind[0], DataGrid1[0], "Name", name);
}

void CatalogueTab::TextFind_Change(int index) {
  FindProductByName(static_cast<std::int16_t>(index));
  TextFind[static_cast<std::size_t>(index)].SetFocus();
}

void CatalogueTab::TextFind_KeyDown(int index, Key& key) {
  const auto at = static_cast<std::size_t>(index);
  if (key.code == Key::kUp || key.code == Key::kDown) StepFromSearch(TextFind[at], DataGrid1[at], key.code);
  if (key.code == Key::kEnter) Choose(index);
}

void CatalogueTab::DataGrid1_KeyDown(int index, Key& key) {
  if (key.code == Key::kEnter) {
    Choose(index);
  } else if (key.code == Key::kCharacter) {
    key.swallow = true;
    TypeInto(TextFind[static_cast<std::size_t>(index)], key.text);
    FindProductByName(static_cast<std::int16_t>(index));
  }
}

void CatalogueTab::Choose(int index) {
  if (Products().Bof() || Products().Eof()) return;
  if (index == 0) {
    if (session_.FullEditMode) card_.OpenProductCard(CurrentCod(), ProductCardCaller::kCatalogue);
  } else if (ChooseForPanel) {
    ChooseForPanel();
  }
}

std::int32_t CatalogueTab::CurrentCod() {
  return ToInt32(Products().Field("Cod").Number());
}

void CatalogueTab::CmdRefrTov_Click() {
  const HiddenAgain hidden_again{ProgressBar1};
  stock_.RecalcOstAfterShift(Products(), [this](int done, int of) {
    ProgressBar1.Max = of;
    ProgressBar1.Value = done;
    if (ProgressBar1.Visible()) return;
    ProgressBar1.Visible = true;
    ProgressBar1.Repaint();
  });
  Session::ShowLastRow(Products());
  FormatProductGrid();
}

void CatalogueTab::CmdCopy_Click() {
  if (HasRows()) card_.CopyProductCard(CurrentCod(), ProductCardCaller::kCatalogue);
}

void CatalogueTab::CmdShow_Click() {
  if (HasRows()) card_.OpenProductCard(CurrentCod(), ProductCardCaller::kCatalogue);
}

void CatalogueTab::CmdDelPLU_Click() {
  if (!HasRows()) return;
  const std::int32_t cod = CurrentCod();
  if (ConfirmDeletion(TheDesktop(), cod, Products().Field("Name").TextOrEmpty())) DeleteProduct(cod);
}

void CatalogueTab::DeleteProduct(std::int32_t cod) {
  session_.Write(fmt::format("DELETE FROM TOVAR WHERE COD={}", cod));
  RequeryProducts();
}

void CatalogueTab::CmdClrAllPLU_Click() {
  Desktop& desktop = TheDesktop();
  const std::string entered = desktop.AskPassword("Для полной очистки справочника меню введите пароль администратора:");
  if (entered != kAdministratorPassword) return;
  if (desktop.MsgBox("Подтвердите удаление ВСЕХ товаров!", BoxIcon::kQuestion, BoxButtons::kOkCancel) !=
      BoxAnswer::kOk) {
    return;
  }
  session_.Write("DELETE FROM TOVAR");
  RequeryProducts();
}

void CatalogueTab::ForbidEditing() {
  for (Button* button : {&CmdNew, &CmdCopy, &CmdShow, &CmdDelPLU}) button->Enabled = false;
  LblNote.Visible = true;
  CmdClrAllPLU.Visible = false;
}

}  // namespace zrt
