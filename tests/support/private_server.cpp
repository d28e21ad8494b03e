#include "support/private_server.h"

#include <fmt/format.h>
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "core/errors.h"

namespace zrt::test {

PrivateServer::PrivateServer(std::string folder, std::string host)
    : folder_(std::move(folder)), host_(std::move(host)) {
  Start();
}

PrivateServer::~PrivateServer() {
  try {
    Stop();
  } catch (const Error&) {
    // The next start on this folder reports it.
  }
}

void PrivateServer::Start() {
  RunScript("start '" + folder_ + "' " + host_);
}

void PrivateServer::Stop() {
  RunScript("stop '" + folder_ + "'");
}

void PrivateServer::Kill() {
  pid_t pid = 0;
  std::ifstream(folder_ + "/pid") >> pid;
  if (!IsOurs(pid) || kill(pid, SIGKILL) != 0) throw Error("no server runs in " + folder_);
  while (IsOurs(pid)) std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

bool PrivateServer::IsOurs(pid_t pid) const {
  std::ifstream file(fmt::format("/proc/{}/cmdline", pid), std::ios::binary);
  const std::string arguments{std::istreambuf_iterator<char>(file), {}};
  // As the script names it, with the folder's whole path.
  const std::string data = "--datadir=" + std::filesystem::weakly_canonical(folder_).string() + "/data";
  return arguments.find('\0' + data + '\0') != std::string::npos;
}

void PrivateServer::RunScript(const std::string& arguments) const {
  const std::string line = "'" ZRT_SOURCE_DIR "/tools/private_server' " + arguments;
  if (std::system(line.c_str()) != 0) throw Error("failed: " + line);
}

}  // namespace zrt::test
