#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

namespace zrt::test {

/// Stands between the program and the server, as a router or a tunnel does, and can spoil the links that lead through
/// it. Listens on a port of its own until the object ends.
class ForwardingProxy {
 public:
  enum class Link : int {
    kForward,
    kDrop,   ///< links end in order
    kReset,  ///< links are torn, as by a machine that was started anew
    kStall,  ///< links stay and nothing goes through
  };

  /// Forwards from a free port of 127.0.0.1 to port 3306 of `server`. Throws Error.
  explicit ForwardingProxy(std::string server);
  ~ForwardingProxy();
  ForwardingProxy(const ForwardingProxy&) = delete;
  ForwardingProxy& operator=(const ForwardingProxy&) = delete;

  std::uint16_t Port() const { return port_; }

  /// What happens to all links, those that come later included, from now on.
  void Do(Link what) { link_ = what; }
  /// The same once the server has sent so many bytes more.
  void DoAfter(Link what, std::int64_t bytes);

 private:
  void Serve();
  void ServeLink(int client);

  std::string server_;
  int listener_ = -1;
  std::uint16_t port_ = 0;
  std::atomic<bool> stop_ = false;
  std::atomic<Link> link_ = Link::kForward;
  std::atomic<Link> later_ = Link::kForward;
  std::atomic<std::int64_t> bytes_left_ = -1;  ///< until `later_`; negative when nothing is to come
  std::jthread acceptor_;
};

}  // namespace zrt::test
