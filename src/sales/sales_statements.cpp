#include "sales/sales_statements.h"

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
const std::string_view kLiteTotal = "SELECT ROUND(SUM(SUM1-SKID),2) FROM KASSA WHERE ";

const std::string_view kSalesTail = " ORDER BY DATETIME";
const std::string_view kOrderTail = " GROUP BY KASSA.NUM ORDER BY PROD.DATETIME";
const std::string_view kLiteTail = " ORDER BY DAT";

std::string Within(std::string_view column, const Shift& shift) {
  return fmt::format("{0} > '{1}' AND {0} < '{2}'", column, shift.From, shift.To);
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
