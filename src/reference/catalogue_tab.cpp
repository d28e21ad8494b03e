#include "reference/catalogue_tab.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kProducts =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(PRISE/100,2) As 'Price',ROUND((OST-KOL)/1000,3) As 'Value',NDS As 'nds',"
    "N1 As 'akz',N2 As 'loc',REZ As 'kats',N4 As 'ves',N5/1000 As 'drob',N7 As 'part',BARCODE As 'Barcode',"
    "UKT As 'UKTZED' FROM TOVAR";
constexpr std::string_view kOnlyPriced = " WHERE PRISE>0";
constexpr std::string_view kByName = " GROUP BY COD ORDER BY NAME";

constexpr int kBarcodeWidth = 1300;

}  // namespace

CatalogueTab::CatalogueTab(Form& form, Session& session)
    : FrameSprav(form, "FrameSprav"),
      DataGrid1(ControlArray<DataGrid, 2>(form, "DataGrid1", 0)),
      TextFind(ControlArray<TextBox, 2>(form, "TextFind", 0)),
      CmdSortName(form, "CmdSortName"),
      CmdSortCod(form, "CmdSortCod"),
      CmdSortPrice(form, "CmdSortPrice"),
      CmdSortBar(form, "CmdSortBar"),
      CmdReqr(form, "CmdReqr"),
      CheckUkt(form, "CheckUkt"),
      CmdRefrTov(form, "CmdRefrTov"),
      CmdImportTov(form, "CmdImportTov"),
      CmdNew(form, "CmdNew"),
      CmdCopy(form, "CmdCopy"),
      CmdShow(form, "CmdShow"),
      CmdDelPLU(form, "CmdDelPLU"),
      CmdClrAllPLU(form, "CmdClrAllPLU"),
      ProgressBar1(form, "ProgressBar1"),
      LblNote(form, "LblNote"),
      session_(session) {
  CheckUkt.Click = [this] { FormatProductGrid(); };
}

void CatalogueTab::FirstFill() {
  Recordset& products = session_.Pool().RsProducts;
  session_.BindSet(products, fmt::format("{}{}{}", kProducts, session_.FullEditMode ? "" : kOnlyPriced, kByName));
  for (DataGrid& grid : DataGrid1) grid.Bind(products);
  FormatProductGrid();
  Session::ShowLastRow(products);
}

void CatalogueTab::FormatProductGrid() {
  const bool ukt = CheckUkt.Value();
  for (DataGrid& grid : DataGrid1) {
    grid.Layout({{"Cod", 750, Align::kRight},
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
  }
}

void CatalogueTab::ForbidEditing() {
  for (Button* button : {&CmdNew, &CmdCopy, &CmdShow, &CmdDelPLU}) button->Enabled = false;
  LblNote.Visible = true;
  CmdClrAllPLU.Visible = false;
}

}  // namespace zrt
