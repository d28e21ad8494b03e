#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace zrt {

/// Base of every failure that ends a handler. The host shows one plain box for it; what() is for tests and developers
/// and never reaches the operator.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A statement or connection failed. Carries what the driver said, for the operator who asks for the details; what()
/// is state, number and text in one line.
class DatabaseError : public Error {
 public:
  /// `text` is UTF-8.
  DatabaseError(std::string sqlstate, int native, std::string text)
      : Error(sqlstate + "/" + std::to_string(native) + ": " + text),
        sqlstate_(std::move(sqlstate)),
        native_(native),
        text_(std::move(text)) {}

  /// The same error, met while `statement` (UTF-8) ran; one that names its statement already keeps it.
  DatabaseError During(std::string_view statement) const {
    DatabaseError named = *this;
    if (named.statement_.empty()) named.statement_ = statement;
    return named;
  }

  /// The same error, after which something is left for the operator to do: `task` (UTF-8) tells him in the box.
  DatabaseError Leaving(std::string task) const {
    DatabaseError left = *this;
    left.task_ = std::move(task);
    return left;
  }

  const std::string& SqlState() const { return sqlstate_; }  ///< five characters, e.g. "42S02"
  int Native() const { return native_; }                     ///< the server's own number, e.g. 1146; 0 without one
  const std::string& Text() const { return text_; }          ///< what the driver said, in its own words
  /// The statement that failed, whole; empty when none did, as when connecting. Never holds a connection text.
  const std::string& Statement() const { return statement_; }
  const std::string& Task() const { return task_; }  ///< what is left for the operator to do; empty for nothing

 private:
  std::string sqlstate_;
  int native_;
  std::string text_;
  std::string statement_;
  std::string task_;
};

/// A script asks of a control what no operator can do (an item that isn't there, a click on what takes none): the
/// script's mistake and no failure of the program.
class ScriptError : public Error {
 public:
  using Error::Error;
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

/// Runs `work` and drops a failure of it, for what must not keep the rest from going on. Each call says why.
template <typename Work>
void IgnoreFailure(Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const Error&) {  // NOLINT(bugprone-empty-catch): that is what it is for
  }
}

}  // namespace zrt
