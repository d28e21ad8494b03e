#include "documents/line_document.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "core/numbers.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kPlainGrid =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(KOL/1000,3) As 'Value',ROUND(PRISE/1000,3) As 'Retail',"
    "ROUND(COST/1000,3) As 'Summ',ID FROM DOCUMENT WHERE TYP=";
constexpr std::string_view kIncomingGrid =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(KOL/1000,3) As 'Value',ROUND(PRISE/1000,3) As 'Purchase',"
    "ROUND(COST/1000,3) As 'Summ',ROUND(REZ/1000,3) As 'Retail',ROUND(REZ/PRISE-1,3) As 'Markup',ID FROM DOCUMENT "
    "WHERE TYP=";

}  // namespace

LineDocument::LineDocument(Desktop& desktop, DocType type, const DocumentServices& services, std::string_view grid)
    : DocumentForm(desktop, type, services), grid_(grid) {}

void LineDocument::OpenLines(std::int32_t doc) {
  doc == -1 ? GetNewTableDoc() : GetTableDoc(doc);
}

void LineDocument::GetNewTableDoc() {
  ReadLines(fmt::format("{}{}", grid_, store_.Key()));
}

void LineDocument::GetTableDoc(std::int32_t doc) {
  store_.TakeFromRegister(doc);
  GetNewTableDoc();
}

void LineDocument::FormatGrid() {
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"Cod", 900, Align::kRight},
                                                               {"Name", 4200, Align::kLeft},
                                                               {"Value", 1200, Align::kRight, "0.000"},
                                                               {"Purchase", 1200, Align::kRight, "0.00"},
                                                               {"Price", 1200, Align::kRight, "0.00"},
                                                               {"Summ", 1350, Align::kRight, "0.00"},
                                                               {"Retail", 1200, Align::kRight, "0.00"},
                                                               {"Markup", 1050, Align::kRight, "0.0%"},
                                                               {"Card", 900, Align::kRight},
                                                               {"ID", 750, Align::kRight}});
  DataGrid7.Layout(kLayout);
}

void LineDocument::SumRefresh() {
  DocSum = store_.Sum();
  LblSum->Caption = Amount(DocSum);
}

void LineDocument::ChangeLine() {
  const std::optional<std::int64_t> id = CurrentId();
  if (!id) return;
  constexpr int kName = 1, kValue = 2, kPrice = 3;
  KnownProduct product;
  product.cod = ToInt32(lines_.Field("Cod").Number());
  product.name = lines_.Field(kName).TextOrEmpty();
  product.kol = ToThousandths(lines_.Field(kValue));
  product.price = ToThousandths(lines_.Field(kPrice));
  // The line goes before the dialog comes: leaving the dialog without OK loses it.
  store_.Delete(*id);
  RefreshLines();
  AskFor(product);
}

frmDocPrN::frmDocPrN(Desktop& desktop, const DocumentServices& services)
    : LineDocument(desktop, DocType::kIncoming, services, kIncomingGrid) {
  Complete();
}

frmDocRhN::frmDocRhN(Desktop& desktop, const DocumentServices& services)
    : LineDocument(desktop, DocType::kOutgoing, services, kPlainGrid) {
  Complete();
}

// The grid of the write-off and of the transfers says Retail although they are valued at purchase prices.
frmDocSP::frmDocSP(Desktop& desktop, const DocumentServices& services)
    : LineDocument(desktop, DocType::kWriteOff, services, kPlainGrid) {
  Complete();
}

TransferDocument::TransferDocument(Desktop& desktop, DocType type, const DocumentServices& services)
    : LineDocument(desktop, type, services, kPlainGrid) {
  CmdDownl.Click = [this] {
    RequireLines();
    LoadFromFile();
  };
}

void TransferDocument::RunIndicator(bool run) {
  LineDocument::RunIndicator(run);
  CmdDownl.Enabled = !run;
}

frmDocPERplus::frmDocPERplus(Desktop& desktop, const DocumentServices& services)
    : TransferDocument(desktop, DocType::kTransferIn, services) {
  Complete();
}

frmDocPERmin::frmDocPERmin(Desktop& desktop, const DocumentServices& services)
    : TransferDocument(desktop, DocType::kTransferOut, services) {
  Complete();
}

}  // namespace zrt
