#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace zrt {

/// A file that is written beside its place, under a name of its own, and gets its name when it is whole and on the
/// disk: a full disk, a failure on the way or a cut of power leaves no half file, two writers leave the file of one of
/// them, and a file of that name stays as it was until then. A link of that name is replaced, not followed.
class WholeFile {
 public:
  /// `name` is what errors call it. Throws FileError when the file can't be made.
  WholeFile(std::string name, std::filesystem::path place);
  /// Drops what was written unless Close has succeeded.
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  /// Gives the new file owner, group and mode of the one that it is to replace. Throws FileError when the system
  /// refuses; harmless when there is none.
  void LikeTheOneBefore();

  /// Adds bytes. Failures are kept until Close.
  void Write(std::string_view bytes);

  /// Puts the file in its place. Throws FileError; nothing of it is there then.
  void Close();

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  [[noreturn]] void Refuse() const;
  /// Opens a new file beside the place, for this writer alone.
  void OpenUnfinished();

  std::string name_;
  std::filesystem::path place_;
  std::filesystem::path unfinished_;
  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace zrt
