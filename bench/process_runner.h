// The suite's own process runner: runs a program in a fresh process and
// reports its wall time and peak memory.
#ifndef DEVDEF_BENCH_PROCESS_RUNNER_H_
#define DEVDEF_BENCH_PROCESS_RUNNER_H_

#include <string>
#include <vector>

struct ProcessRun {
  bool ok = false;          // the program ran and exited with status 0 or 1
  int status = -1;          // its exit status
  double seconds = 0;       // wall time from the start to the end of the process
  long peakKilobytes = 0;   // the process's peak resident memory
  std::string output;       // what it wrote to standard output, unless sent elsewhere
};

// Runs argv[0] with argv, standard input from /dev/null, standard error
// thrown away, standard output captured or, when outputPath is given, sent
// there.
ProcessRun RunProcess(const std::vector<std::string>& argv, const char* outputPath = nullptr);

// RunProcess through a fresh copy of this program started with
// --devdef-run, so that the peak memory is the program's own: a process
// started from a large one counts the large one's size as its peak.
ProcessRun RunMeasured(const std::vector<std::string>& argv, const char* outputPath);

// The side of that copy: when argv is a --devdef-run call, runs the program
// and prints its run for RunMeasured, returning the exit status for this
// program; otherwise -1.
int ServeMeasuredRun(int argc, char** argv);

// The path of the running program.
std::string SelfPath();

// The peak resident memory of this process's image in kilobytes (VmHWM),
// which starts afresh when a program is started.
long ImagePeakKilobytes();

#endif  // DEVDEF_BENCH_PROCESS_RUNNER_H_
