#include "check/shop_check.h"

#include <fmt/format.h>

#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include "core/recordset.h"
#include "core/schema.h"

namespace zrt::check {

namespace {

/// The shop has tables of stock documents once it keeps a register.
bool KeepsRegister(Connection& connection) {
  Recordset tables;
  tables.Open("SHOW TABLES LIKE 'REGISTR'", connection);
  return tables.RecordCount() > 0;
}

void CheckReceipts(Connection& connection, Findings& findings) {
  Recordset receipts;
  receipts.Open("SELECT DISTINCT TER,NUM FROM KASSA WHERE TER IS NOT NULL AND NUM IS NOT NULL", connection);
  std::set<std::pair<std::int64_t, std::int64_t>> known;
  for (int row = 1; row <= receipts.RecordCount(); ++row) {
    known.emplace(receipts.At(row, 0).Int(), receipts.At(row, 1).Int());
  }
  // A terminal writes the lines first: what it is closing right now is left for the next look.
  Recordset sold;
  sold.Open(
      "SELECT TER,NUM,COUNT(*),MIN(DATETIME) FROM PROD WHERE N4>2 AND TER IS NOT NULL AND NUM IS NOT NULL "
      "AND DATETIME<NOW()-INTERVAL 10 MINUTE GROUP BY TER,NUM",
      connection);
  for (int row = 1; row <= sold.RecordCount(); ++row) {
    if (known.contains({sold.At(row, 0).Int(), sold.At(row, 1).Int()})) continue;
    findings.Add(Fault::kSoldWithoutReceipt,
                 fmt::format("терминал {}, заказ {}, {}: строк {}", sold.At(row, 0).Raw(), sold.At(row, 1).Raw(),
                             sold.At(row, 3).Raw(), sold.At(row, 2).Raw()));
  }
}

void CheckProducts(Connection& connection, Findings& findings) {
  Recordset products;
  products.Open("SELECT DISTINCT COD FROM TOVAR WHERE COD IS NOT NULL", connection);
  std::set<std::int64_t> known;
  for (int row = 1; row <= products.RecordCount(); ++row) known.insert(products.At(row, 0).Int());
  Recordset keys;
  keys.Open("SELECT REZ,ID,CODE FROM HOTKEYS WHERE CODE IS NOT NULL AND CODE<>0 ORDER BY ID", connection);
  for (int row = 1; row <= keys.RecordCount(); ++row) {
    if (known.contains(keys.At(row, 2).Int())) continue;
    findings.Add(Fault::kKeyWithoutProduct, fmt::format("панель {}, клавиша {}: код {}", keys.At(row, 0).Raw(),
                                                        keys.At(row, 1).Int() % 100, keys.At(row, 2).Raw()));
  }
  Recordset barcodes;
  barcodes.Open(
      "SELECT BARCODE,MIN(COD),MAX(COD) FROM TOVAR WHERE BARCODE IS NOT NULL AND BARCODE<>'' AND BARCODE<>'0' "
      "GROUP BY BARCODE HAVING MIN(COD)<>MAX(COD) ORDER BY BARCODE",
      connection);
  for (int row = 1; row <= barcodes.RecordCount(); ++row) {
    findings.Add(Fault::kDoubledBarcode, fmt::format("{}: товары {} и {}", barcodes.At(row, 0).Text(),
                                                     barcodes.At(row, 1).Raw(), barcodes.At(row, 2).Raw()));
  }
}

/// Tables that the program declares with a character set of their own get that set's default collation.
void CheckCharacterSets(Connection& connection, Findings& findings) {
  const std::string schema = CharacterSetRemedy(connection);
  if (!schema.empty()) findings.Add(Fault::kCharacterSet, schema);
  Recordset tables;
  tables.Open(
      "SELECT TABLE_NAME FROM information_schema.TABLES WHERE TABLE_SCHEMA=DATABASE() AND TABLE_TYPE='BASE TABLE' AND "
      "TABLE_COLLATION<>'latin1_bin' AND NOT (TABLE_COLLATION LIKE 'latin1%' AND "
      "UPPER(TABLE_NAME) IN ('REGISTR','JOURNAL','DOCUMENT','DOCINVENT','DOCPRICE')) ORDER BY TABLE_NAME",
      connection);
  for (int row = 1; row <= tables.RecordCount(); ++row) {
    findings.Add(
        Fault::kCharacterSet,
        fmt::format("ALTER TABLE `{}` CONVERT TO CHARACTER SET latin1 COLLATE latin1_bin;", tables.At(row, 0).Text()));
  }
}

}  // namespace

Findings CheckShop(Connection& connection) {
  connection.Execute("START TRANSACTION WITH CONSISTENT SNAPSHOT");
  Findings findings;
  if (KeepsRegister(connection)) CheckDocuments(connection, findings);
  CheckReceipts(connection, findings);
  CheckProducts(connection, findings);
  CheckCharacterSets(connection, findings);
  connection.Execute("COMMIT");
  return findings;
}

}  // namespace zrt::check
