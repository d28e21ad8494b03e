#pragma once

#include <string>

#include "ui/form.h"

namespace zrt {

/// The about box. A key or a click closes it.
class frmSplash final : public Form {
 public:
  /// `version`: the three numbers of the program's version joined by ".".
  frmSplash(Desktop& desktop, std::string version);

  Label lblVersion{*this, "lblVersion"};
  Label lblProductName{*this, "lblProductName"};

 private:
  void Form_Load();

  std::string version_;
};

}  // namespace zrt
