#include "catalogue.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace zrt::tools {
namespace {

/// What the products of a group have in common.
struct GroupRule {
  Group group;
  int location, tax, category, excise;
  const char* ukt;
};

constexpr std::array kGroups = {
    GroupRule{Group::kHotDrinks, 0, 1, 1, 0, ""},
    GroupRule{Group::kSoftDrinks, 0, 1, 1, 0, "2202100000"},
    GroupRule{Group::kBeer, 0, 2, kNoDiscount, 1, "2203000100"},
    GroupRule{Group::kWine, 0, 2, 4, 1, "2204219700"},
    GroupRule{Group::kSpirits, 0, 2, kNoDiscount, 1, "2208601100"},
    GroupRule{Group::kCigarettes, 0, 3, kNoDiscount, 2, "2402209020"},
    GroupRule{Group::kStarters, 11, 1, 2, 0, ""},
    GroupRule{Group::kSoups, 12, 1, 2, 0, ""},
    GroupRule{Group::kMains, 1, 1, 2, 0, ""},
    GroupRule{Group::kSides, 13, 1, 2, 0, ""},
    GroupRule{Group::kBakery, 21, 1, 3, 0, "1905907000"},
    GroupRule{Group::kDesserts, 2, 1, 3, 0, ""},
    GroupRule{Group::kByWeight, 31, 1, 5, 0, ""},
    GroupRule{Group::kServices, 3, 0, kNoDiscount, 0, ""},
    GroupRule{Group::kShop, 0, 1, 6, 0, "1806329000"},
};

struct Dish {
  Group group;
  const char* name;
  int price;        ///< whole units of money
  int portion = 0;  ///< millilitres
  int parts = 0;
};

constexpr std::array kDishes = {
    Dish{Group::kHotDrinks, "Эспрессо", 110, 30},
    Dish{Group::kHotDrinks, "Эспрессо двойной", 160, 60},
    Dish{Group::kHotDrinks, "Американо", 120, 150},
    Dish{Group::kHotDrinks, "Капучино", 170, 250},
    Dish{Group::kHotDrinks, "Капучино большой", 220, 400},
    Dish{Group::kHotDrinks, "Латте", 180, 300},
    Dish{Group::kHotDrinks, "Раф ванильный", 230, 300},
    Dish{Group::kHotDrinks, "Кофе по-восточному", 150, 100},
    Dish{Group::kHotDrinks, "Какао с маршмеллоу", 190, 300},
    Dish{Group::kHotDrinks, "Чай чёрный (чайник)", 180, 500},
    Dish{Group::kHotDrinks, "Чай зелёный (чайник)", 180, 500},
    Dish{Group::kHotDrinks, "Чай облепиховый (чайник)", 290, 600},
    Dish{Group::kHotDrinks, "Чай имбирный с мёдом", 260, 500},
    Dish{Group::kHotDrinks, "Глинтвейн безалкогольный", 240, 250},
    Dish{Group::kSoftDrinks, "Вода минеральная с газом", 90, 500},
    Dish{Group::kSoftDrinks, "Вода минеральная без газа", 90, 500},
    Dish{Group::kSoftDrinks, "Морс клюквенный", 110, 300},
    Dish{Group::kSoftDrinks, "Компот домашний", 80, 300},
    Dish{Group::kSoftDrinks, "Квас хлебный", 90, 400},
    Dish{Group::kSoftDrinks, "Лимонад \"Тархун\"", 140, 400},
    Dish{Group::kSoftDrinks, "Лимонад цитрусовый", 160, 400},
    Dish{Group::kSoftDrinks, "Сок яблочный", 110, 250},
    Dish{Group::kSoftDrinks, "Сок апельсиновый свежевыжатый", 250, 250},
    Dish{Group::kSoftDrinks, "Сок томатный", 110, 250},
    Dish{Group::kSoftDrinks, "Коктейль молочный", 210, 350},
    Dish{Group::kBeer, "Пиво светлое разливное 0,3", 130, 300},
    Dish{Group::kBeer, "Пиво светлое разливное 0,5", 190, 500},
    Dish{Group::kBeer, "Пиво тёмное разливное 0,5", 210, 500},
    Dish{Group::kBeer, "Пиво пшеничное нефильтрованное 0,5", 230, 500},
    Dish{Group::kBeer, "Сидр полусухой 0,5", 240, 500},
    Dish{Group::kWine, "Вино красное сухое, бокал", 280, 150},
    Dish{Group::kWine, "Вино белое сухое, бокал", 280, 150},
    Dish{Group::kWine, "Вино розовое, бокал", 290, 150},
    Dish{Group::kWine, "Вино красное сухое, бутылка", 1350, 750},
    Dish{Group::kWine, "Вино белое сухое, бутылка", 1350, 750},
    Dish{Group::kWine, "Игристое брют, бутылка", 1600, 750},
    Dish{Group::kWine, "Вермут", 220, 100},
    Dish{Group::kSpirits, "Водка", 120, 50},
    Dish{Group::kSpirits, "Водка особая", 160, 50},
    Dish{Group::kSpirits, "Коньяк три звезды", 220, 50},
    Dish{Group::kSpirits, "Коньяк пять звёзд", 320, 50},
    Dish{Group::kSpirits, "Виски", 340, 50},
    Dish{Group::kSpirits, "Ром тёмный", 310, 50},
    Dish{Group::kSpirits, "Настойка на клюкве", 130, 50},
    Dish{Group::kSpirits, "Настойка хреновая", 130, 50},
    Dish{Group::kSpirits, "Ликёр кофейный", 240, 50},
    Dish{Group::kCigarettes, "Сигареты \"Беломор\"", 180},
    Dish{Group::kCigarettes, "Сигареты \"Северные\" синие", 210},
    Dish{Group::kCigarettes, "Сигареты \"Северные\" тонкие", 215},
    Dish{Group::kStarters, "Салат \"Оливье\" с телятиной", 290},
    Dish{Group::kStarters, "Салат \"Цезарь\" с курицей", 390},
    Dish{Group::kStarters, "Салат \"Цезарь\" с креветками", 490},
    Dish{Group::kStarters, "Салат греческий", 350},
    Dish{Group::kStarters, "Салат овощной", 230},
    Dish{Group::kStarters, "Винегрет", 190},
    Dish{Group::kStarters, "Сельдь под шубой", 270},
    Dish{Group::kStarters, "Сельдь с картофелем", 310},
    Dish{Group::kStarters, "Холодец с хреном", 280},
    Dish{Group::kStarters, "Язык отварной", 390},
    Dish{Group::kStarters, "Ассорти солений", 320},
    Dish{Group::kStarters, "Ассорти мясное", 590},
    Dish{Group::kStarters, "Ассорти сырное", 620},
    Dish{Group::kStarters, "Икра кабачковая", 170},
    Dish{Group::kStarters, "Гренки с чесноком", 180},
    Dish{Group::kSoups, "Борщ с пампушкой", 290},
    Dish{Group::kSoups, "Щи из квашеной капусты", 260},
    Dish{Group::kSoups, "Солянка сборная мясная", 340},
    Dish{Group::kSoups, "Уха из трёх рыб", 380},
    Dish{Group::kSoups, "Окрошка на квасе", 270},
    Dish{Group::kSoups, "Суп куриный с лапшой", 230},
    Dish{Group::kSoups, "Крем-суп грибной", 310},
    Dish{Group::kSoups, "Крем-суп тыквенный", 280},
    Dish{Group::kMains, "Котлета по-киевски", 420},
    Dish{Group::kMains, "Бефстроганов с пюре", 490},
    Dish{Group::kMains, "Жаркое в горшочке", 450},
    Dish{Group::kMains, "Голубцы домашние", 360},
    Dish{Group::kMains, "Пельмени сибирские", 340},
    Dish{Group::kMains, "Вареники с картофелем", 280},
    Dish{Group::kMains, "Вареники с вишней", 290},
    Dish{Group::kMains, "Стейк из свинины", 520},
    Dish{Group::kMains, "Стейк из сёмги", 790},
    Dish{Group::kMains, "Судак по-польски", 560},
    Dish{Group::kMains, "Утка с яблоками", 680},
    Dish{Group::kMains, "Цыплёнок табака", 540},
    Dish{Group::kMains, "Бургер с говядиной", 430},
    Dish{Group::kMains, "Шашлык из свинины", 470},
    Dish{Group::kMains, "Шашлык из баранины", 590},
    Dish{Group::kMains, "Люля-кебаб", 440},
    Dish{Group::kMains, "Плов", 360},
    Dish{Group::kMains, "Бизнес-ланч", 350},
    Dish{Group::kMains, "Омлет с сыром", 220},
    Dish{Group::kMains, "Сырники со сметаной", 260},
    Dish{Group::kMains, "Блины с икрой", 480},
    Dish{Group::kMains, "Блины с мясом", 260},
    Dish{Group::kSides, "Картофель фри", 160},
    Dish{Group::kSides, "Картофель по-деревенски", 170},
    Dish{Group::kSides, "Пюре картофельное", 130},
    Dish{Group::kSides, "Рис с овощами", 140},
    Dish{Group::kSides, "Гречка с грибами", 150},
    Dish{Group::kSides, "Овощи на гриле", 240},
    Dish{Group::kSides, "Соус тартар", 50},
    Dish{Group::kSides, "Сметана", 40},
    Dish{Group::kSides, "Хлебная корзинка", 90},
    Dish{Group::kBakery, "Пирожок с капустой", 70},
    Dish{Group::kBakery, "Пирожок с мясом", 90},
    Dish{Group::kBakery, "Пирожок с яблоком", 70},
    Dish{Group::kBakery, "Круассан", 130},
    Dish{Group::kBakery, "Булочка с корицей", 110},
    Dish{Group::kBakery, "Ватрушка", 90},
    Dish{Group::kBakery, "Хачапури", 340},
    Dish{Group::kBakery, "Пицца \"Маргарита\"", 480, 0, 8},
    Dish{Group::kBakery, "Пицца мясная", 590, 0, 8},
    Dish{Group::kBakery, "Пирог с рыбой", 900, 0, 6},
    Dish{Group::kDesserts, "Торт \"Наполеон\"", 1600, 0, 10},
    Dish{Group::kDesserts, "Торт \"Медовик\"", 1500, 0, 10},
    Dish{Group::kDesserts, "Торт \"Прага\"", 1700, 0, 12},
    Dish{Group::kDesserts, "Чизкейк", 290},
    Dish{Group::kDesserts, "Эклер", 150},
    Dish{Group::kDesserts, "Мороженое, шарик", 90},
    Dish{Group::kDesserts, "Мороженое с фруктами", 240},
    Dish{Group::kDesserts, "Яблоко печёное с мёдом", 220},
    Dish{Group::kByWeight, "Салат из капусты (вес)", 320},
    Dish{Group::kByWeight, "Салат из моркови (вес)", 340},
    Dish{Group::kByWeight, "Котлеты домашние (вес)", 690},
    Dish{Group::kByWeight, "Курица гриль (вес)", 520},
    Dish{Group::kByWeight, "Печенье песочное (вес)", 480},
    Dish{Group::kByWeight, "Конфеты шоколадные (вес)", 760},
    Dish{Group::kByWeight, "Яблоки (вес)", 140},
    Dish{Group::kByWeight, "Мандарины (вес)", 190},
    Dish{Group::kServices, "Доставка по городу", 250},
    Dish{Group::kServices, "Пробковый сбор", 300},
    Dish{Group::kServices, "Музыкальное обслуживание", 150},
    Dish{Group::kServices, "Аренда зала, час", 2500},
    Dish{Group::kServices, "Комплимент от шеф-повара", 0},
};

struct ShopKind {
  const char* name;
  const char* unit;  ///< of the pack sizes
  int price;         ///< of the smallest pack, whole units of money
};

constexpr std::array kShopKinds = {
    ShopKind{"Шоколад молочный", "г", 95},     ShopKind{"Шоколад горький", "г", 110},
    ShopKind{"Печенье сахарное", "г", 65},     ShopKind{"Вафли сливочные", "г", 80},
    ShopKind{"Зефир ванильный", "г", 120},     ShopKind{"Мармелад фруктовый", "г", 115},
    ShopKind{"Карамель ассорти", "г", 70},     ShopKind{"Халва подсолнечная", "г", 90},
    ShopKind{"Чай чёрный байховый", "г", 130}, ShopKind{"Чай зелёный листовой", "г", 150},
    ShopKind{"Кофе молотый", "г", 310},        ShopKind{"Кофе растворимый", "г", 280},
    ShopKind{"Сок мультифрукт", "мл", 85},     ShopKind{"Нектар персиковый", "мл", 90},
    ShopKind{"Вода питьевая", "мл", 40},       ShopKind{"Напиток газированный", "мл", 75},
    ShopKind{"Чипсы картофельные", "г", 105},  ShopKind{"Сухарики ржаные", "г", 45},
    ShopKind{"Орешки солёные", "г", 95},       ShopKind{"Семечки жареные", "г", 60},
    ShopKind{"Мёд цветочный", "г", 260},       ShopKind{"Варенье клубничное", "г", 170},
    ShopKind{"Крупа гречневая", "г", 85},      ShopKind{"Макароны спиральки", "г", 75},
    ShopKind{"Масло подсолнечное", "мл", 130}, ShopKind{"Консервы рыбные", "г", 140},
};

constexpr std::array kMakers = {
    "Рассвет",    "Родник",   "Лакомка", "Берёзка", "Сударушка", "Уралочка", "Волжанка", "Снежинка", "Ромашка",
    "Радуга",     "Теремок",  "Купец",   "Ярмарка", "Добрыня",   "Околица",  "Заречье",  "Полянка",  "Лукошко",
    "Самобранка", "Светлица", "Хуторок", "Зорька",  "Кудесница", "Верба",    "Калинка",  "Посад",    "Изобилие",
};

constexpr std::array kPackSizes = {50,   90,   100,  150,  200,  250,  300,  330,  350,  400,
                                   450,  500,  600,  700,  750,  800,  900,  930,  1000, 1200,
                                   1250, 1500, 1750, 1800, 2000, 2500, 3000, 3500, 4000, 5000};

constexpr int kFirstShopCode = 1001;

const GroupRule& RuleOf(Group group) {
  return *std::find_if(kGroups.begin(), kGroups.end(), [group](const GroupRule& rule) { return rule.group == group; });
}

Product FromRule(const GroupRule& rule) {
  Product product;
  product.group = rule.group;
  product.location = rule.location;
  product.tax = rule.tax;
  product.category = rule.category;
  product.excise = rule.excise;
  product.ukt = rule.ukt;
  return product;
}

Product MakeDish(const Dish& dish, int cod) {
  Product product = FromRule(RuleOf(dish.group));
  product.cod = cod;
  product.name = dish.name;
  product.price = std::int64_t{dish.price} * 100;
  product.portion = dish.portion;
  product.parts = dish.parts;
  product.service = dish.group == Group::kServices;
  if (dish.group == Group::kByWeight) product.scale_code = cod;
  if (dish.group == Group::kCigarettes) product.barcode = MakeBarcode(cod);
  // Three workshops share what the two kitchens of a café cook; the third kitchen keeps the name that it came with.
  if (dish.group == Group::kMains && cod % 3 == 0) product.location = 22;
  return product;
}

/// The `number`-th article of the shop: first one pack of every kind and maker, then the next pack.
Product MakeShopGood(int number) {
  const int kinds = static_cast<int>(kShopKinds.size());
  const int makers = static_cast<int>(kMakers.size());
  const ShopKind& kind = kShopKinds[static_cast<std::size_t>(number % kinds)];
  const char* maker = kMakers[static_cast<std::size_t>(number / kinds % makers)];
  const std::size_t pack = static_cast<std::size_t>(number / kinds / makers) % kPackSizes.size();
  Product product = FromRule(RuleOf(Group::kShop));
  product.cod = kFirstShopCode + number;
  product.name = fmt::format("{} \"{}\" {}{}", kind.name, maker, kPackSizes[pack], kind.unit);
  product.price = (kind.price + static_cast<int>(pack) * kind.price / 4) * 100 + number % 10 * 10;
  product.barcode = MakeBarcode(product.cod);
  return product;
}

}  // namespace

std::string MakeBarcode(int number) {
  const std::string digits = fmt::format("460{:09}", number);
  int sum = 0;
  for (std::size_t i = 0; i < digits.size(); ++i) sum += (digits[i] - '0') * (i % 2 == 0 ? 1 : 3);
  return digits + std::to_string((10 - sum % 10) % 10);
}

std::vector<Product> MakeCatalogue(int count) {
  std::vector<Product> catalogue;
  for (const Dish& dish : kDishes) catalogue.push_back(MakeDish(dish, static_cast<int>(catalogue.size()) + 1));
  for (int number = 0; static_cast<int>(catalogue.size()) < count; ++number) catalogue.push_back(MakeShopGood(number));
  return catalogue;
}

}  // namespace zrt::tools
