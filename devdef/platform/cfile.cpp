#include "devdef/platform/cfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "devdef/platform/exceptions.h"

CFile::CFile() : m_hFile(-1) {}

CFile::CFile(LPCTSTR lpszFileName, UINT nOpenFlags) : m_hFile(-1) {
  CFileException* error = new CFileException;
  if (!Open(lpszFileName, nOpenFlags, error)) throw error;
  error->Delete();
}

CFile::~CFile() {
  if (m_hFile >= 0) Abort();
}

BOOL CFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError) {
  if (m_hFile >= 0) Abort();
  m_strFileName = lpszFileName;
  int flags = 0;
  switch (nOpenFlags & 3u) {
    case modeWrite: flags = O_WRONLY; break;
    case modeReadWrite: flags = O_RDWR; break;
    default: flags = O_RDONLY; break;
  }
  if (nOpenFlags & modeCreate) {
    flags |= O_CREAT;
    if (!(nOpenFlags & modeNoTruncate)) flags |= O_TRUNC;
  }
#ifdef O_CLOEXEC
  flags |= O_CLOEXEC;
#endif
  int osError = 0;
  if (lpszFileName == nullptr || *lpszFileName == '\0') {
    osError = ENOENT;
  } else {
    const int fd = ::open(lpszFileName, flags, 0666);
    if (fd < 0) {
      osError = errno;
    } else {
      // A directory opens on some systems but is no file to read or write.
      struct stat info;
      if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
        ::close(fd);
        osError = EISDIR;
      } else {
        m_hFile = fd;
      }
    }
  }
  if (osError == 0) return TRUE;
  if (pError != nullptr) {
    pError->m_cause = CFileException::OsErrorToException(osError);
    pError->m_lOsError = osError;
    pError->m_strFileName = lpszFileName;
  }
  return FALSE;
}

void CFile::ThrowOsError(int osError) const {
  throw new CFileException(CFileException::OsErrorToException(osError), osError, m_strFileName);
}

ULONGLONG CFile::GetLength() const {
  struct stat info;
  if (m_hFile < 0) throw new CFileException(CFileException::invalidFile, EBADF, m_strFileName);
  if (::fstat(m_hFile, &info) != 0) ThrowOsError(errno);
  return info.st_size < 0 ? 0 : static_cast<ULONGLONG>(info.st_size);
}

ULONGLONG CFile::GetPosition() const {
  if (m_hFile < 0) throw new CFileException(CFileException::invalidFile, EBADF, m_strFileName);
  const off_t at = ::lseek(m_hFile, 0, SEEK_CUR);
  if (at < 0) ThrowOsError(errno);
  return static_cast<ULONGLONG>(at);
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom) {
  if (m_hFile < 0) throw new CFileException(CFileException::invalidFile, EBADF, m_strFileName);
  const int whence = nFrom == end ? SEEK_END : (nFrom == current ? SEEK_CUR : SEEK_SET);
  const off_t at = ::lseek(m_hFile, static_cast<off_t>(lOff), whence);
  if (at < 0) ThrowOsError(errno);
  return static_cast<ULONGLONG>(at);
}

UINT CFile::Read(void* lpBuf, UINT nCount) {
  if (m_hFile < 0) throw new CFileException(CFileException::invalidFile, EBADF, m_strFileName);
  char* out = static_cast<char*>(lpBuf);
  UINT done = 0;
  while (done < nCount) {
    const ssize_t got = ::read(m_hFile, out + done, nCount - done);
    if (got < 0) {
      if (errno == EINTR) continue;
      ThrowOsError(errno);
    }
    if (got == 0) break;
    done += static_cast<UINT>(got);
  }
  return done;
}

void CFile::Write(const void* lpBuf, UINT nCount) {
  if (m_hFile < 0) throw new CFileException(CFileException::invalidFile, EBADF, m_strFileName);
  const char* in = static_cast<const char*>(lpBuf);
  UINT done = 0;
  while (done < nCount) {
    const ssize_t put = ::write(m_hFile, in + done, nCount - done);
    if (put < 0) {
      if (errno == EINTR) continue;
      ThrowOsError(errno);
    }
    if (put == 0) ThrowOsError(ENOSPC);
    done += static_cast<UINT>(put);
  }
}

void CFile::Flush() {
  if (m_hFile < 0) return;
  // Writes go straight to the system; there is nothing buffered here.
}

void CFile::Close() {
  if (m_hFile < 0) return;
  const int fd = m_hFile;
  m_hFile = -1;
  if (::close(fd) != 0 && errno != EINTR) ThrowOsError(errno);
}

void CFile::Abort() {
  if (m_hFile >= 0) ::close(m_hFile);
  m_hFile = -1;
}
