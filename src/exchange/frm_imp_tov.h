#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/session.h"
#include "exchange/line_file.h"
#include "exchange/product_sheet.h"
#include "stock/document_lines.h"
#include "stock/module_reg.h"
#include "ui/form.h"

namespace zrt {

/// Loads a file that the operator chooses: the whole catalogue from a spreadsheet, or the lines of an open document
/// from a text file.
class frmImpTov final : public Form {
 public:
  enum Mode : int { kCatalogue = 0, kInventory = 1, kTransferIn = 2, kTransferOut = 3 };

  frmImpTov(Desktop& desktop, Session& session, ModuleReg& stock, const DriveMap& drives);

  int ImportMode = kCatalogue;  ///< set before the form is shown

  DriveListBox Drive1{*this, "Drive1"};
  DirListBox Dir1{*this, "Dir1"};
  FileListBox File1{*this, "File1"};
  Frame Frame1{*this, "Frame1"};  ///< what the columns of a spreadsheet are
  Frame Frame2{*this, "Frame2"};  ///< which program's files are read
  std::array<OptionButton, 2> Option1{ControlArray<OptionButton, 2>(*this, "Option1", 0)};
  TextBox TextPath{*this, "TextPath"};
  Button CmdRun{*this, "CmdRun"};
  zrt::ProgressBar ProgressBar1{*this, "ProgressBar1"};
  ListBox List1{*this, "List1"};  ///< what the load of a spreadsheet has come to

  /// The catalogue was replaced: its list reads it again.
  std::function<void()> ProductsChanged;
  /// Lines were added to the document of this mode: its window reads them again.
  std::function<void(int mode)> LinesChanged;

  /// Opens the form over the one that asks, in mode `mode`.
  void Open(int mode);

 private:
  void Form_Load();
  void ShowFolder(const std::string& path);
  void CmdRun_Click();

  // Spreadsheets are read by a reader of our own, whichever program has saved them; the two ways differ in what the
  // list says. All throw FileError when the file can't be read, before anything is deleted, and DatabaseError.
  void DownloadTovFromXls(const std::string& path);
  void DownloadTovFromOpOff(const std::string& path);
  /// The catalogue in a file, which the operator may leave while it is read. Throws FileError, Stopped.
  ProductSheet ReadSheet(const std::string& path);
  void ReplaceCatalogue(const ProductSheet& sheet);
  void LoadProducts(const ProductSheet& sheet);

  // A code that the catalogue lacks is left out. All lines are read and tested before the first goes in; a load that
  // breaks off all the same says how far it has come. Throw FileError and DatabaseError before anything is written.
  void DownloadRevFromTxt(const std::string& path);
  void DownloadPerPlusFromTxt(const std::string& path);
  void DownloadPerMinusFromTxt(const std::string& path);
  void LoadLines(DocType type, const std::string& path);
  /// The lines as they are to go in, nothing where the catalogue lacks the code. When one can't, the operator is told
  /// and there are none.
  std::optional<std::vector<std::optional<NewLine>>> Prepare(DocumentLines& document,
                                                             const std::vector<CountedLine>& lines);

  void Say(std::string text);

  Session& session_;
  ModuleReg& stock_;
  const DriveMap& drives_;
};

}  // namespace zrt
