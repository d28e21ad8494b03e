#include "platform/data_link.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "core/errors.h"
#include "core/text.h"
#include "support/temporary_folder.h"

namespace zrt {
namespace {

/// As Windows saves it: UTF-16 with its mark, line ends included.
std::string Utf16(const std::u16string& text, bool big_endian) {
  std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += big_endian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

class DataLink : public testing::Test {
 protected:
  std::string Read(const std::string& bytes) {
    std::filesystem::create_directories(root_ / "C");
    std::ofstream(root_ / "C" / "r.udl", std::ios::binary) << bytes;
    return DataLinkConnection(drives_, "File name=C:\\r.udl;", "Own Driver",
                              [](const std::string& name) { return name == "kassa-dsn"; });
  }

  test::TemporaryFolder folder_;
  const std::filesystem::path& root_ = folder_.Path();
  DriveMap drives_{root_};
};

TEST_F(DataLink, ReadsWhatWindowsAndPeopleWrite) {
  const std::string kHead = "[oledb]\r\n; Everything after this line is an OLE DB initstring\r\n";
  const std::u16string kWide =
      u"[oledb]\r\n; Everything after this line is an OLE DB initstring\r\nProvider=MSDASQL.1;Persist Security "
      u"Info=False;Extended Properties=\"DRIVER={MySQL ODBC 3.51 "
      u"Driver};SERVER=10.0.0.5;PORT=3307;DATABASE=резерв;UID=root;PWD=1😀;OPTION=3;CHARSET=cp1251;\"\r\n";
  const std::string kFromWide =
      "driver={Own Driver}; server=10.0.0.5; port=3307; database=резерв; uid=root; pwd=1😀; charset=latin1";
  struct Case {
    const char* name;
    std::string bytes;
    std::string expected;
  };
  const Case cases[] = {
      {"UTF-16", Utf16(kWide, false), kFromWide},
      {"UTF-16, big end first", Utf16(kWide, true), kFromWide},
      {"fields of the link itself",
       kHead + "Provider=MySQLProv;Password=p w;User ID=anna;Initial Catalog=kassa;Data Source=10.0.0.6\r\n",
       "driver={Own Driver}; server=10.0.0.6; pwd=p w; uid=anna; database=kassa; charset=latin1"},
      {"password outside, the rest inside",
       kHead + "Provider=MSDASQL.1;Password=x;User ID=anna;Extended Properties='server=s;uid=boris;database=d'",
       "driver={Own Driver}; server=s; uid=boris; database=d; pwd=x; charset=latin1"},
      {"windows-1251", kHead + ToWindows1251("Data Source=s;Initial Catalog=база;User ID=я;Password=пароль"),
       "driver={Own Driver}; server=s; database=база; uid=я; pwd=пароль; charset=latin1"},
      {"UTF-8 with a mark", "\xEF\xBB\xBF" + kHead + "Data Source=s;Initial Catalog=база\n",
       "driver={Own Driver}; server=s; database=база; charset=latin1"},
      {"UTF-8 without", "Data Source=s;Initial Catalog=база",
       "driver={Own Driver}; server=s; database=база; charset=latin1"},
      {"the driver's text alone", "driver={MySQL}; server=127.0.0.1; ; uid=root; database=d;\n\n",
       "driver={Own Driver}; server=127.0.0.1; uid=root; database=d; charset=latin1"},
      {"signs that need braces", "server=s;pwd={a;b}}c};uid=\"q\"\"q\"",
       "driver={Own Driver}; server=s; pwd={a;b}}c}; uid=q\"q; charset=latin1"},
      {"quotes within quotes", kHead + "Extended Properties=\"server=s;pwd=\"\"a;b\"\";database=d\"",
       "driver={Own Driver}; server=s; pwd={a;b}; database=d; charset=latin1"},
      {"options of the driver",
       "server=s;OPTION=67108864;plugin_dir=/tmp;PLUGIN_DIR={/tmp};INITSTMT=DROP TABLE TOVAR;STMT=x;sslkey=k;socket=/s;"
       "Extended Properties=\"db=d;option=67108864\";=;port=3307;multi_statements=1;read_default_file=/etc/my.cnf",
       "driver={Own Driver}; server=s; database=d; port=3307; charset=latin1"},
      {"an option inside a value", "server=s;pwd={a};OPTION=67108864;uid=b};OPTION=67108864",
       "driver={Own Driver}; server=s; pwd=a; uid={b}}}; charset=latin1"},
      {"an option inside a braced value", "server=s;pwd=\"a};OPTION=67108864\"",
       "driver={Own Driver}; server=s; pwd={a}};OPTION=67108864}; charset=latin1"},
      {"other names", "host=10.0.0.7;port number=3308;user name=a;database name=d",
       "driver={Own Driver}; server=10.0.0.7; port=3308; uid=a; database=d; charset=latin1"},
      {"a source of this machine", kHead + "Provider=MSDASQL;Data Source=kassa-dsn;User ID=root",
       "dsn=kassa-dsn; uid=root; charset=latin1"},
      {"a source named twice", kHead + "Data Source=any;Extended Properties=\"DSN=any;UID=root\"",
       "dsn=any; uid=root; charset=latin1"},
      {"a source by its own name", kHead + "Extended Properties=\"DSN=any;UID=root\"",
       "dsn=any; uid=root; charset=latin1"},
  };
  for (const Case& c : cases) EXPECT_EQ(Read(c.bytes), c.expected) << c.name;
}

TEST_F(DataLink, NoServerAndNoFileAreErrorsThatNameTheFile) {
  for (const std::string& bytes :
       {std::string(), std::string("\xFF\xFE"), std::string("[oledb]\r\n"),
        std::string("Provider=MSDASQL.1;User ID=root"), std::string("server"), std::string("=;="), std::string("\"'{"),
        "server=s;pwd=" + std::string(65536, 'x')}) {
    try {
      Read(bytes);
      ADD_FAILURE() << bytes.substr(0, 80);
    } catch (const FileError& error) {
      EXPECT_EQ(error.Path(), "C:\\r.udl");
    }
  }
  std::filesystem::remove_all(root_);
  const auto none = [](const std::string&) { return false; };
  EXPECT_THROW(DataLinkConnection(drives_, "File name=C:\\r.udl;", "D", none), FileError);
  EXPECT_EQ(DataLinkConnection(drives_, "driver={X}; server=s", "D", none), "driver={X}; server=s");
}

}  // namespace
}  // namespace zrt
