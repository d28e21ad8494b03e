#pragma once

#include <cstdint>
#include <string>

#include "core/session.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// The movements of one posted document, as the register has them.
class frmRegistr final : public Form {
 public:
  frmRegistr(Desktop& desktop, Session& session);

  DataGrid DataGrid8{*this, "DataGrid8"};

  /// Shows the movements of document `doc`, whose form has the title `caption`, in the place of those shown before.
  /// Throws DatabaseError.
  void ShowDocument(std::int32_t doc, const std::string& caption);

 private:
  void Form_Load();

  Session& session_;
  std::int32_t doc_ = 0;
  std::string document_caption_;
  Recordset movements_;
};

}  // namespace zrt
