#pragma once

#include "platform/printer.h"

class QPrinter;

namespace zrt {

/// Shows a document as it will be on paper; from there the operator sends it to a printer of the system or into a PDF
/// file, the only way where there is no printer.
class QtPrinter final : public Printer {
 public:
  void Print(const PrintJob& job) override;
};

/// Draws the document on the pages of `paper`, with half an inch left free all around. The face is of fixed pitch, and
/// so narrow that a piece of a report line ends where the next begins. Throws Error when `paper` doesn't take them.
void PaintJob(const PrintJob& job, QPrinter& paper);

}  // namespace zrt
