#include "stock/module_reg.h"

#include <fmt/format.h>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/shift_hour.h"
#include "core/text.h"

namespace zrt {

namespace {

/// Calls `visit(cod)` for each row of `codes` from the first, except for one with the code of the row before it. Lines
/// of one product mostly come together; where they don't, the same thing is done twice, without harm.
template <class Visit>
void ForEachCode(Recordset& codes, Visit visit) {
  std::int32_t remembered = -1;
  for (codes.MoveFirst(); !codes.Eof(); codes.MoveNext()) {
    const std::int32_t cod = ToInt32(codes.Field(0).Number());
    if (cod == remembered) continue;
    remembered = cod;
    visit(cod);
  }
}

std::string CodesOf(std::int32_t doc) {
  return fmt::format("SELECT COD FROM REGISTR WHERE DOC={}", doc);
}

}  // namespace

void ModuleReg::RunDocRegistr(std::int32_t doc, bool run, const std::string& date) {
  session_.BindSet(codes_, CodesOf(doc));
  if (codes_.RecordCount() > 0) {
    // The links come before the rows are marked: the search for the preceding row must not find the document itself.
    LinkDocChain(doc, run, codes_, date);
    session_.Write(fmt::format("UPDATE REGISTR SET RUN={} WHERE DOC={} AND REZ=0", run ? 1 : 0, doc));
    if (run) {
      session_.Write(fmt::format("UPDATE JOURNAL SET RUN='OK' WHERE ID={}", doc));
      WriteBalances(doc, codes_, date);
    } else {
      session_.Write(fmt::format("UPDATE JOURNAL SET RUN=NULL WHERE ID={}", doc));
      session_.Write(fmt::format("UPDATE REGISTR SET OSTKOL=0 WHERE DOC={}", doc));
    }
  }
  codes_.Close();

  session_.BindSet(later_, fmt::format("SELECT ID,DATEDOC FROM JOURNAL WHERE RUN IS NOT NULL AND DATEDOC >= '{}' AND "
                                       "ID<>{} ORDER BY DATEDOC ASC",
                                       date, doc));
  // Asked after unposting too, in the same words.
  if (later_.RecordCount() > 0 &&
      desktop_.MsgBox(
          fmt::format("Документ проведён 'задним числом'!\n\rперепровести последующие за ним {} документов?",
                      later_.RecordCount()),
          BoxIcon::kQuestion, BoxButtons::kOkCancel) == BoxAnswer::kOk) {
    RerunLaterDocs(later_);
  }
  later_.Close();
}

void ModuleReg::RerunLaterDocs(Recordset& later) {
  for (later.MoveFirst(); !later.Eof(); later.MoveNext()) {
    const std::int32_t doc = ToInt32(later.Field("ID").Number());
    const std::string moment = session_.Format().DateTimeText(later.Field("DATEDOC").Moment());
    try {
      RerunOneDoc(doc, CutSqlDateTime(moment));
    } catch (const DatabaseError& error) {
      // Taken out and not posted again it is no later posted document any more: the next press passes it over.
      throw error.Leaving(fmt::format(
          "Прервано на документе №{} от {}: если в журнале он без \"OK\", откройте его и проведите.", doc, moment));
    }
  }
}

void ModuleReg::RerunOneDoc(std::int32_t doc, const std::string& date) {
  session_.BindSet(codes_, CodesOf(doc));
  // A price change is among the later documents and has no rows in the register.
  if (codes_.RecordCount() > 0) {
    session_.Write(fmt::format("UPDATE REGISTR SET DOCNEXT=NULL, DATENEXT=NULL WHERE DOCNEXT={}", doc));
    session_.Write(fmt::format("UPDATE REGISTR SET RUN=0 WHERE DOC={}", doc));
    session_.Write(fmt::format("UPDATE JOURNAL SET RUN=NULL WHERE ID={}", doc));
    session_.Write(fmt::format("UPDATE REGISTR SET OSTKOL=0 WHERE DOC={}", doc));
    LinkDocChain(doc, true, codes_, date);
    session_.Write(fmt::format("UPDATE REGISTR SET RUN=1 WHERE DOC={} AND REZ=0", doc));
    session_.Write(fmt::format("UPDATE JOURNAL SET RUN='OK' WHERE ID={}", doc));
    WriteBalances(doc, codes_, date);
  }
  codes_.Close();
}

void ModuleReg::LinkDocChain(std::int32_t doc, bool run, Recordset& codes, const std::string& date) {
  if (!run) {
    session_.Write(fmt::format("UPDATE REGISTR SET DOCNEXT=NULL, DATENEXT=NULL WHERE DOCNEXT={}", doc));
    return;
  }
  ForEachCode(codes, [&](std::int32_t cod) {
    const std::int32_t id = GetRegistrIdAtDate(cod, date);
    if (id > 0) {
      session_.Write(fmt::format("UPDATE REGISTR SET DOCNEXT={}, DATENEXT='{}' WHERE ID={}", doc, date, id));
    }
  });
}

void ModuleReg::WriteBalances(std::int32_t doc, Recordset& codes, const std::string& date) {
  // Nothing breaks a tie of two documents of one second: each sees the other's quantities. Rows of products that keep
  // no stock are written too when the product has posted rows; nobody reads them.
  ForEachCode(codes, [&](std::int32_t cod) {
    session_.BindSet(value_,
                     fmt::format("SELECT SUM(KOL) FROM REGISTR WHERE RUN=1 AND COD={} AND DATEDOC <= '{}'", cod, date));
    const std::string sum = value_.Field(0).TextOrEmpty();
    value_.Close();
    if (!sum.empty()) {
      session_.Write(fmt::format("UPDATE REGISTR SET OSTKOL={} WHERE COD={} AND DOC={}", sum, cod, doc));
    }
  });
}

std::int32_t ModuleReg::GetOstNow(std::int32_t cod) {
  try {
    return FirstInt32(
        fmt::format("SELECT OSTKOL FROM REGISTR WHERE RUN=1 AND COD={} ORDER BY DATEDOC DESC LIMIT 1", cod));
  } catch (const Error&) {
    return 0;
  }
}

std::int32_t ModuleReg::GetOstAtDate(std::int32_t cod, const std::string& date) {
  return FirstInt32(fmt::format(
      "SELECT OSTKOL FROM REGISTR WHERE RUN=1 AND COD={} AND DATEDOC<='{}' ORDER BY DATEDOC DESC LIMIT 1", cod, date));
}

std::int32_t ModuleReg::GetPurchasePrice(std::int32_t cod) {
  return FirstInt32(fmt::format(
      "SELECT SUMM/KOL*1000 FROM REGISTR WHERE RUN=1 AND DOCTYP=1 AND COD={} ORDER BY DATEDOC DESC LIMIT 1", cod));
}

std::int32_t ModuleReg::GetRegistrIdAtDate(std::int32_t cod, const std::string& date) {
  return FirstInt32(fmt::format(
      "SELECT ID FROM REGISTR WHERE RUN=1 AND COD={} AND DATEDOC<='{}' ORDER BY DATEDOC DESC LIMIT 1", cod, date));
}

std::int32_t ModuleReg::GetTovarN6(std::int32_t cod) {
  session_.BindSet(value_, fmt::format("SELECT DISTINCT N6 FROM TOVAR WHERE COD={}", cod));
  const bool keeps_no_stock = value_.RecordCount() > 0 && !value_.IsNull(0);
  value_.Close();
  return keeps_no_stock ? 1 : 0;
}

std::string ModuleReg::MakeControlNumber() const {
  const DateTime now = session_.TheClock().Now();
  return Right(fmt::format("{:02}{:02}{:02}{:02}{:02}", now.date.day, now.date.month, now.hour, now.minute, now.second),
               9);
}

void ModuleReg::RecalcOstAfterShift(Recordset& catalogue, const Progress& progress) {
  // A list that couldn't be read before is not the same as an empty one.
  if (!catalogue.IsOpen()) catalogue.Requery();
  if (catalogue.RecordCount() == 0) return;
  session_.Write("UPDATE TOVAR SET KOL=0");
  // Until somebody has chosen the hour it is NULL, and the day begins at midnight.
  const std::string first_hour = ReadShiftHour(session_).value_or("");
  const std::string today = CutSqlDate(session_.Format().DateText(session_.TheClock().Now().date));
  const std::string start = fmt::format("{} {}:00:00", today, Right("0" + first_hour, 2));

  CopyToTerminals(catalogue, start, progress);
  catalogue.Requery();
}

void ModuleReg::CopyToTerminals(const Recordset& catalogue, const std::string& start, const Progress& progress) {
  progress(0, catalogue.RecordCount());
  std::int32_t remembered = -1;
  // The rows are read where they stand: moving through them would drag the grids along.
  for (int row = 1; row <= catalogue.RecordCount(); ++row) {
    const std::int32_t cod = ToInt32(catalogue.At(row, 0).Number());
    if (cod != remembered) {
      remembered = cod;
      session_.BindSet(value_, fmt::format("SELECT SUM(KOL) FROM PROD WHERE COD={} AND DATETIME>='{}' and "
                                           "DATETIME<DATE_ADD('{}', INTERVAL 1 DAY) GROUP BY COD",
                                           cod, start, start));
      const bool sold = value_.RecordCount() > 0 && !value_.IsNull(0);
      const std::string sum = sold ? value_.Field(0).Text() : "0";
      session_.Write(fmt::format("UPDATE TOVAR SET OST={},KOL ={} WHERE COD={}", GetOstNow(cod), sum, cod));
    }
    progress(row, catalogue.RecordCount());
  }
  value_.Close();
}

void ModuleReg::ConnectReciever(std::uint8_t form_code, BroadcastReciever reciever) {
  recievers_[form_code] = std::move(reciever);
}

void ModuleReg::BroadcastToForm(std::int32_t cod, std::int32_t kol, std::int32_t price, std::uint8_t form_code) {
  if (const auto found = recievers_.find(form_code); found != recievers_.end()) found->second(cod, kol, price);
}

std::int32_t ModuleReg::FirstInt32(const std::string& sql) {
  session_.BindSet(value_, sql);
  const bool known = value_.RecordCount() > 0 && !value_.IsNull(0);
  const std::int32_t value = known ? ToInt32(value_.Field(0).Number()) : 0;
  value_.Close();
  return value;
}

}  // namespace zrt
