#include "core/shift_hour.h"

#include <fmt/format.h>

namespace zrt {

std::vector<std::string> ShiftHours() {
  std::vector<std::string> hours;
  for (int hour = 0; hour < 24; ++hour) hours.push_back(std::to_string(hour));
  return hours;
}

std::optional<std::string> ReadShiftHour(Session& session) {
  const Recordset hour = session.ReadOne("SELECT N8 FROM CONST WHERE COD=5");
  if (hour.Eof() || hour.IsNull(0)) return std::nullopt;
  return hour.Field(0).Text();
}

void StoreShiftHour(Session& session, std::string_view hour) {
  session.Write(fmt::format("UPDATE CONST SET N8={} WHERE COD=5", hour));
}

}  // namespace zrt
