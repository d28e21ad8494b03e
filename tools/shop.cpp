#include "shop.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace zrt::tools {
namespace {

struct Waiter {
  int cod;
  const char* name;
  int access;
};

constexpr std::array kWaiters = {
    Waiter{1, "Анна Соколова", 1},   Waiter{2, "Борис Зайцев", 1},  Waiter{3, "Вера Лебедева", 1},
    Waiter{4, "Григорий Орлов", 1},  Waiter{5, "Дарья Котова", 1},  Waiter{6, "Евгений Бобров", 1},
    Waiter{7, "Жанна Соловьёва", 2}, Waiter{8, "Иван Медведев", 2}, Waiter{20, "Старший смены", 3},
    Waiter{21, "Администратор", 9},
};

constexpr int kLeftTheShop = 9;

constexpr std::array kCashierNames = {"Кузнецова Ольга", "Мельникова Татьяна", "Ткаченко Сергей"};

/// One rule of a kind of card: what it gives on a category once the card has accumulated more than `total`.
struct KindRule {
  int card, category, percent, total;
};

constexpr std::array kKindRules = {
    KindRule{101, 1, 5, 0},       KindRule{101, 2, 5, 0},  KindRule{101, 3, 5, 0},       KindRule{101, 6, 3, 0},
    KindRule{101, 2, 7, 500000},  KindRule{102, 1, 10, 0}, KindRule{102, 2, 10, 0},      KindRule{102, 3, 10, 0},
    KindRule{102, 2, 15, 300000}, KindRule{103, 6, 7, 0},  KindRule{103, 6, 10, 200000},
};

constexpr std::array kCardKinds = {3, 5, 5, 7, 10, 10, 15, 20, 101, 101, 102, 103};
constexpr int kCardCount = 80;

constexpr std::array kSurnames = {"Иванов",  "Петрова", "Сидоров", "Морозова", "Волков",  "Новикова",
                                  "Фёдоров", "Егорова", "Никитин", "Орлова",   "Захаров", "Щербакова",
                                  "Лыткин",  "Юдина",   "Яковлев", "Цветкова", "Хохлов",  "Эйхман"};
constexpr std::array kStreets = {"Садовая", "Лесная", "Мира", "Полевая", "Школьная", "Речная"};

struct Panel {
  int number;  ///< 1 to 12 of the first menu, 13 to 24 of the second
  const char* name;
  std::array<Group, 2> groups;  ///< the same twice for one group
};

constexpr std::array kPanels = {
    Panel{1, "Горячие и прохладительные", {Group::kHotDrinks, Group::kSoftDrinks}},
    Panel{2, "Пиво и вино", {Group::kBeer, Group::kWine}},
    Panel{3, "Крепкое и сигареты", {Group::kSpirits, Group::kCigarettes}},
    Panel{4, "Закуски", {Group::kStarters, Group::kStarters}},
    Panel{5, "Супы и горячее", {Group::kSoups, Group::kMains}},
    Panel{6, "Гарниры", {Group::kSides, Group::kSides}},
    Panel{7, "Выпечка и десерты", {Group::kBakery, Group::kDesserts}},
    Panel{8, "Кулинария на вес", {Group::kByWeight, Group::kByWeight}},
    Panel{9, "Магазин", {Group::kShop, Group::kShop}},
    Panel{10, "Услуги", {Group::kServices, Group::kServices}},
    Panel{13, "Веранда: напитки", {Group::kSoftDrinks, Group::kBeer}},
    Panel{14, "Веранда: гриль", {Group::kMains, Group::kSides}},
};

constexpr int kKeysPerPanel = 90;
constexpr int kKeysPerLevel = 30;

/// Kitchen and workshop names share one text of 14 and three times 12 characters.
constexpr const char* kKitchen1 = "Горячий цех   Холодный цехСуповой     Гарниры     ";
constexpr const char* kKitchen2 = "Кондитерская  Пекарня     Гриль       Кухня2 Цех3 ";

void PutKey(ScriptWriter& script, int panel, int place, int cod) {
  script.Statement(fmt::format("UPDATE HOTKEYS SET CODE={} WHERE ID={}", cod, panel * 100 + place));
}

}  // namespace

std::vector<int> WaiterCodes() {
  std::vector<int> codes;
  for (const Waiter& waiter : kWaiters) {
    if (waiter.access < 3) codes.push_back(waiter.cod);
  }
  codes.push_back(kLeftTheShop);
  return codes;
}

std::vector<Card> MakeCards() {
  std::vector<Card> cards;
  for (int number = 1; number <= kCardCount; ++number) {
    cards.push_back({number, kCardKinds[static_cast<std::size_t>(number) % kCardKinds.size()]});
  }
  return cards;
}

int CardPercent(const Card& card, int category) {
  if (category == kNoDiscount) return 0;
  if (card.kind <= 100) return card.kind;
  int percent = 0;
  for (const KindRule& rule : kKindRules) {
    if (rule.card == card.kind && rule.category == category && (rule.total == 0 || card.total > rule.total)) {
      percent = std::max(percent, rule.percent);
    }
  }
  return percent;
}

void WriteStaff(ScriptWriter& script, bool upgraded) {
  for (const Waiter& waiter : kWaiters) {
    script.Row("KLIENT", "COD,NAME,TOTAL,SUM1,DATETIME,NUM",
               fmt::format("{},{},0,0,'7001{:08}',{}", waiter.cod, Quoted(waiter.name), waiter.cod, waiter.access));
  }
  for (int i = 0; i < kCashiers; ++i) {
    const int cod = kFirstCashier + i;
    const std::string name = Quoted(kCashierNames[static_cast<std::size_t>(i)]);
    if (upgraded) {
      script.Row("PERSON", "ID,REZ,COD,NAME", fmt::format("{},'7002{:08}',{},{}", i + 1, cod, cod, name));
    } else {
      script.Row("PERSON", "COD,NAME", fmt::format("{},{}", cod, name));
    }
  }
}

void WriteCards(ScriptWriter& script, const std::vector<Card>& cards, bool upgraded, Random& random) {
  for (std::size_t i = 0; i < kKindRules.size(); ++i) {
    const KindRule& rule = kKindRules[i];
    script.Row("TOTALSKID", "ID,CARD,TOV,PROZ,TOTAL",
               fmt::format("{},{},{},{},{}", i + 1, rule.card, rule.category, rule.percent, rule.total));
  }
  for (const Card& card : cards) {
    const std::string barcode = fmt::format("29{:010}", card.number * 137);
    script.Row("DISCOUNT", "BARCODE,TOTAL,LASTCASH,PROZ,REZ",
               fmt::format("'{}',{},'{}',{},{}", barcode, card.total, card.last, card.kind, card.number));
    // Two of three holders have told who they are.
    if (!upgraded || card.number % 3 == 0) continue;
    const std::string name = fmt::format("{} {}.", random.Pick(kSurnames), "А");
    script.Row("DKHOLDER", "ID,CARD,NAME,FNAME,ADRES,TEL",
               fmt::format("{},'{}',{},{},'{} {}-{}','+7 900 {:03}-{:02}-{:02}'", card.number, barcode, Quoted(name),
                           Quoted(name), random.Pick(kStreets), random.Between(1, 90), random.Between(1, 60),
                           random.Below(1000), random.Below(100), random.Below(100)));
  }
}

void WritePanels(ScriptWriter& script, const std::vector<Product>& catalogue) {
  for (const Panel& panel : kPanels) {
    script.Statement(fmt::format("UPDATE CONST SET T9={} WHERE COD={}", Quoted(panel.name), panel.number));
    int place = 0;
    for (const Product& product : catalogue) {
      const bool fits = product.group == panel.groups[0] || product.group == panel.groups[1];
      if (fits && place < kKeysPerPanel) PutKey(script, panel.number, ++place, product.cod);
    }
  }
  // A panel that nobody named, and the two mistakes that the editor marks: a product that has left the catalogue and
  // one that stands twice on a level.
  script.Statement("UPDATE CONST SET T9='' WHERE COD=11");
  script.Statement("UPDATE CONST SET T9=NULL WHERE COD=12");
  PutKey(script, 10, kKeysPerLevel - 1, 999999);
  PutKey(script, 10, kKeysPerLevel, catalogue.front().cod);
  PutKey(script, 10, kKeysPerLevel - 2, catalogue.front().cod);
}

void WriteSettings(ScriptWriter& script, int mode, int hour) {
  script.Statement(
      fmt::format("UPDATE CONST SET N8={}, N9={}, N10={} WHERE COD=5", hour, Quoted(kKitchen1), Quoted(kKitchen2)));
  script.Statement(fmt::format("UPDATE CONST SET N1='Основное меню', N2='Летнее меню', N3={} WHERE COD=7", mode));
}

}  // namespace zrt::tools
