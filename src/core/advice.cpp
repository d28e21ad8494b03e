#include "core/advice.h"

#include <algorithm>
#include <array>

namespace zrt {

namespace {

struct Advice {
  int native;             ///< the server's or driver's number; 0: not looked at
  std::string_view says;  ///< a part of the driver's text; "": not looked at
  std::string_view text;
};

constexpr std::string_view kRefused =
    "Сервер отвечает, но не пускает эту учётную запись с этого компьютера: имя, пароль, адрес или права. Установка, "
    "шаг 2.";

constexpr std::array<Advice, 15> kAdvice = {{
    {0, "Can't open lib", "Драйвер базы данных не зарегистрирован или его файла нет. Установка, шаг 3."},
    {0, "Data source name not found", "Драйвер базы данных не зарегистрирован под нужным именем. Установка, шаг 3."},
    {0, "Driver's SQLAllocHandle", "Драйвер базы данных не подходит к этой системе. Установка, шаг 3."},
    {1193, "session_track_schema",
     "Этот драйвер не умеет работать с сервером MySQL старше 5.7.4. Нужен другой драйвер. Установка, шаг 3."},
    {2002, "", "Сервер базы данных не отвечает: выключен, другой адрес или закрыта сеть. Установка, шаг 1."},
    {2003, "", "Сервер базы данных не отвечает: выключен, другой адрес или закрыта сеть. Установка, шаг 1."},
    {2005, "", "Нет компьютера с таким именем: адрес сервера задан при сборке программы. Установка, шаг 3."},
    {1045, "", kRefused},
    {1044, "", "Учётной записи не дано прав на эту базу, или базы нет. Установка, шаг 2."},
    {1130, "", kRefused},
    {1142, "", "Учётной записи дано не всё, что нужно программе. Установка, шаг 2."},
    {1064, "TYPE=InnoDB", "Сервер новее 4.0.12: запустите программу снова и ответьте \"Нет\". Установка, шаг 4."},
    {1049, "", "На сервере нет базы с этим именем. Установка, шаг 2."},
    {1146, "CONST", "База пуста: в ней нет таблиц, с которыми работают кассы. Установка, шаг 3."},
    {1251, "", "Сервер и драйвер не сходятся в способе проверки пароля. Установка, шаг 2."},
}};

}  // namespace

std::string_view AdviceOn(const DatabaseError& error) {
  const auto fits = [&](const Advice& advice) {
    return (advice.native == 0 || advice.native == error.Native()) &&
           error.Text().find(advice.says) != std::string::npos;
  };
  const auto found = std::find_if(kAdvice.begin(), kAdvice.end(), fits);
  return found == kAdvice.end() ? std::string_view() : found->text;
}

}  // namespace zrt
