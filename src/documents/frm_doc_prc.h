#pragma once

#include "documents/own_lines_document.h"

namespace zrt {

/// The price change: posting writes new retail prices into the catalogue at once, whatever its date, and can't be
/// undone. Its lines live in DOCPRICE, those of a new document under DOC=-1; it has no rows in the register.
class frmDocPRC final : public OwnLinesDocument {
 public:
  frmDocPRC(Desktop& desktop, const DocumentServices& services);

  void BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price) override;
  /// A price change has no sum.
  void SumRefresh() override {}

 protected:
  void FormatGrid() override;
  const char* BarcodeQuery() const override;
  bool OffersRetail() const override { return true; }
  void ChangeTo(std::int64_t id, std::string_view answer) override;
  std::string Question() const override;
  const char* QuestionTitle() const override { return "НОВАЯ ЦЕНА"; }
  std::string InsertHeadStatement(const std::string& date, const std::string& control) override;
  /// Its sum is always 0.
  std::string HeadCondition(const std::string& control) const override;
  std::string UpdateHeadStatement(const std::string& date) override;
  /// Prices that were posted stay so.
  void TakeOut() override {}
  void WriteRegister(const std::string&) override {}
  void PostSaved(const std::string& date) override;
  void UpdateDocument() override;
};

}  // namespace zrt
