#pragma once

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The journal of stock documents in the main window; there only with a stock register.
class JournalTab {
 public:
  JournalTab(Form& form, Session& session);

  Frame FrameJourn;
  DataGrid DataGrid6;

  /// Opens the journal at start, on its newest document. Throws DatabaseError.
  void FirstFill();
  /// Reads the journal again and stands on the newest document; a document saved in its own window appears in this way.
  /// Throws DatabaseError.
  void Refresh();

 private:
  void ShowNewest();
  void FormatJournalGrid();

  Session& session_;
};

}  // namespace zrt
