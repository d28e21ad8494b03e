// zrt_check: reads a shop's database and tells in Russian what does not fit together. Changes nothing.

#include <iostream>
#include <map>
#include <string>
#include <string_view>

#include "check/shop_check.h"
#include "core/advice.h"
#include "core/errors.h"
#include "core/session.h"

namespace {

constexpr std::string_view kUsage =
    "Проверка базы магазина: что в ней не сходится. Ничего не меняет.\n"
    "  zrt_check [--host АДРЕС] [--user УЧЁТНАЯ_ЗАПИСЬ] [--database СХЕМА]\n"
    "  zrt_check --version | --help\n"
    "Код завершения: 0 - всё сходится, 1 - есть ошибки, 2 - проверить не удалось.\n";

constexpr int kWhole = 0, kBroken = 1, kNotLooked = 2;

}  // namespace

int main(int argc, char** argv) {
  const std::string asked = argc == 2 ? argv[1] : "";
  if (asked == "--version" || asked == "--help") {
    std::cout << (asked == "--help" ? kUsage : std::string_view("zrt_check " ZRT_VERSION "\n"));
    return kWhole;
  }
  zrt::DatabaseAddress shop{ZRT_DB_HOST, ZRT_DB_USER, ZRT_DB_NAME};
  const std::map<std::string, std::string*> options = {
      {"--host", &shop.host}, {"--user", &shop.account}, {"--database", &shop.schema}};
  for (int i = 1; i < argc; i += 2) {
    const auto option = options.find(argv[i]);
    if (option == options.end() || i + 1 == argc) {
      std::cerr << kUsage;
      return kNotLooked;
    }
    *option->second = argv[i + 1];
  }
  try {
    zrt::Connection connection;
    connection.Open(zrt::MainConnectionString(shop));
    const zrt::check::Findings findings = zrt::check::CheckShop(connection);
    std::cout << "База " << shop.schema << " на " << shop.host << "\n" << findings.Report();
    return findings.IsWhole() ? kWhole : kBroken;
  } catch (const zrt::DatabaseError& error) {
    constexpr int kNoColumn = 1054;
    constexpr int kNoTable = 1146;
    std::string_view advice = zrt::AdviceOn(error);
    if (advice.empty() && (error.Native() == kNoColumn || error.Native() == kNoTable)) {
      advice = "В базе нет таблиц касс, или программа с ней ещё не запускалась. Установка, шаги 3 и 4.";
    }
    std::cerr << "Проверить не удалось: " << error.what() << "\n" << advice << "\n";
    return kNotLooked;
  } catch (const std::exception& error) {
    std::cerr << "Проверить не удалось: " << error.what() << "\n";
    return kNotLooked;
  }
}
