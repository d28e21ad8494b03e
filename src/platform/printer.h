#pragma once

#include <string>
#include <vector>

namespace zrt {

/// A text of a printed line and where it begins, in twips (1/1440 inch) from the left margin.
struct PrintedPiece {
  int left = 0;
  std::string text;
  friend bool operator==(const PrintedPiece&, const PrintedPiece&) = default;
};

/// What goes to the printer as one document: lines of one size, each of pieces at the same height.
struct PrintJob {
  std::string title;  ///< as the printer's queue names it
  int points = 10;    ///< size of the letters
  std::vector<std::vector<PrintedPiece>> lines;
};

/// The system's printer. It breaks pages where they are full.
class Printer {
 public:
  virtual ~Printer() = default;
  /// Prints the document, or leaves it when the operator decides so. Throws Error when the printer, or the file printed
  /// into, doesn't take it.
  virtual void Print(const PrintJob& job) = 0;

  /// A machine without a printer: what is printed there goes nowhere.
  static Printer& None();
};

}  // namespace zrt
