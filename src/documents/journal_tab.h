#pragma once

#include <string>

#include "core/session.h"
#include "documents/documents.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The journal of stock documents in the main window; there only with a stock register.
class JournalTab : public FormSection {
 public:
  JournalTab(Form& form, Session& session, Documents& documents);

  Frame FrameJourn{form_, "FrameJourn"};
  DataGrid DataGrid6{form_, "DataGrid6"};

  /// Opens the journal at start, on its newest document. Throws DatabaseError.
  void FirstFill();
  /// Reads the journal again and stands on the newest document; a document saved in its own window appears in this way.
  /// Throws DatabaseError.
  void Refresh();

  /// Asks for a document's number and the password and deletes the document from everywhere; a posted one only if it is
  /// a price change, which can't be unposted. Throws DatabaseError.
  void DeleteOneDoc();
  /// Asks, and for the password, and empties the journal, the register and the documents' lines. TOVAR keeps its
  /// balances. Throws DatabaseError.
  void DeleteAllDocs();

 private:
  void OpenDocument();
  /// An open outgoing invoice doesn't keep others shut, and a document that couldn't be opened keeps nothing shut:
  /// `form` leaves what it shows, as closing does, and the journal stands on document `number` again. False when the
  /// form stays or the document is gone.
  bool LeaveFor(const std::string& number, DocumentForm& form);
  bool PasswordIsRight(const std::string& title);
  void ShowNewest();
  void FormatJournalGrid();

  Session& session_;
  Documents& documents_;
};

}  // namespace zrt
