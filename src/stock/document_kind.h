#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zrt {

/// The eight kinds of stock document. A kind's number is the same everywhere: DOCUMENT.TYP, REGISTR.DOCTYP and the form
/// code under which picked products are delivered.
enum class DocType : std::uint8_t {
  kDailyReport,
  kIncoming,
  kOutgoing,
  kWriteOff,
  kInventory,
  kPriceChange,
  kTransferIn,
  kTransferOut,
};

constexpr std::uint8_t NumberOf(DocType type) {
  return static_cast<std::uint8_t>(type);
}

/// Where the lines of an open document are worked on. DOCUMENT is keyed by the kind and emptied when the window is
/// closed: the lasting copy is the register's. In the other two the lines live for good by their document's number.
enum class LinesIn { kDocument, kDocInvent, kDocPrice };

/// The column of a movement report that a kind's quantity enters.
enum class Movement {
  kIncome,
  kSales,
  kOtherOut,
  kBySign,  ///< what was found is income, what is missing went out
  kNone,    ///< no rows in the register
};

/// What is asked for a picked product.
enum class Asks {
  kQuantityAndPrice,  ///< both in turn
  kQuantity,          ///< the price is kept, "0" where there is none
  kPrice,             ///< no quantity
  kNothing,           ///< the product is a filter
  kUnknown,           ///< who takes no picked products: both are asked, nothing is offered
};

/// What becomes of a line that was picked without a price.
enum class ZeroPrice { kStays, kPurchase, kRetail };

/// What DOCUMENT.REZ holds.
enum class LineExtra { kNone, kRetail, kCard };

/// What the kinds differ in as a whole. All that asks for a kind asks here: forms, journal, register, picker, reports,
/// the load of lines from files, the check of a shop.
struct DocumentKind {
  DocType type;
  std::string_view form;
  std::string_view dtype;          ///< JOURNAL.DTYPE, compared exactly
  std::string_view new_caption;    ///< window title of a new document
  std::string_view saved_caption;  ///< what the title of a saved one begins with
  std::string_view open_already;   ///< refusal of a second document from the menu
  std::string_view open_already_in_journal;
  DocType journal_looks_at;  ///< the kind whose open document makes the journal refuse

  // The head.
  bool has_klient = false;    ///< TextKlient is there
  bool has_own_text = false;  ///< PRIM and DATEDOC are written once: the daily report's text and its shift
  // The lines.
  LinesIn lines = LinesIn::kDocument;
  LineExtra extra = LineExtra::kNone;
  Asks asks;
  bool picks_purchase = false;  ///< the picker offers the purchase price, else the retail price
  bool scans_retail = false;    ///< a scan offers the retail price, else the purchase price
  ZeroPrice zero_price = ZeroPrice::kStays;
  // The register.
  Movement movement;
  /// Sign of KOL and SUMM; 0 where the lines have signs of their own or no rows there.
  int sign;
  /// Products that keep no stock are stored with REZ=1 and never post. All other kinds post them like any other.
  bool knows_no_stock = false;
  bool no_stock_keeps_ost = false;  ///< such a product's OST at the tills stays as it was
};

// The journal asks the incoming invoice whether an outgoing one is open: an open incoming invoice keeps outgoing ones
// shut. The shops have always worked with it so. The write-off and the transfers are valued at purchase prices.
inline constexpr std::array<DocumentKind, 8> kDocumentKinds = {{
    {.type = DocType::kDailyReport,
     .form = "frmDocDO",
     .dtype = "Дневной Отчёт",
     .new_caption = "ДНЕВНОЙ ОТЧЁТ - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "ДНЕВНОЙ ОТЧЁТ №",
     .open_already = "существует открытый Дневной Отчёт!",
     .open_already_in_journal = "существует открытый Дневной Отчёт!",
     .journal_looks_at = DocType::kDailyReport,
     .has_own_text = true,
     .extra = LineExtra::kCard,
     .asks = Asks::kUnknown,
     .movement = Movement::kSales,
     .sign = -1,
     .knows_no_stock = true},
    {.type = DocType::kIncoming,
     .form = "frmDocPrN",
     .dtype = "Приходная накладная",
     .new_caption = "ПРИХОДНАЯ НАКЛАДНАЯ - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "ПРИХОДНАЯ НАКЛАДНАЯ №",
     .open_already = "существует открытая Приходная Накладная!",
     .open_already_in_journal = "существует открытая Приходная накладная!",
     .journal_looks_at = DocType::kIncoming,
     .has_klient = true,
     .extra = LineExtra::kRetail,
     .asks = Asks::kQuantityAndPrice,
     .picks_purchase = true,
     .movement = Movement::kIncome,
     .sign = 1},
    {.type = DocType::kOutgoing,
     .form = "frmDocRhN",
     .dtype = "Расходная накладная",
     .new_caption = "РАСХОДНАЯ НАКЛАДНАЯ - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "РАСХОДНАЯ НАКЛАДНАЯ №",
     .open_already = "существует открытая Расходная Накладная!",
     .open_already_in_journal = "существует открытая Расходная накладная!",
     .journal_looks_at = DocType::kIncoming,
     .has_klient = true,
     .asks = Asks::kQuantityAndPrice,
     .scans_retail = true,
     .movement = Movement::kSales,
     .sign = -1,
     .knows_no_stock = true,
     .no_stock_keeps_ost = true},
    {.type = DocType::kWriteOff,
     .form = "frmDocSP",
     .dtype = "Списание товара",
     .new_caption = "СПИСАНИЕ ТОВАРА - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "СПИСАНИЕ ТОВАРА №",
     .open_already = "существует открытый документ Списание!",
     .open_already_in_journal = "существует открытый документ Списание!",
     .journal_looks_at = DocType::kWriteOff,
     .asks = Asks::kQuantity,
     .zero_price = ZeroPrice::kPurchase,
     .movement = Movement::kOtherOut,
     .sign = -1},
    {.type = DocType::kInventory,
     .form = "frmDocIN",
     .dtype = "ИНВЕНТАРИЗАЦИЯ",
     .new_caption = "ИНВЕНТАРИЗАЦИЯ - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "ИНВЕНТАРИЗАЦИЯ №",
     .open_already = "существует открытый документ Инвентаризация!",
     .open_already_in_journal = "существует открытый документ Инвентаризация!",
     .journal_looks_at = DocType::kInventory,
     .lines = LinesIn::kDocInvent,
     .asks = Asks::kQuantity,
     .zero_price = ZeroPrice::kPurchase,
     .movement = Movement::kBySign,
     .sign = 0},
    {.type = DocType::kPriceChange,
     .form = "frmDocPRC",
     .dtype = "Переоценка",
     .new_caption = "ПЕРЕОЦЕНКА - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "ПЕРЕОЦЕНКА №",
     .open_already = "существует открытый документ Переоценка!",
     .open_already_in_journal = "существует открытый документ Переоценка!",
     .journal_looks_at = DocType::kPriceChange,
     .lines = LinesIn::kDocPrice,
     .asks = Asks::kPrice,
     .scans_retail = true,
     .zero_price = ZeroPrice::kRetail,
     .movement = Movement::kNone,
     .sign = 0},
    // Transfers move goods in and out of stock like invoices; nothing pairs the two.
    {.type = DocType::kTransferIn,
     .form = "frmDocPERplus",
     .dtype = "Перемещение ПРИХОД",
     .new_caption = "ПЕРЕМЕЩЕНИЕ ПРИХОД - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "ПЕРЕМЕЩЕНИЕ ПРИХОД №",
     .open_already = "существует открытое Перемещение Приход!",
     .open_already_in_journal = "существует открытый документ Перемещение Приход!",
     .journal_looks_at = DocType::kTransferIn,
     .asks = Asks::kQuantity,
     .zero_price = ZeroPrice::kPurchase,
     .movement = Movement::kIncome,
     .sign = 1},
    {.type = DocType::kTransferOut,
     .form = "frmDocPERmin",
     .dtype = "Перемещение РАСХОД",
     .new_caption = "ПЕРЕМЕЩЕНИЕ РАСХОД - НОВЫЙ ДОКУМЕНТ",
     .saved_caption = "ПЕРЕМЕЩЕНИЕ РАСХОД №",
     .open_already = "существует открытое Перемещение Расход!",
     .open_already_in_journal = "существует открытый документ Перемещение Расход!",
     .journal_looks_at = DocType::kTransferOut,
     .asks = Asks::kQuantity,
     .zero_price = ZeroPrice::kPurchase,
     .movement = Movement::kOtherOut,
     .sign = -1},
}};

static_assert([] {
  for (std::size_t i = 0; i < kDocumentKinds.size(); ++i) {
    if (NumberOf(kDocumentKinds[i].type) != i) return false;
  }
  return true;
}());

constexpr const DocumentKind& KindOf(DocType type) {
  return kDocumentKinds[NumberOf(type)];
}

/// The kind of this number (TYP, DOCTYP, form code), or of exactly this JOURNAL.DTYPE; nullptr when none has it.
constexpr const DocumentKind* FindKind(std::int64_t number) {
  return number >= 0 && number < std::int64_t{kDocumentKinds.size()} ? &kDocumentKinds[static_cast<std::size_t>(number)]
                                                                     : nullptr;
}
constexpr const DocumentKind* FindKind(std::string_view dtype) {
  for (const DocumentKind& kind : kDocumentKinds) {
    if (dtype == kind.dtype) return &kind;
  }
  return nullptr;
}

}  // namespace zrt
