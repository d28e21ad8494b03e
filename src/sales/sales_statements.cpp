#include "sales/sales_statements.h"

#include <fmt/format.h>

namespace zrt::sales {

const std::string_view kSales =
    "SELECT COD As 'Cod',NAME As 'Name',ROUND(KOL/1000,3) As 'Value',ROUND(PRISE/1000,3) As 'Price',"
    "ROUND(SKID/1000,3) As 'Dscnt',ROUND(SUM2/1000,3) As 'Summ',PERS As 'Pers',DATETIME As 'DateTime',TER As 'Ter',"
    "NUM As 'Num',IF(REZ=0,'',REZ) As 'Card',N6 As 'fisk',RIGHT(T1,13) As 'Status' FROM PROD";

const std::string_view kDeletions =
    "SELECT SPION.COD As 'Cod',SPION.NAME As 'Name',SPION.KOL As 'Value',SPION.PRISE As 'Price',"
    "SPION.DATETIME As 'DateTime',SPION.TER As 'Ter',SPION.KAS As 'Num',KLIENT.NAME As 'Person' "
    "FROM SPION LEFT JOIN KLIENT ON KLIENT.COD = SPION.REZ";

const std::string_view kOrderDetail =
    "SELECT KASSA.TER As 'Ter',KASSA.NUM As 'Num',KASSA.N3 As 'Stl',KASSA.PERS As 'cod',KASSA.OPER As 'Operation',"
    "ROUND(KASSA.SUM1,2) As 'Summ',ROUND(KASSA.SKID,3) As 'Dscnt',ROUND(KASSA.SUM2,2) As 'Pay',KASSA.N5 As 'Card',"
    "DATE_FORMAT(MIN(PROD.DATETIME),'%d.%m.%Y %T') As 'StartOrder', "
    "DATE_FORMAT(MAX(PROD.DATETIME),'%d.%m.%Y %T') As 'EndOrder',LEFT(KASSA.T1,27) As 'Complete',"
    "KASSA1.TIM As 'OrderPaid' FROM KASSA JOIN PROD LEFT JOIN KASSA As KASSA1 ON KASSA1.NUM=KASSA.NUM AND "
    "KASSA1.TER=KASSA.TER AND KASSA1.N4>2 WHERE KASSA.NUM=PROD.NUM AND KASSA.TER=PROD.TER AND KASSA.SUM1>0";

const std::string_view kOrders =
    "SELECT ROUND(KASSA.SUM1,2) As 'Summ',ROUND(KASSA.SKID,3) As 'Dscnt',ROUND(KASSA.SUM2,2) As 'Pay',"
    "KASSA.PERS As 'cod',KASSA.OPER As 'Operation',DATE_FORMAT(MIN(PROD.DATETIME),'%d.%m.%Y %T') As 'DateTime',"
    "KASSA.TER As 'Ter',KASSA.NUM As 'Num',RIGHT(KASSA.T1,13) As 'Status' FROM KASSA, PROD "
    "WHERE KASSA.NUM=PROD.NUM AND KASSA.TER=PROD.TER AND KASSA.SUM1>0";

const std::string_view kLite =
    "SELECT OPER As 'Operation',ROUND(SUM1,2) As 'Summ',ROUND(SKID,3) As 'Dscnt',ROUND(SUM2,2) As 'Cash',"
    "DATE_FORMAT(DAT,'%d.%m.%Y %T') As 'DateTime',PERS As 'Person',TER As 'Ter',NUM As 'Num',"
    "IF(N5=0,'',N5) As 'Card',N6 As 'Fiscal',IF(N4,'Z','') As 'Status' FROM KASSA WHERE SUM1>0";

const std::string_view kTotal = "SELECT SUM(KOL*PRISE/1000-SKID) FROM PROD";
const std::string_view kTotalWithQuantity = "SELECT SUM(KOL*PRISE/1000-SKID), SUM(KOL) FROM PROD";
const std::string_view kTotalOfCard = "SELECT SUM(KOL*PRISE/1000) FROM PROD";
const std::string_view kLiteTotal = "SELECT ROUND(SUM(SUM1-SKID),2) FROM KASSA WHERE ";
const std::string_view kFirstSold = "SELECT * FROM PROD ORDER BY DATETIME";

const std::string_view kSalesTail = " ORDER BY DATETIME";
const std::string_view kOrderTail = " GROUP BY KASSA.NUM ORDER BY PROD.DATETIME";
const std::string_view kLiteTail = " ORDER BY DAT";

const Filter kOfShift = {.word = "Data", .title = "ПРОДАЖИ ТОВАРА ЗА {date}{excise}"};
const Filter kWholePeriod = {.word = "ALL", .title = "ТАБЛИЦА ПРОДАЖ ЗА ПЕРИОД: с {first} по {now}{excise}"};
const Filter kOneOrder = {
    .word = "Chek", .field = Field::kOrder, .title = "КОПИЯ ЧЕКА(ЗАКАЗА) № {number}  {moment}   {terminal}"};
const Filter kByTerminal = {.word = "Term",
                            .field = Field::kTerminal,
                            .sold = " WHERE TER = {value}",
                            .deleted = " WHERE SPION.TER = {value}",
                            .ordered = " AND KASSA.TER = {value}",
                            .total = kTotal,
                            .title = "ПРОДАЖИ ПО ТЕРМИНАЛУ №{value} ЗА {date}"};
// Among the deletions the cashier's number is compared with the order's number, the column KAS. Kept on
// purpose: the shops know it so.
const Filter kByCashier = {.word = "Ofc",
                           .field = Field::kCashier,
                           .sold = " WHERE PERS = {value}",
                           .deleted = " WHERE SPION.KAS = {value}",
                           .ordered = " AND KASSA.PERS = {value}",
                           .total = kTotal,
                           .title = "ПРОДАЖИ ПО КОДУ ОФИЦИАНТА №{value} ЗА {date}"};
const Filter kByProduct = {.word = "Kod",
                           .field = Field::kProduct,
                           .sold = " WHERE COD = {value}",
                           .deleted = " WHERE SPION.COD = {value}",
                           .total = kTotalWithQuantity,
                           .title = "ПРОДАЖИ ТОВАРА (КОД={value}) ЗА {date}"};
const Filter kByCard = {.word = "DKart",
                        .field = Field::kCard,
                        .sold = " WHERE REZ = {value}",
                        .ordered = " AND KASSA.N5 = {value}",
                        .total = kTotalOfCard,
                        .title = "ПРОДАЖИ ПО ДИСКОНТНОЙ КАРТЕ №{value} ЗА {date}"};
// Its files bear their own name as title: "НЕОПЛАЧЕННЫЕ ЗАКАЗЫ ЗА " was meant for a filter of the name "NOpl", and the
// readers of the files know them without it.
const Filter kNotClosed = {.word = "NeOpl",
                           .sold = " WHERE N4<3",
                           .ordered = " AND KASSA.N4<3",
                           .total = kTotalWithQuantity,
                           .title = "{file}"};

namespace {

/// The register narrows the sold lines and the total; the orders are all that went through either.
Filter ByFiscalRegister(std::string_view sold) {
  return {.word = "Fisk",
          .sold = sold,
          .ordered = " AND KASSA.N6 IS NOT NULL",
          .total = kTotalWithQuantity,
          .title = "ОПЛАЧЕННЫЕ ПО КАССЕ ЗАКАЗЫ ЗА {date}"};
}

}  // namespace

const std::array<FiscalFilter, 4> kFiscal = {{{},
                                              {ByFiscalRegister(" WHERE N6=1"), " ФП-1:Акцизный"},
                                              {ByFiscalRegister(" WHERE N6=2"), " ФП-2:ЕдНалог"},
                                              {ByFiscalRegister(" WHERE N6 IS NOT NULL"), " ВСЕ"}}};

const LiteFilter kLiteByTerminal = {.condition = "TER = {value}", .suffix = " по кассе №{value}"};
const LiteFilter kLiteByCashier = {.condition = "PERS = {value}", .suffix = " по кассиру №{value}"};
const LiteFilter kLiteByCard = {.condition = "N5 = {value}", .suffix = " по карте №{value}"};
const LiteFilter kLiteFiscal = {.condition = "N6 IS NOT NULL", .suffix = " фискальные"};

std::string Filled(std::string_view piece, const std::string& value) {
  return fmt::format(fmt::runtime(piece), fmt::arg("value", value));
}

std::string Within(std::string_view column, const Shift& shift) {
  return fmt::format("{0} > '{1}' AND {0} < '{2}'", column, shift.From, shift.To);
}

std::string DeletedOn(std::string_view day) {
  return fmt::format("SPION.DATETIME LIKE '{}%'", day);
}

std::string ExciseCondition(int excise_filter) {
  switch (excise_filter) {
    case 1:
      return "N1=1";
    case 2:
      return "N1=2";
    case 3:
      return "N1=0";
    default:
      return {};
  }
}

}  // namespace zrt::sales
