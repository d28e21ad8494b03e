#include "documents/journal_tab.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

}  // namespace

JournalTab::JournalTab(Form& form, Session& session)
    : FrameJourn(form, "FrameJourn"), DataGrid6(form, "DataGrid6"), session_(session) {}

void JournalTab::FirstFill() {
  session_.BindSet(session_.Pool().RsJournal,
                   "SELECT RUN As 'Entry',DTYPE As 'Document',ID As 'Num',DATEDOC As 'DateTime',"
                   "ROUND(SUMM/1000,2) As 'Summ',KLIENT As 'Klient',PRIM As 'Note' FROM JOURNAL ORDER BY DATEDOC");
  DataGrid6.Bind(session_.Pool().RsJournal);
  ShowNewest();
}

void JournalTab::Refresh() {
  session_.Pool().RsJournal.Requery();
  ShowNewest();
}

void JournalTab::ShowNewest() {
  Session::ShowLastRow(session_.Pool().RsJournal);
  FormatJournalGrid();
}

void JournalTab::FormatJournalGrid() {
  DataGrid6.Layout({{"Entry", 675, Align::kCentre},
                    {"Document", 2700, Align::kLeft},
                    {"Num", 825, Align::kRight},
                    {"DateTime", 1950, Align::kLeft},
                    {"Summ", 1350, Align::kRight, "0.00"},
                    {"Klient", 3000, Align::kLeft},
                    {"Note", 3750, Align::kLeft}});
}

}  // namespace zrt
