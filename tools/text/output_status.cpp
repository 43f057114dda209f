#include "tools/text/output_status.h"

#include <cerrno>
#include <cstring>

namespace {

// Standard output's failure has been said.
bool g_stdoutFailed = false;

// True for the errors a write to a file, device or pipe ends with.
bool IsWriteError(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
    case EIO:
    case EPIPE:
    case EBADF:
    case EAGAIN:
    case EINVAL:
    case EPERM:
      return true;
    default:
      return false;
  }
}

void SayFailure(std::FILE* stream, const std::string& name, int error) {
  if (stream == stdout) {
    if (g_stdoutFailed) return;
    g_stdoutFailed = true;
  }
  std::fprintf(stderr, "devdef: cannot write %s: %s\n", name.c_str(), std::strerror(error));
}

}  // namespace

bool OutputReached(std::FILE* stream, const std::string& name) {
  if (stream == stdout && g_stdoutFailed) return false;
  // A write that failed earlier let go of its bytes, so the flush has
  // nothing left to fail on: the reason is what that write left in errno,
  // unless something else has failed since.
  const int earlier = errno;
  errno = 0;
  const bool flushed = std::fflush(stream) == 0;
  const int error = errno;
  if (flushed && std::ferror(stream) == 0) return true;
  SayFailure(stream, name, !flushed && error != 0 ? error : IsWriteError(earlier) ? earlier : EIO);
  return false;
}

bool CloseStandardOutput() {
  if (!OutputReached(stdout, "standard output")) return false;
  errno = 0;
  if (std::fclose(stdout) == 0 || errno == EBADF) return true;
  SayFailure(stdout, "standard output", errno);
  return false;
}
