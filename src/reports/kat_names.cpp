#include "reports/kat_names.h"

#include "core/text.h"
#include "reports/report_text.h"

namespace zrt {

void KatNames::Cut(int kitchen, std::string_view stored) {
  std::size_t start = 1;
  for (int workshop = 0; workshop <= kWorkshops; ++workshop) {
    const std::size_t width = workshop == 0 ? kKitchenWidth : kWorkshopWidth;
    names_.at(Index(kitchen)).at(Index(workshop)) = PadRightTo(Mid(stored, start, width), width);
    start += width;
  }
}

void KatNames::Clear(int kitchen) {
  names_.at(Index(kitchen)).fill({});
}

std::string KatNames::DefaultName(int kitchen, int workshop) {
  return workshop == 0 ? fmt::format("Кухня{}", kitchen) : fmt::format("Кухня{} Цех{}", kitchen, workshop);
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
