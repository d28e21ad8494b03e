#include "exchange/frm_imp_tov.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

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
  ReplaceCatalogue(ReadSheet(path));
}

void frmImpTov::DownloadTovFromOpOff(const std::string& path) {
  Say("Open Office");
  ReplaceCatalogue(ReadSheet(path));
}

ProductSheet frmImpTov::ReadSheet(const std::string& path) {
  // Nothing has been touched yet: the reading of a large file may be stopped.
  StopOffer stop(TheDesktop());
  return {drives_, path, session_.Format(), [&stop] { stop.Step(); }};
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
  LoadLines(DocType::kInventory, path);
}

void frmImpTov::DownloadPerPlusFromTxt(const std::string& path) {
  LoadLines(DocType::kTransferIn, path);
}

void frmImpTov::DownloadPerMinusFromTxt(const std::string& path) {
  LoadLines(DocType::kTransferOut, path);
}

void frmImpTov::LoadLines(DocType type, const std::string& path) {
  const std::vector<CountedLine> lines = ReadLineFile(drives_, path);
  if (lines.empty()) {
    TheDesktop().MsgBox("Файл пустой!");
    return;
  }
  DocumentLines document(KindOf(type), session_, stock_);
  const auto prepared = Prepare(document, lines);
  if (!prepared) return;
  ProgressBar1.Max = static_cast<int>(lines.size());
  int loaded = 0;
  try {
    for (const CountedLine& line : lines) {
      const std::optional<NewLine>& added = prepared->at(static_cast<std::size_t>(loaded));
      const bool counted = type == DocType::kInventory && document.AddToCount(line.cod, line.kol);
      if (!counted && added) document.Write(*added);
      ProgressBar1.Value = ++loaded;
    }
  } catch (const Error& error) {
    // What has been added by now belongs to the document: its window must show it.
    IgnoreFailure([this] { LinesChanged(ImportMode); });
    const std::string in = loaded == 0 ? "ни одна строка НЕ загружена" : fmt::format("загружены строки 1 - {}", loaded);
    TheDesktop().TellFailure(fmt::format("Загрузка прервана: {} из {}!", in, lines.size()), error);
    ProgressBar1.Value = 0;
    return;
  }
  TheDesktop().MsgBox(fmt::format("Успешно загружено {} строк", lines.size()));
  ProgressBar1.Value = 0;
  LinesChanged(ImportMode);
}

std::optional<std::vector<std::optional<NewLine>>> frmImpTov::Prepare(DocumentLines& document,
                                                                      const std::vector<CountedLine>& lines) {
  const auto refuse = [this](std::size_t line, const std::string& why) {
    TheDesktop().MsgBox(fmt::format("Строка {}: {}\n\rИз файла ничего НЕ загружено.", line, why), BoxIcon::kCritical);
    return std::nullopt;
  };
  std::vector<std::optional<NewLine>> prepared;
  std::int64_t sum = document.Sum();
  for (const CountedLine& line : lines) {
    prepared.push_back(document.Prepare(line.cod, line.kol, 0));
    const std::optional<NewLine>& added = prepared.back();
    if (!added) continue;
    if (!DocumentLines::HasSoundName(*added)) {
      return refuse(prepared.size(),
                    fmt::format("в наименовании товара {} \"{}\" знак ' или \\, с ним записать нельзя!", added->cod,
                                added->name));
    }
    if (!document.Fits(*added, sum)) {
      return refuse(prepared.size(), fmt::format("товар {}, количество или сумма слишком велики!", added->cod));
    }
    sum += added->cost;
  }
  return prepared;
}

}  // namespace zrt
