#include "documents/frm_doc_prc.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kLines =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(PRC1/1000,3) As 'OldPrice',"
    "ROUND(PRC2/1000,3) As 'NewPrice',ID FROM DOCPRICE WHERE DOC=";
/// How much of a new document's note the journal takes: half of what it takes of a saved one.
constexpr std::size_t kNewNote = 24;

}  // namespace

frmDocPRC::frmDocPRC(Desktop& desktop, const DocumentServices& services)
    : OwnLinesDocument(desktop, DocType::kPriceChange, services, kLines) {
  Complete();
}

void frmDocPRC::FormatGrid() {
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"Cod", 900, Align::kRight},
                                                               {"Name", 4200, Align::kLeft},
                                                               {"OldPrice", 1350, Align::kRight, "0.00"},
                                                               {"NewPrice", 1350, Align::kRight, "0.00"},
                                                               {"ID", 750, Align::kRight}});
  DataGrid7.Layout(kLayout);
}

std::string frmDocPRC::Question() const {
  return fmt::format("{}\r\rстарая цена = {}", DataGrid7.CurrentText("Name"), DataGrid7.CurrentText("OldPrice"));
}

void frmDocPRC::ChangeTo(std::int64_t id, std::string_view answer) {
  session_.Write(fmt::format("UPDATE DOCPRICE SET PRC2={} WHERE DOC={} AND ID={}",
                             session_.Format().ToScaled(answer, scale::kDocument), LinesDoc(), id));
}

DocumentHead frmDocPRC::NewHead() const {
  DocumentHead head = Head();
  head.prim = PrimText(kNewNote);
  return head;
}

}  // namespace zrt
