#include "platform/whole_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <system_error>
#include <utility>

#include "core/errors.h"

namespace zrt {

WholeFile::WholeFile(std::string name, std::filesystem::path place) : name_(std::move(name)), place_(std::move(place)) {
  // A folder of the file's name would only be noticed at the end.
  std::error_code error;
  if (std::filesystem::is_directory(place_, error)) Refuse();
  OpenUnfinished();
}

WholeFile::~WholeFile() {
  if (!file_) return;
  file_.reset();
  std::error_code error;
  std::filesystem::remove(unfinished_, error);
}

void WholeFile::OpenUnfinished() {
  constexpr mode_t kMode = 0666;  // less what the user's mask takes
  std::random_device random;
  int file = -1;
  do {
    unfinished_ = place_.parent_path() / fmt::format(".zrt-{:08x}{:08x}.part", random(), random());
    file = open(unfinished_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
  } while (file < 0 && errno == EEXIST);
  if (file < 0) Refuse();
  file_.reset(fdopen(file, "wb"));
  if (!file_) {
    close(file);
    Refuse();
  }
}

void WholeFile::LikeTheOneBefore() {
  struct stat before = {};
  if (stat(place_.c_str(), &before) != 0) return;
  const int file = fileno(file_.get());
  struct stat now = {};
  if (fstat(file, &now) != 0) Refuse();
  const bool same_owner = now.st_uid == before.st_uid && now.st_gid == before.st_gid;
  if (!same_owner && fchown(file, before.st_uid, before.st_gid) != 0) Refuse();
  if (fchmod(file, before.st_mode & 07777) != 0) Refuse();
}

void WholeFile::Write(std::string_view bytes) {
  std::fwrite(bytes.data(), 1, bytes.size(), file_.get());
}

void WholeFile::Close() {
  bool whole = std::fflush(file_.get()) == 0 && std::ferror(file_.get()) == 0 && fsync(fileno(file_.get())) == 0;
  whole = std::fclose(file_.release()) == 0 && whole;
  std::error_code error;
  if (whole) {
    std::filesystem::rename(unfinished_, place_, error);
    if (!error) return;
  }
  std::filesystem::remove(unfinished_, error);
  Refuse();
}

void WholeFile::Refuse() const {
  throw FileError(name_, "can't be written");
}

}  // namespace zrt
