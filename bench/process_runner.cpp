#include "bench/process_runner.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <cstdio>
#include <cstring>

ProcessRun RunProcess(const std::vector<std::string>& argv, const char* outputPath) {
  ProcessRun run;
  int pipeEnds[2] = {-1, -1};
  if (outputPath == nullptr && ::pipe2(pipeEnds, O_CLOEXEC) != 0) return run;
  std::vector<char*> args;
  for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
  args.push_back(nullptr);
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child == 0) {
    const int in = ::open("/dev/null", O_RDONLY);
    const int err = ::open("/dev/null", O_WRONLY);
    const int out = outputPath != nullptr ? ::open(outputPath, O_WRONLY | O_CREAT | O_TRUNC, 0666) : pipeEnds[1];
    if (in < 0 || err < 0 || out < 0 || ::dup2(in, 0) < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0) ::_exit(127);
    ::execv(args[0], args.data());
    ::_exit(127);
  }
  if (outputPath == nullptr) {
    ::close(pipeEnds[1]);
    char block[4096];
    ssize_t got = 0;
    while (child > 0 && (got = ::read(pipeEnds[0], block, sizeof block)) > 0) run.output.append(block, static_cast<size_t>(got));
    ::close(pipeEnds[0]);
  }
  if (child < 0) return run;
  int status = 0;
  rusage usage{};
  if (::wait4(child, &status, 0, &usage) != child) return run;
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  run.peakKilobytes = usage.ru_maxrss;
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.ok = run.status == 0 || run.status == 1;
  return run;
}

std::string SelfPath() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path - 1);
  return length > 0 ? std::string(path, static_cast<size_t>(length)) : std::string();
}

ProcessRun RunMeasured(const std::vector<std::string>& argv, const char* outputPath) {
  std::vector<std::string> through{SelfPath(), "--devdef-run", outputPath != nullptr ? outputPath : "/dev/null"};
  through.insert(through.end(), argv.begin(), argv.end());
  const ProcessRun copy = RunProcess(through);
  ProcessRun run;
  if (copy.status == 0 &&
      std::sscanf(copy.output.c_str(), "%lf %ld %d", &run.seconds, &run.peakKilobytes, &run.status) == 3) {
    run.ok = run.status == 0 || run.status == 1;
  }
  return run;
}

int ServeMeasuredRun(int argc, char** argv) {
  if (argc < 4 || std::strcmp(argv[1], "--devdef-run") != 0) return -1;
  const ProcessRun run = RunProcess(std::vector<std::string>(argv + 3, argv + argc), argv[2]);
  std::printf("%.6f %ld %d\n", run.seconds, run.peakKilobytes, run.status);
  return 0;
}

long ImagePeakKilobytes() {
  std::FILE* status = std::fopen("/proc/self/status", "r");
  if (status == nullptr) return 0;
  char line[256];
  long kilobytes = 0;
  while (std::fgets(line, sizeof line, status) != nullptr) {
    if (std::sscanf(line, "VmHWM: %ld kB", &kilobytes) == 1) break;
  }
  std::fclose(status);
  return kilobytes;
}
