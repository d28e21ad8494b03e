#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace zrt {

/// What the eight kinds of stock document differ in as a whole. A kind's number is its place in the table, and it is
/// the same everywhere: DOCUMENT.TYP, REGISTR.DOCTYP and the form code under which picked products are delivered.
struct DocumentKind {
  std::uint8_t number;
  const char* form;
  const char* dtype;          ///< JOURNAL.DTYPE, compared exactly
  const char* new_caption;    ///< window title of a new document
  const char* saved_caption;  ///< what the title of a saved one begins with
  const char* open_already;   ///< refusal of a second document from the menu
  const char* open_already_in_journal;
  std::uint8_t journal_looks_at;  ///< the kind whose open document makes the journal refuse
  bool has_klient;                ///< TextKlient is there
  /// Sign of KOL and SUMM in the register; 0 where the lines have signs of their own or no rows there.
  int sign;
  /// Products that keep no stock are stored with REZ=1 and never post. All other kinds post them like any other.
  bool knows_no_stock;
};

namespace kind {
inline constexpr std::uint8_t kDailyReport = 0;
inline constexpr std::uint8_t kIncoming = 1;
inline constexpr std::uint8_t kOutgoing = 2;
inline constexpr std::uint8_t kWriteOff = 3;
inline constexpr std::uint8_t kInventory = 4;
inline constexpr std::uint8_t kPriceChange = 5;
inline constexpr std::uint8_t kTransferIn = 6;
inline constexpr std::uint8_t kTransferOut = 7;
}  // namespace kind

// The journal asks the incoming invoice whether an outgoing one is open: an open incoming invoice keeps outgoing ones
// shut. The shops have always worked with it so.
inline constexpr std::array<DocumentKind, 8> kDocumentKinds = {{
    {kind::kDailyReport, "frmDocDO", "Дневной Отчёт", "ДНЕВНОЙ ОТЧЁТ - НОВЫЙ ДОКУМЕНТ", "ДНЕВНОЙ ОТЧЁТ №",
     "существует открытый Дневной Отчёт!", "существует открытый Дневной Отчёт!", kind::kDailyReport, false, -1, true},
    {kind::kIncoming, "frmDocPrN", "Приходная накладная", "ПРИХОДНАЯ НАКЛАДНАЯ - НОВЫЙ ДОКУМЕНТ",
     "ПРИХОДНАЯ НАКЛАДНАЯ №", "существует открытая Приходная Накладная!", "существует открытая Приходная накладная!",
     kind::kIncoming, true, 1, false},
    {kind::kOutgoing, "frmDocRhN", "Расходная накладная", "РАСХОДНАЯ НАКЛАДНАЯ - НОВЫЙ ДОКУМЕНТ",
     "РАСХОДНАЯ НАКЛАДНАЯ №", "существует открытая Расходная Накладная!", "существует открытая Расходная накладная!",
     kind::kIncoming, true, -1, true},
    {kind::kWriteOff, "frmDocSP", "Списание товара", "СПИСАНИЕ ТОВАРА - НОВЫЙ ДОКУМЕНТ", "СПИСАНИЕ ТОВАРА №",
     "существует открытый документ Списание!", "существует открытый документ Списание!", kind::kWriteOff, false, -1,
     false},
    {kind::kInventory, "frmDocIN", "ИНВЕНТАРИЗАЦИЯ", "ИНВЕНТАРИЗАЦИЯ - НОВЫЙ ДОКУМЕНТ", "ИНВЕНТАРИЗАЦИЯ №",
     "существует открытый документ Инвентаризация!", "существует открытый документ Инвентаризация!", kind::kInventory,
     false, 0, false},
    {kind::kPriceChange, "frmDocPRC", "Переоценка", "ПЕРЕОЦЕНКА - НОВЫЙ ДОКУМЕНТ", "ПЕРЕОЦЕНКА №",
     "существует открытый документ Переоценка!", "существует открытый документ Переоценка!", kind::kPriceChange, false,
     0, false},
    {kind::kTransferIn, "frmDocPERplus", "Перемещение ПРИХОД", "ПЕРЕМЕЩЕНИЕ ПРИХОД - НОВЫЙ ДОКУМЕНТ",
     "ПЕРЕМЕЩЕНИЕ ПРИХОД №", "существует открытое Перемещение Приход!",
     "существует открытый документ Перемещение Приход!", kind::kTransferIn, false, 1, false},
    {kind::kTransferOut, "frmDocPERmin", "Перемещение РАСХОД", "ПЕРЕМЕЩЕНИЕ РАСХОД - НОВЫЙ ДОКУМЕНТ",
     "ПЕРЕМЕЩЕНИЕ РАСХОД №", "существует открытое Перемещение Расход!",
     "существует открытый документ Перемещение Расход!", kind::kTransferOut, false, -1, false},
}};

static_assert([] {
  for (std::size_t i = 0; i < kDocumentKinds.size(); ++i) {
    if (kDocumentKinds[i].number != i) return false;
  }
  return true;
}());

}  // namespace zrt
