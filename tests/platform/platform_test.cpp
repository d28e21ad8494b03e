#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "core/errors.h"
#include "core/text.h"
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

TEST_F(Drives, WritersOfOneNameDontMeet) {
  namespace fs = std::filesystem;
  Write("C:/x/other", "of somebody else");
  const fs::path folder = root_ / "C/x";
  for (const char* name : {"a.csv", "a.csv.part"}) fs::create_symlink("other", folder / name);
  {
    TextFileWriter one(drives_, "C:/x/a.csv");
    TextFileWriter two(drives_, "C:/x/a.csv");
    one.Line("1");
    two.Line("2");
    one.Line("1");
    one.Close();
    two.Line("2");
    two.Close();
    TextFileWriter given_up(drives_, "C:/x/a.csv");
    given_up.Line("3");
  }
  EXPECT_EQ(ReadTextLines(drives_, "C:/x/a.csv"), (std::vector<std::string>{"2", "2"}));
  EXPECT_EQ(ReadTextLines(drives_, "C:/x/other"), std::vector<std::string>{"of somebody else"});
  EXPECT_FALSE(fs::is_symlink(folder / "a.csv"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 3) << "something is left beside the file";
}

TEST_F(Drives, TextFileIsWholeOrNotThere) {
  Write("C:/Отчёт/x.csv", "как было");
  const auto folder = root_ / "C/Отчёт";
  const auto bytes = [&] {
    std::ifstream file(folder / "x.csv", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  {
    TextFileWriter unfinished(drives_, "C:\\Отчёт\\x.csv");
    unfinished.Line("половина");
  }
  EXPECT_EQ(bytes(), "как было") << "a writer that was given up has touched the file";
  TextFileWriter writer(drives_, "C:\\Отчёт\\x.csv");
  writer.Line("Код;Имя");
  writer.Line("№1;€ и 漢");
  writer.Close();
  EXPECT_EQ(bytes(), ToWindows1251("Код;Имя\r\n№1;€ и ?\r\n"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "something is left beside the file";

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

}  // namespace
}  // namespace zrt
