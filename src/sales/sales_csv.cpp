#include "sales/sales_csv.h"

#include <array>
#include <span>
#include <vector>

namespace zrt::sales {

namespace {

constexpr int kAsItIs = -1;

struct Column {
  std::string_view name;
  int decimals = kAsItIs;
};

constexpr std::array<Column, 12> kSalesColumns = {{{"Cod"},
                                                   {"Name"},
                                                   {"Value"},
                                                   {"Price", 2},
                                                   {"Dscnt", 2},
                                                   {"Summ", 2},
                                                   {"Pers"},
                                                   {"DateTime"},
                                                   {"Ter"},
                                                   {"Num"},
                                                   {"Card"},
                                                   {"fisk"}}};
constexpr std::string_view kSalesHeader =
    "Код;Наименование;Кол-во;Цена;Скидка;Сумма;Офиц;Дата Время;Терм;Заказ;Д.Карта;Статус";

constexpr std::array<Column, 8> kDeletionsColumns = {
    {{"Cod"}, {"Name"}, {"Value", 3}, {"Price", 2}, {"DateTime"}, {"Ter"}, {"Num"}, {"Person"}}};
constexpr std::string_view kDeletionsHeader = "Код;Наименование;Кол-во;Цена;Дата Время;Терм;Зак;Персонал";

constexpr std::array<Column, 13> kOrderDetailColumns = {{{"Ter"},
                                                         {"Num"},
                                                         {"Stl"},
                                                         {"cod"},
                                                         {"Operation"},
                                                         {"Summ", 2},
                                                         {"Dscnt", 2},
                                                         {"Pay", 2},
                                                         {"Card"},
                                                         {"StartOrder"},
                                                         {"EndOrder"},
                                                         {"Complete"},
                                                         {"OrderPaid"}}};
constexpr std::string_view kOrderDetailHeader =
    "Тер;Заказ;Стол;Код;Официант;Сумма;Скидка;Оплата;ДКарта;ЗаказНачало;ЗаказКонец;Исполнение;Закрыт";

std::string FieldText(const Cell& cell, int decimals, const RegionalFormat& format) {
  if (decimals == kAsItIs) return cell.Display(format);
  if (cell.Type() == FieldType::kText) return format.FormatNumber(format.ToNumber(cell.Text()), decimals);
  return cell.IsNull() ? std::string() : format.FormatNumber(cell.Number(), decimals);
}

void WriteTable(TextFileWriter& file, const Recordset& set, const RegionalFormat& format, std::string_view title,
                std::string_view header, std::span<const Column> columns) {
  file.Line(title);
  file.Line("");
  file.Line(header);
  std::vector<int> fields;
  for (const Column& column : columns) fields.push_back(set.FieldIndex(column.name));
  for (int row = 1; row <= set.RecordCount(); ++row) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (i > 0) line += ';';
      line += FieldText(set.At(row, fields[i]), columns[i].decimals, format);
    }
    file.Line(line);
  }
}

}  // namespace

void WriteSales(TextFileWriter& file, const Recordset& set, const RegionalFormat& format, const std::string& title,
                const std::string& sum) {
  WriteTable(file, set, format, ";" + title, kSalesHeader, kSalesColumns);
  if (sum.empty()) return;
  file.Line("");
  file.Line(";;;;ИТОГО:;" + format.FormatNumber(format.ToNumber(sum), 2));
}

void WriteDeletions(TextFileWriter& file, const Recordset& set, const RegionalFormat& format) {
  WriteTable(file, set, format, ";ТАБЛИЦА АННУЛЯЦИЙ", kDeletionsHeader, kDeletionsColumns);
}

void WriteOrderDetail(TextFileWriter& file, const Recordset& set, const RegionalFormat& format) {
  WriteTable(file, set, format, ";;;;ЖУРНАЛ ЗАКАЗОВ", kOrderDetailHeader, kOrderDetailColumns);
}

}  // namespace zrt::sales
