#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/recordset.h"
#include "core/session.h"
#include "stock/document_kind.h"
#include "stock/module_reg.h"

namespace zrt {

/// A line that is to go into a document, with all that its row holds. Thousandths.
struct NewLine {
  std::int32_t cod = 0;
  std::string name = {};
  std::int32_t kol = 0;
  std::int32_t price = 0;
  std::int32_t retail = 0;
  std::int32_t ost = 0;   ///< book balance; read for an inventory alone
  std::int64_t cost = 0;  ///< what the line adds to the document's sum
};

/// The lines of the open document of a kind, where they are worked on: read, added and removed without a window, so
/// that whatever brings lines (the picker, a scan, a file) does the same. Quantities, prices and sums are thousandths.
/// Nothing guards against another work place with the same kind open. All members throw DatabaseError.
class DocumentLines {
 public:
  DocumentLines(const DocumentKind& kind, Session& session, ModuleReg& stock)
      : kind_(kind), session_(session), stock_(stock) {}

  /// DOC of the lines that are worked on, -1 those of a new document; of no use for what stands in DOCUMENT.
  std::int32_t Doc() const { return doc_; }
  void UseDoc(std::int32_t doc) { doc_ = doc; }
  /// What the grid's query, and any other, ends with: TYP or DOC of these lines.
  std::int32_t Key() const { return kind_.lines == LinesIn::kDocument ? NumberOf(kind_.type) : doc_; }

  enum class Outcome { kAdded, kNoProduct, kTooLarge, kThereAlready };
  struct Added {
    Outcome outcome;
    std::string name = {};  ///< the product's, where it is there already
  };
  /// Adds a line to a document whose sum is `sum`. A code that the catalogue lacks adds nothing; an inventory takes a
  /// product once; a line that the tables or the document's sum can't hold is refused. Throws OverflowError.
  Added Add(std::int32_t cod, std::int32_t kol, std::int32_t price, std::int64_t sum);

  // The steps of it, for whoever tests many lines before the first goes in.

  /// Reads what a line of this product holds; nothing for a code that the catalogue lacks. Throws OverflowError.
  std::optional<NewLine> Prepare(std::int32_t cod, std::int32_t kol, std::int32_t price);
  /// Computes what the line adds to the document's sum.
  void Appraise(NewLine& line) const;
  /// Do the tables hold the line, and `sum`, the document's without it, with it?
  bool Fits(const NewLine& line, std::int64_t sum) const;
  /// May the line be written as it stands, or would its name break the statement?
  static bool HasSoundName(const NewLine& line);
  void Write(const NewLine& line);

  /// Adds to the count of an inventory's line of this product; false when there is no such line.
  bool AddToCount(std::int32_t cod, std::int32_t kol);

  void Delete(std::int64_t id);
  /// All lines of the document.
  void DeleteAll();
  /// The lines of whatever document of the kind wasn't saved: what leaving a window leaves behind.
  void DeleteWorkingCopy();
  /// Lines that stand under -1 still go to document `doc`; true when they went.
  bool MoveTo(std::int32_t doc);
  /// Makes the working copy of a saved document from its register rows. Two lines equal in all become one; a line whose
  /// product is gone from the catalogue drops out.
  void TakeFromRegister(std::int32_t doc);

  /// The document's sum as its head has it: of an inventory its result in retail prices, of a price change 0.
  std::int64_t Sum();

 private:
  /// "DOCUMENT WHERE TYP=1", "DOCINVENT WHERE DOC=-1".
  std::string These() const;
  std::optional<std::string> NameOfCounted(std::int32_t cod);

  const DocumentKind& kind_;
  Session& session_;
  ModuleReg& stock_;
  std::int32_t doc_ = -1;
};

/// Is this sum one that JOURNAL.SUMM and the lines' columns hold?
bool FitsTables(std::int64_t thousandths);

/// A quantity or sum as a grid's query shows it, back in thousandths. Throws TypeMismatch, OverflowError.
std::int32_t ToThousandths(const Cell& shown, int sign = 1);

}  // namespace zrt
