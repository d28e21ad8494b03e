#pragma once

#include "documents/document_form.h"

namespace zrt {

/// The price change: posting writes new retail prices into the catalogue at once, whatever its date, and can't be
/// undone. Its lines live in DOCPRICE, those of a new document under DOC=-1; it has no rows in the register.
class frmDocPRC final : public DocumentForm {
 public:
  frmDocPRC(Desktop& desktop, const DocumentServices& services);

  void BroadcastReciever(std::int32_t cod, std::int32_t kol, std::int32_t price) override;
  /// A price change has no sum.
  void SumRefresh() override {}

 protected:
  void OpenLines(std::int32_t doc) override;
  void FormatGrid() override;
  const char* BarcodeQuery() const override;
  bool OffersRetail() const override { return true; }
  void ChangeLine() override;
  void DeleteLineStatement(std::int64_t id) override;
  std::string InsertHeadStatement(const std::string& date, const std::string& control) override;
  std::string FindHeadStatement(const std::string& control) const override;
  std::string UpdateHeadStatement(const std::string& date) override;
  void TakeNumber() override;
  void WriteRegister(const std::string&) override {}
  void PostSaved(const std::string& date) override;
  void DeleteWorkingCopy() override;
  void UpdateDocument() override;
};

}  // namespace zrt
