#include "reports/kat_names.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/text.h"
#include "reports/report_text.h"

namespace zrt {

namespace {

/// Where a kitchen's text stands in the settings: CONST, row `cod`, column `column`.
struct KatNameColumn {
  int cod;
  std::string_view column;
};
constexpr std::array<KatNameColumn, KatNames::kKitchens> kColumns = {{{5, "N9"}, {5, "N10"}, {6, "N10"}}};

/// The names that stand when only some of a kitchen's four are given: "Кухня1", "Кухня1 Цех2".
std::string DefaultName(int kitchen, int workshop) {
  return workshop == 0 ? fmt::format("Кухня{}", kitchen) : fmt::format("Кухня{} Цех{}", kitchen, workshop);
}

std::string WithoutLeadingBlanks(const std::string& text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

bool AllEmpty(const KatNames::FourNames& names) {
  return std::all_of(names.begin(), names.end(), [](const std::string& name) { return name.empty(); });
}

}  // namespace

std::optional<std::string> KatNames::Load(Session& session) {
  const Recordset stored = session.ReadOne("SELECT N8,N9,N10 FROM CONST WHERE COD=5");
  Take(1, stored.Field(1));
  Take(2, stored.Field(2));
  ReadThird(session);
  return stored.IsNull(0) ? std::nullopt : std::optional(stored.Field(0).Text());
}

void KatNames::Reload(Session& session) {
  const Recordset stored = session.ReadOne("SELECT N9,N10 FROM CONST WHERE COD=5");
  Take(1, stored.Field(0));
  Take(2, stored.Field(1));
  ReadThird(session);
}

void KatNames::ReadThird(Session& session) {
  const Recordset stored = session.ReadOne("SELECT N10 FROM CONST WHERE COD=6");
  Take(3, stored.Field(0));
}

void KatNames::Take(int kitchen, const Cell& stored) {
  if (stored.IsNull()) {
    names_.at(Index(kitchen)).fill({});
  } else {
    Cut(kitchen, stored.Text());
  }
}

void KatNames::Cut(int kitchen, std::string_view stored) {
  std::size_t start = 1;
  for (int workshop = 0; workshop <= kWorkshops; ++workshop) {
    names_.at(Index(kitchen)).at(Index(workshop)) = PadRightTo(Mid(stored, start, Width(workshop)), Width(workshop));
    start += Width(workshop);
  }
}

KatNames::FourNames KatNames::Completed(int kitchen, FourNames names) {
  if (AllEmpty(names)) return names;
  for (int workshop = 0; workshop <= kWorkshops; ++workshop) {
    std::string& name = names.at(Index(workshop));
    if (Trim(name).empty()) name = DefaultName(kitchen, workshop);
    name = PadRightTo(WithoutLeadingBlanks(name), Width(workshop));
  }
  return names;
}

void KatNames::Store(Session& session, int kitchen, const FourNames& names) {
  const KatNameColumn& where = kColumns.at(Index(kitchen - 1));
  if (AllEmpty(names)) {
    return session.Write(fmt::format("UPDATE CONST SET {}=NULL WHERE COD={}", where.column, where.cod));
  }
  std::string text;
  for (int workshop = 0; workshop <= kWorkshops; ++workshop) text += Left(names.at(Index(workshop)), Width(workshop));
  session.Write(fmt::format("UPDATE CONST SET {}='{}' WHERE COD={}", where.column, text, where.cod));
}

std::string KatNames::Label(int kitchen, int workshop) const {
  const std::string& name = Name(kitchen, workshop);
  if (workshop == 0) return name.empty() ? fmt::format("Кухня{}               ", kitchen) : name + "       ";
  return name.empty() ? fmt::format("Кухня{}-{}             ", kitchen, workshop) : name + "         ";
}

std::vector<Place> KatNames::Places() const {
  std::vector<Place> places;
  for (int kitchen = 1; kitchen <= kKitchens; ++kitchen) {
    for (int workshop = 0; workshop <= kWorkshops; ++workshop) {
      places.push_back({workshop == 0 ? kitchen : kitchen * 10 + workshop, Label(kitchen, workshop)});
    }
  }
  return places;
}

}  // namespace zrt
