#pragma once

#include <string>
#include <string_view>

#include "core/regional_format.h"

namespace zrt {

/// The business day: it begins at a stored hour, so a night's sales belong to the evening that they began in.
struct Shift {
  std::string From;      ///< 'yyyy-mm-dd hh:00:00'; a line stamped exactly then falls outside (ranges are strict)
  std::string To;        ///< 'yyyy-mm-dd hh:59:59'; likewise outside
  std::string TimeText;  ///< 'hh:00:00'
};

/// The period of the shift that begins on `date_text` (dd.mm.yyyy) at the hour `hour_text` (0 to 23; anything that is
/// no number counts as 0, and then the shift is the calendar day). A `date_text` that is no date leaves `shift` as it
/// was.
void CalcShiftPeriod(std::string_view date_text, std::string_view hour_text, const RegionalFormat& format,
                     Shift& shift);

}  // namespace zrt
