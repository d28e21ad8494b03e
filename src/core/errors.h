#pragma once

#include <stdexcept>
#include <string>

namespace zrt {

/// Base of every failure that ends a handler. The host shows one plain box for it; what() is for tests and developers
/// and never reaches the operator.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A statement or connection failed. Carries what the driver said.
class DatabaseError : public Error {
 public:
  DatabaseError(std::string sqlstate, int native, const std::string& text)
      : Error(sqlstate + "/" + std::to_string(native) + ": " + text), sqlstate_(std::move(sqlstate)), native_(native) {}

  const std::string& SqlState() const { return sqlstate_; }  ///< five characters, e.g. "42S02"
  int Native() const { return native_; }                     ///< the server's own number, e.g. 1146

 private:
  std::string sqlstate_;
  int native_;
};

/// A number does not fit the integer that it is converted to.
class OverflowError : public Error {
 public:
  using Error::Error;
};

/// A text is no number or date where one is needed, or NULL stands where a value is needed.
class TypeMismatch : public Error {
 public:
  using Error::Error;
};

/// A file or folder can't be read or written. The box that the operator sees may name the file.
class FileError : public Error {
 public:
  FileError(std::string path, const std::string& what) : Error(path + ": " + what), path_(std::move(path)) {}

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace zrt
