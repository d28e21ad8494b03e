#include "check/findings.h"

#include <fmt/format.h>

namespace zrt::check {

namespace {

constexpr std::string_view kPostAgain = "отмените проведение документа и проведите его снова";
constexpr std::string_view kSaveAgain = "откройте документ, проверьте строки и сохраните его снова";

constexpr std::array<FaultText, static_cast<std::size_t>(Fault::kCount)> kTexts = {{
    {"Нет даты", false, kSaveAgain},
    {"Документ неизвестного вида", false, "восстановите из копии"},
    {"Непонятное состояние документа", false, kPostAgain},
    {"Строки без документа", false, "документа больше нет, строки остались: восстановите из копии или удалите их"},
    {"Строки документа другого вида", false, kSaveAgain},
    {"Строки с другой датой, чем у документа", false, kSaveAgain},
    {"Приход вместо расхода или наоборот", false, kSaveAgain},
    {"Проведён документ, у которого нет строк", false, kSaveAgain},
    {"Документ проведён не до конца", false, kPostAgain},
    {"Документ не проведён, а строки его проведены", false, "проведите документ и отмените проведение"},
    {"Остаток у непроведённой строки", false, "проведите документ и отмените проведение"},
    {"Проведена услуга, у которой нет остатка", false, kPostAgain},
    {"Остаток не равен сумме движений", false, kPostAgain},
    {"Сумма документа не равна сумме его строк", false, kSaveAgain},
    {"Ссылка на следующий документ ведёт не туда", false, kPostAgain},
    {"Проданные строки без чека их заказа", false, "чека этого заказа нет в кассе: сверьтесь с кассовой лентой"},
    {"Один штрихкод у разных товаров", false, "исправьте карточку товара"},
    {"Клавиша панели без товара", true, "назначьте клавише товар или очистите её"},
    {"Остатки после документа, проведённого задним числом без перепроведения", true,
     "проведите ранний документ ещё раз и согласитесь перепровести последующие"},
    {"Сумма отчёта меньше суммы строк: возвраты больше продаж", true, ""},
    {"Факт инвентаризации изменён после сохранения", true, "сохраните документ"},
    {"Ссылка на удалённый документ", true, ""},
    {"Остаток на кассах старше регистра", true, "нажмите \"Обновить на Кассе\" в документе или обновите товары"},
    {"Строки открытого документа", true, "документ открыт на рабочем месте, или программа закрылась без сохранения"},
    {"Кодировка не latin1, latin1_bin: буквы А, Б, В, Г могут сравниваться как равные", true,
     "сделайте копию; вне работы магазина администратор сервера выполняет названные команды"},
}};

}  // namespace

const FaultText& TextOf(Fault fault) {
  return kTexts[static_cast<std::size_t>(fault)];
}

void Findings::Add(Fault fault, const std::string& where) {
  Found& found = found_[static_cast<std::size_t>(fault)];
  if (++found.count <= kShown) found.where.push_back(where);
}

bool Findings::IsWhole() const {
  for (std::size_t i = 0; i < found_.size(); ++i) {
    if (found_[i].count > 0 && !kTexts[i].allowed) return false;
  }
  return true;
}

std::string Findings::Report() const {
  std::string report;
  for (std::size_t i = 0; i < found_.size(); ++i) {
    const Found& found = found_[i];
    if (found.count == 0) continue;
    report += fmt::format("{} {}: {}\n", kTexts[i].allowed ? "ЗАМЕЧАНИЕ." : "ОШИБКА.", kTexts[i].title, found.count);
    for (const std::string& where : found.where) report += "    " + where + "\n";
    if (found.count > found.where.size()) report += fmt::format("    и ещё {}\n", found.count - found.where.size());
    if (!kTexts[i].what.empty()) report += fmt::format("    Что делать: {}.\n", kTexts[i].what);
  }
  return report + (IsWhole() ? "Всё сходится.\n" : "Есть ошибки.\n");
}

}  // namespace zrt::check
