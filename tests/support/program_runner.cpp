#include "support/program_runner.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <thread>

namespace vorel::test {
namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using TemporaryFile = std::unique_ptr<std::FILE, FileCloser>;

std::string TextOf(std::FILE* file) {
  std::string text;
  std::rewind(file);
  char buffer[4096];
  for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
    text.append(buffer, count);
  return text;
}

}  // namespace

ProgramResult RunProgram(const std::string& path, const std::vector<std::string>& arguments,
                         const std::string& input, const std::filesystem::path& directory) {
  std::vector<const char*> argv = {path.c_str()};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  argv.push_back(nullptr);

  const TemporaryFile out(std::tmpfile());
  const TemporaryFile err(std::tmpfile());
  int pipeEnds[2];
  if (!out || !err || pipe(pipeEnds) != 0) throw std::runtime_error("no temporary file or pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no new process");
  if (child == 0) {
    dup2(pipeEnds[0], STDIN_FILENO);
    dup2(fileno(out.get()), STDOUT_FILENO);
    dup2(fileno(err.get()), STDERR_FILENO);
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    if (!directory.empty() && chdir(directory.c_str()) != 0) _exit(126);
    execv(path.c_str(), const_cast<char* const*>(argv.data()));
    _exit(127);
  }
  close(pipeEnds[0]);
  std::thread writer([&] {
    // A program that ends without reading all must not end the test.
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
    std::size_t written = 0;
    while (written < input.size()) {
      const ssize_t count = write(pipeEnds[1], input.data() + written, input.size() - written);
      if (count <= 0) break;
      written += static_cast<std::size_t>(count);
    }
    close(pipeEnds[1]);
  });
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  writer.join();

  ProgramResult result;
  result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  result.out = TextOf(out.get());
  result.err = TextOf(err.get());
  result.peakKilobytes = usage.ru_maxrss;
  return result;
}

int SignalProgramWhileItReads(const std::string& path, const std::vector<std::string>& arguments,
                              const std::string& input, int signalNumber,
                              const std::filesystem::path& directory) {
  std::vector<const char*> argv = {path.c_str()};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  argv.push_back(nullptr);
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no new process");
  if (child == 0) {
    dup2(pipeEnds[0], STDIN_FILENO);
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    std::signal(signalNumber, SIG_DFL);  // whoever started the tests may have switched it off
    if (chdir(directory.c_str()) != 0) _exit(126);
    execv(path.c_str(), const_cast<char* const*>(argv.data()));
    _exit(127);
  }
  close(pipeEnds[0]);
  for (std::size_t written = 0; written < input.size();) {
    const ssize_t count = write(pipeEnds[1], input.data() + written, input.size() - written);
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  kill(child, signalNumber);
  int status = 0;
  waitpid(child, &status, 0);
  close(pipeEnds[1]);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TemporaryDirectory::TemporaryDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vorel-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
  path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::Write(const std::string& name, const std::string& text) const {
  std::ofstream(path_ / name, std::ios::binary) << text;
  return File(name);
}

std::map<std::string, std::string> TemporaryDirectory::Contents() const {
  std::map<std::string, std::string> contents;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path_)) {
    contents[entry.path().string()] = entry.is_regular_file() ? FileText(entry.path()) : std::string();
  }
  return contents;
}

std::string FileText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace vorel::test
