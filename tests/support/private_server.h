#pragma once

#include <sys/types.h>

#include <string>

namespace zrt::test {

/// A database server of a test's own beside the tests' common one, on another loopback address, to be ended and started
/// again at will: the reserve server, or one that dies. Ended with the object; its data stay in the folder.
class PrivateServer {
 public:
  /// `folder` takes the data; `host` is the loopback address. Starts the server; throws Error when it can't.
  PrivateServer(std::string folder, std::string host);
  ~PrivateServer();
  PrivateServer(const PrivateServer&) = delete;
  PrivateServer& operator=(const PrivateServer&) = delete;

  const std::string& Host() const { return host_; }

  /// Harmless when it runs. Throws Error.
  void Start();
  /// Ends it in order; harmless when it doesn't run. Throws Error.
  void Stop();
  /// Ends it at once, as a power cut would, and waits until it is gone. Throws Error.
  void Kill();

 private:
  /// Is this process the server of our folder? A number may belong to another process by now.
  bool IsOurs(pid_t pid) const;
  void RunScript(const std::string& arguments) const;

  std::string folder_;
  std::string host_;
};

}  // namespace zrt::test
