#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "core/errors.h"
#include "core/text.h"
#include "platform/data_link.h"
#include "platform/drive_map.h"
#include "platform/settings_file.h"
#include "platform/text_file.h"
#include "support/temporary_folder.h"

namespace zrt {
namespace {

class Drives : public testing::Test {
 protected:
  void Write(const std::string& drive_path, const std::string& bytes) {
    const auto native = drives_.ToNative(drive_path);
    std::filesystem::create_directories(native.parent_path());
    std::ofstream(native, std::ios::binary) << bytes;
  }

  /// The connection text that a data link file of these bytes stands for.
  std::string Connection(const std::string& bytes) {
    Write("C:\\r.udl", bytes);
    return DataLinkConnection(drives_, "File name=C:\\r.udl;", "Own Driver",
                              [](const std::string& name) { return name == "kassa-dsn"; });
  }

  test::TemporaryFolder folder_;
  const std::filesystem::path& root_ = folder_.Path();
  DriveMap drives_{root_};
};

TEST_F(Drives, DrivePathsBecomeFoldersOfTheUser) {
  const std::pair<const char*, const char*> kPaths[] = {{"C:\\Korvina\\Report\\", "C/Korvina/Report/"},
                                                        {"C:/Korvina/ZRTr", "C/Korvina/ZRTr"},
                                                        {"d:\\Склад\\остатки.txt", "D/Склад/остатки.txt"},
                                                        {"\\Korvina", "C/Korvina"},
                                                        {"C:", "C/"}};
  for (const auto& [drive_path, native] : kPaths) {
    EXPECT_EQ(drives_.ToNative(drive_path), root_ / native) << drive_path;
  }
  EXPECT_EQ(DriveMap({}).ToNative("C:\\Korvina\\x.txt"), std::filesystem::path("C:\\Korvina\\x.txt"));
}

TEST_F(Drives, ListsDrivesAndFolders) {
  EXPECT_EQ(drives_.Drives(), std::vector<std::string>{"C:"});
  EXPECT_TRUE(drives_.Folders("C:\\").empty());
  Write("E:\\отчёты\\a.csv", "");
  Write("E:\\архив\\a.csv", "");
  Write("E:\\a.csv", "");
  EXPECT_EQ(drives_.Drives(), (std::vector<std::string>{"C:", "E:"}));
  EXPECT_EQ(drives_.Folders("E:\\"), (std::vector<std::string>{"архив", "отчёты"}));
}

TEST_F(Drives, TheSettingsFileNamesTheDataLinkOfEachProgram) {
  EXPECT_EQ(FindDataLinkPath(drives_, "zrt"), std::nullopt);  // no file

  const std::pair<const char*, std::optional<std::string>> kFiles[] = {
      {"", std::nullopt},
      {"kassa,C:\\kassa.udl\r\n", std::nullopt},
      {"kassa,C:\\kassa.udl\r\nzrt,C:\\Данные\\one.udl\r\nzrt,C:\\two.udl\r\n", "C:\\Данные\\one.udl"},
      {"\"zrt\",\"C:\\quoted.udl\"\n", "C:\\quoted.udl"},
      {"zrt\nno comma here\nZRT,C:\\case.udl\nzrt , C:\\blanks.udl", "C:\\blanks.udl"},
      {"zrt,C:\\with,comma.udl\n", "C:\\with,comma.udl"},
      {"zrt,\n", ""},
      {"\"a,zrt\",C:\\other.udl\n\"zrt\",\"C:\\a,b.udl\"\n", "C:\\a,b.udl"},
      {"\"zrt,C:\\open quote.udl\n", std::nullopt},
  };
  for (const auto& [text, path] : kFiles) {
    Write(std::string(kSettingsFile), ToWindows1251(text));
    EXPECT_EQ(FindDataLinkPath(drives_, "zrt"), path) << text;
  }
}

TEST_F(Drives, AnUnreadableSettingsFileIsAnError) {
  std::filesystem::create_directories(drives_.ToNative(kSettingsFile));  // a folder of that name
  EXPECT_THROW(FindDataLinkPath(drives_, "zrt"), FileError);
}

TEST_F(Drives, TheSettingsFileKeepsWhatIsntThePrograms) {
  namespace fs = std::filesystem;
  fs::create_directories(drives_.ToNative(kSettingsFile).parent_path());
  SaveDataLinkPath(drives_, "zrt", "C:\\a.udl");  // where there was none
  EXPECT_EQ(FindDataLinkPath(drives_, "zrt"), "C:\\a.udl");
  fs::remove(drives_.ToNative(kSettingsFile));

  const fs::path elsewhere = root_ / "etc" / "shop.conf";
  fs::create_directories(elsewhere.parent_path());
  fs::create_symlink("../../etc/shop.conf", drives_.ToNative(kSettingsFile));
  const std::pair<std::string, std::string> kFiles[] = {
      {"zrt,old\nkassa,C:\\\xEA\x98.udl\n; \"note\n", "kassa,C:\\\xEA\x98.udl\n; \"note\nzrt,new\n"},
      {"kassa, 1\r\n\r\nzrt,old\r\nlast", "kassa, 1\r\n\r\nlast\r\nzrt,new\r\n"},
      {"", "zrt,new\r\n"},
  };
  for (const auto& [before, after] : kFiles) {
    std::ofstream(elsewhere, std::ios::binary) << before;
    fs::permissions(elsewhere, fs::perms(0640));
    SaveDataLinkPath(drives_, "zrt", "new");
    std::ifstream file(elsewhere, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), after);
    EXPECT_EQ(fs::status(elsewhere).permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::is_symlink(drives_.ToNative(kSettingsFile)));
  }
}

TEST_F(Drives, ATextFileIsWholeOrNotThereWhoeverElseWritesIt) {
  namespace fs = std::filesystem;
  const fs::path folder = root_ / "C/Отчёт";
  Write("C:/Отчёт/other", "of somebody else");
  for (const char* name : {"x.csv", "x.csv.part"}) fs::create_symlink("other", folder / name);
  {
    TextFileWriter one(drives_, "C:\\Отчёт\\x.csv");
    TextFileWriter two(drives_, "C:\\Отчёт\\x.csv");
    one.Line("1");
    two.Line("Код;Имя");
    one.Line("1");
    one.Close();
    two.Line("№1;€ и 漢");
    two.Close();
    TextFileWriter given_up(drives_, "C:\\Отчёт\\x.csv");
    given_up.Line("половина");
    TextFileWriter too_much(drives_, "C:\\Отчёт\\x.csv");
    too_much.Line(std::string(1000, 'x'));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full_disk{100, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full_disk);
    EXPECT_THROW(too_much.Close(), FileError);
    setrlimit(RLIMIT_FSIZE, &before);
  }
  std::ifstream file(folder / "x.csv", std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), ToWindows1251("Код;Имя\r\n№1;€ и ?\r\n"));
  EXPECT_FALSE(fs::is_symlink(folder / "x.csv"));
  EXPECT_EQ(ReadTextLines(drives_, "C:/Отчёт/other"), std::vector<std::string>{"of somebody else"});
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 3) << "something is left beside the file";

  TextFileWriter(drives_, "C:\\Отчёт\\new.csv").Close();
  const mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(std::filesystem::status(folder / "new.csv").permissions(), std::filesystem::perms(0666 & ~mask));

  std::filesystem::create_directory(folder / "folder");
  EXPECT_THROW(TextFileWriter(drives_, "C:\\нет\\x.csv"), FileError);
  EXPECT_THROW(TextFileWriter(drives_, "C:\\Отчёт\\folder"), FileError);
}

TEST_F(Drives, TextLinesOfAnyEnding) {
  Write("C:/a", ToWindows1251("один\r\nдва\n\nчетыре"));
  Write("C:/empty", "");
  EXPECT_EQ(ReadTextLines(drives_, "C:/a"), (std::vector<std::string>{"один", "два", "", "четыре"}));
  EXPECT_TRUE(ReadTextLines(drives_, "C:/empty").empty());
  EXPECT_THROW(ReadTextLines(drives_, "C:/missing"), FileError);
  EXPECT_THROW(ReadTextLines(drives_, "C:/"), FileError);
  ASSERT_EQ(mkfifo((root_ / "C/pipe").c_str(), 0600), 0);
  EXPECT_THROW(ReadTextLines(drives_, "C:/pipe"), FileError);
  std::filesystem::resize_file(root_ / "C/empty", kMaxTextFile + 1);
  EXPECT_THROW(ReadTextLines(drives_, "C:/empty"), FileError);
}

TEST_F(Drives, ADataLinkIsReadAsWindowsAndPeopleWriteIt) {
  const std::string kHead = "[oledb]\r\n; Everything after this line is an OLE DB initstring\r\n";
  const std::string kFull =
      kHead +
      "Provider=MSDASQL.1;Persist Security Info=False;Extended Properties=\"DRIVER={MySQL ODBC 3.51 Driver};"
      "SERVER=10.0.0.5;PORT=3307;DATABASE=d;UID=root;PWD=1;OPTION=3;CHARSET=cp1251;\"\r\n";
  const std::string kFromFull =
      "driver={Own Driver}; server=10.0.0.5; port=3307; database=d; uid=root; pwd=1; charset=latin1";
  const auto wide = [](const std::string& text, bool big_endian) {
    std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char letter : text) bytes += big_endian ? std::string{'\0', letter} : std::string{letter, '\0'};
    return bytes;
  };
  struct Case {
    const char* name;
    std::string bytes;
    std::string expected;
  };
  const Case cases[] = {
      {"UTF-16", wide(kFull, false), kFromFull},
      {"UTF-16, big end first", wide(kFull, true), kFromFull},
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
  for (const Case& c : cases) EXPECT_EQ(Connection(c.bytes), c.expected) << c.name;
}

TEST_F(Drives, ALinkWithoutServerOrFileIsAnErrorThatNamesTheFile) {
  for (const std::string& bytes :
       {std::string(), std::string("\xFF\xFE"), std::string("[oledb]\r\n"),
        std::string("Provider=MSDASQL.1;User ID=root"), std::string("server"), std::string("=;="), std::string("\"'{"),
        "server=s;pwd=" + std::string(65536, 'x')}) {
    try {
      Connection(bytes);
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
