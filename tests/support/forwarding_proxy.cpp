#include "support/forwarding_proxy.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>
#include <vector>

#include "core/errors.h"

namespace zrt::test {
namespace {

constexpr int kTickMs = 2;

sockaddr_in Address(const std::string& host, std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  inet_pton(AF_INET, host.c_str(), &address.sin_addr);
  return address;
}

bool IsReadable(int socket) {
  pollfd watched{socket, POLLIN, 0};
  return poll(&watched, 1, kTickMs) > 0;
}

void CloseTorn(int socket) {
  const linger at_once{1, 0};
  setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  close(socket);
}

}  // namespace

ForwardingProxy::ForwardingProxy(std::string server) : server_(std::move(server)) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = Address("127.0.0.1", 0);
  socklen_t size = sizeof address;
  if (bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener_, 8) != 0 ||
      getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    close(listener_);
    throw Error("the proxy can't listen");
  }
  port_ = ntohs(address.sin_port);
  acceptor_ = std::jthread([this] { Serve(); });
}

ForwardingProxy::~ForwardingProxy() {
  stop_ = true;
  acceptor_.join();
  close(listener_);
}

void ForwardingProxy::DoAfter(Link what, std::int64_t bytes) {
  later_ = what;
  bytes_left_ = bytes;
}

void ForwardingProxy::Serve() {
  std::vector<std::jthread> links;
  while (!stop_) {
    if (!IsReadable(listener_)) continue;
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client >= 0) links.emplace_back([this, client] { ServeLink(client); });
  }
}

void ForwardingProxy::ServeLink(int client) {
  const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Address(server_, 3306);
  bool open = connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  const auto pass = [](int from, int to) {
    char bytes[4096];
    const ssize_t count = read(from, bytes, sizeof bytes);
    return count > 0 && send(to, bytes, static_cast<std::size_t>(count), MSG_NOSIGNAL) == count ? count : ssize_t{-1};
  };
  while (open && !stop_) {
    const Link link = link_;
    if (link == Link::kDrop || link == Link::kReset) break;
    pollfd watched[] = {{client, POLLIN, 0}, {server, POLLIN, 0}};
    // A link that stalls is only waited on.
    if (poll(watched, link == Link::kStall ? 0 : 2, kTickMs) <= 0) continue;
    if (watched[0].revents != 0) open = pass(client, server) > 0;
    if (open && watched[1].revents != 0) {
      const ssize_t count = pass(server, client);
      open = count > 0;
      if (bytes_left_ >= 0 && (bytes_left_ -= count) < 0) link_ = later_.load();
    }
  }
  link_ == Link::kReset ? CloseTorn(client) : static_cast<void>(close(client));
  close(server);
}

}  // namespace zrt::test
