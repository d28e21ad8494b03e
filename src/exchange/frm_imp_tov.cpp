#include "exchange/frm_imp_tov.h"

#include <fmt/format.h>

#include "core/errors.h"
#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

struct ModeTexts {
  std::string_view pattern;
  std::string_view caption;
  std::string_view run;
};
constexpr std::array<ModeTexts, 4> kModes = {{
    {"*.xls*", "Импорт Справочника Товаров из файла .xls", "Переписать Справочник Товаров"},
    {"*.txt*", "Загрузка инвентаризации из файла .txt", "Загрузить остатки"},
    {"*.txt*", "Загрузка перемещения из файла .txt", "Загрузить остатки"},
    {"*.txt*", "Загрузка перемещения из файла .txt", "Загрузить остатки"},
}};

}  // namespace

frmImpTov::frmImpTov(Desktop& desktop, Session& session, ModuleReg& stock, const DriveMap& drives)
    : Form(desktop, "frmImpTov"), session_(session), stock_(stock), drives_(drives) {
  Load = [this] { Form_Load(); };
  KeyDown = [this](Key& key) {
    if (key.code != Key::kEscape) return;
    key.swallow = true;
    Close();
  };
  Drive1.Change = [this] { ShowFolder(Drive1.Drive() + "\\"); };
  Dir1.Change = [this] { ShowFolder(Dir1.Path()); };
  File1.Click = [this] { TextPath.Text = JoinPath(File1.Path(), File1.FileName()); };
  CmdRun.Click = [this] { CmdRun_Click(); };
  Complete();
}

void frmImpTov::Open(int mode) {
  ImportMode = mode;
  ShowModal();
}

void frmImpTov::Form_Load() {
  const ModeTexts& texts = kModes[static_cast<std::size_t>(ImportMode)];
  Caption = texts.caption;
  CmdRun.Caption = texts.run;
  for (Frame* frame : {&Frame1, &Frame2}) frame->Visible = ImportMode == kCatalogue;
  File1.Pattern = texts.pattern;
  ShowFolder(WithoutSlash(session_.ReportFolder));
}

void frmImpTov::ShowFolder(const std::string& path) {
  Dir1.Path = path;
  File1.FileName = "";
  File1.Path = path;
}

void frmImpTov::CmdRun_Click() {
  const std::string path = TextPath.Text();
  if (path.empty()) {
    TheDesktop().MsgBox("Файл НЕ выбран!");
    return;
  }
  switch (ImportMode) {
    case kInventory:
      return DownloadRevFromTxt(path);
    case kTransferIn:
      return DownloadPerPlusFromTxt(path);
    case kTransferOut:
      return DownloadPerMinusFromTxt(path);
    default:
      break;
  }
  if (TheDesktop().AskPassword("Введите пароль администратора:") != kAdministratorPassword) {
    TheDesktop().MsgBox("Пароль неверный!");
    return;
  }
  Option1[0].Value() ? DownloadTovFromXls(path) : DownloadTovFromOpOff(path);
}

// The catalogue

void frmImpTov::DownloadTovFromXls(const std::string& path) {
  Say("Microsoft Excel");
  ReplaceCatalogue(ProductSheet(drives_, path, session_.Format()));
}

void frmImpTov::DownloadTovFromOpOff(const std::string& path) {
  Say("Open Office");
  ReplaceCatalogue(ProductSheet(drives_, path, session_.Format()));
}

void frmImpTov::ReplaceCatalogue(const ProductSheet& sheet) {
  Say(fmt::format("файл содержит {} строк", sheet.Count()));
  session_.Write("DELETE FROM TOVAR");
  try {
    LoadProducts(sheet);
  } catch (const Error&) {
    // The old catalogue is gone: its list shows what there is now. A second failure would hide the first.
    IgnoreFailure([this] { ProductsChanged(); });
    throw;
  }
  Say("загрузка завершена");
  Say(fmt::format("загружено {} товаров", sheet.Count()));
  TheDesktop().MsgBox("Загрузка справочника завершена!");
  ProgressBar1.Value = 0;
  ProductsChanged();
}

void frmImpTov::LoadProducts(const ProductSheet& sheet) {
  Say("загрузка...");
  ProgressBar1.Max = static_cast<int>(std::max<std::int64_t>(sheet.Count(), 1));
  for (std::int64_t row = ProductSheet::kFirstRow; row < ProductSheet::kFirstRow + sheet.Count(); ++row) {
    ProgressBar1.Value = static_cast<int>(row - ProductSheet::kFirstRow + 1);
    const std::optional<std::int32_t> cod = sheet.Code(row);
    if (!cod) {
      Say(fmt::format("пропущена строка {} - неверный код товара", row));
      continue;
    }
    const std::string name = sheet.Name(row);
    if (name.empty()) {
      Say(fmt::format("пропущена строка {} - пустое наименование", row));
      continue;
    }
    session_.Write(sheet.InsertStatement(row, *cod, name));
  }
}

void frmImpTov::Say(std::string text) {
  List1.AddItem(std::move(text));
  List1.Repaint();
}

// Lines of documents

void frmImpTov::DownloadRevFromTxt(const std::string& path) {
  LoadLines(path, [this](const CountedLine& line) { AddCount(line); });
}

void frmImpTov::DownloadPerPlusFromTxt(const std::string& path) {
  LoadLines(path, [this](const CountedLine& line) { AddTransferLine(line, 6); });
}

void frmImpTov::DownloadPerMinusFromTxt(const std::string& path) {
  LoadLines(path, [this](const CountedLine& line) { AddTransferLine(line, 7); });
}

void frmImpTov::LoadLines(const std::string& path, const std::function<void(const CountedLine& line)>& add) {
  const std::vector<CountedLine> lines = ReadLineFile(drives_, path);
  if (lines.empty()) {
    TheDesktop().MsgBox("Файл пустой!");
    return;
  }
  ProgressBar1.Max = static_cast<int>(lines.size());
  int loaded = 0;
  try {
    for (const CountedLine& line : lines) {
      add(line);
      ProgressBar1.Value = ++loaded;
    }
  } catch (const Error&) {
    // What has been added by now belongs to the document: its window must show it. A second failure would hide the
    // first.
    IgnoreFailure([this] { LinesChanged(ImportMode); });
    throw;
  }
  TheDesktop().MsgBox(fmt::format("Успешно загружено {} строк", lines.size()));
  ProgressBar1.Value = 0;
  LinesChanged(ImportMode);
}

void frmImpTov::AddCount(const CountedLine& line) {
  const std::string counted = fmt::format(" WHERE DOC=-1 AND COD={}", line.cod);
  if (session_.ReadOne("SELECT COD FROM DOCINVENT" + counted).RecordCount() > 0) {
    session_.Write(fmt::format("UPDATE DOCINVENT SET KOL=KOL+{}{}", line.kol, counted));
    return;
  }
  Recordset product;
  session_.BindSet(product, fmt::format("SELECT DISTINCT COD,NAME,PRISE FROM TOVAR WHERE COD={}", line.cod));
  if (product.RecordCount() == 0) return;
  const Cell prise = product.Field("PRISE");
  const std::int32_t retail = prise.IsNull() ? 0 : ToInt32(prise.Number() * scale::kPriceToDocument);
  session_.Write(fmt::format("INSERT INTO DOCINVENT (COD,NAME,OST,KOL,PRC,PRCR,DOC) VALUES ({},'{}',{},{},{},{},-1)",
                             line.cod, product.Field("NAME").TextOrEmpty(), stock_.GetOstNow(line.cod), line.kol,
                             stock_.GetPurchasePrice(line.cod), retail));
}

void frmImpTov::AddTransferLine(const CountedLine& line, int type) {
  Recordset product;
  session_.BindSet(product, fmt::format("SELECT DISTINCT COD,NAME,PRISE FROM TOVAR WHERE COD={}", line.cod));
  if (product.RecordCount() == 0) return;
  const std::int32_t price = stock_.GetPurchasePrice(line.cod);
  session_.Write(fmt::format("INSERT INTO DOCUMENT (COD,NAME,KOL,PRISE,COST,TYP) VALUES ({},'{}',{},{},{},{})",
                             line.cod, product.Field("NAME").TextOrEmpty(), line.kol, price,
                             ToInt32(price / 1000.0 * line.kol), type));
}

}  // namespace zrt
