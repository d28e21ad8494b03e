#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zrt::tools {

/// Where a product stands on the touch panels, and who sells it.
enum class Group {
  kHotDrinks,
  kSoftDrinks,
  kBeer,
  kWine,
  kSpirits,
  kCigarettes,
  kStarters,
  kSoups,
  kMains,
  kSides,
  kBakery,
  kDesserts,
  kByWeight,
  kServices,
  kShop,
};

struct Product {
  int cod = 0;
  std::string name;
  std::int64_t price = 0;  ///< hundredths of money
  Group group = Group::kShop;
  std::string barcode = "0";  ///< "0" for none
  int tax = 1;                ///< rate number in the fiscal printer
  int category = 0;           ///< discount category; kNoDiscount gets none
  int excise = 0;             ///< 1 alcohol, 2 cigarettes
  int location = 0;           ///< 0 bar, k kitchen, k*10+j workshop
  int scale_code = 0;         ///< on the receipt-printing scales, 0 for a product not weighed
  int parts = 0;              ///< of a fractional product, 0 for others
  int portion = 0;            ///< millilitres
  bool service = false;       ///< keeps no stock
  std::string ukt;            ///< classification code, digits only
};

inline constexpr int kNoDiscount = 9;

/// The catalogue of the demonstration shop: the dishes and drinks of its café, the same at any size, and as many goods
/// of its shop as bring it to `count` products (at least the café's). Ordered by code; codes are unique.
std::vector<Product> MakeCatalogue(int count);

/// A valid EAN-13 for running number `number`.
std::string MakeBarcode(int number);

}  // namespace zrt::tools
