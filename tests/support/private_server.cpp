#include "support/private_server.h"

#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
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
  if (!(std::ifstream(folder_ + "/pid") >> pid) || kill(pid, SIGKILL) != 0) throw Error("no server runs in " + folder_);
  while (kill(pid, 0) == 0) std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void PrivateServer::RunScript(const std::string& arguments) const {
  const std::string line = "'" ZRT_SOURCE_DIR "/tools/private_server' " + arguments;
  if (std::system(line.c_str()) != 0) throw Error("failed: " + line);
}

}  // namespace zrt::test
