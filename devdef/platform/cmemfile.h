/// \file
/// CMemFile, a CFile whose bytes live in memory.
#ifndef DEVDEF_PLATFORM_CMEMFILE_H_
#define DEVDEF_PLATFORM_CMEMFILE_H_

#include "devdef/platform/export.h"

#include <string>

#include "devdef/platform/cfile.h"

/// A CFile whose bytes live in memory and grow as they are written; for hosts and tests, e.g. behind a CArchive.
/// It is usable from construction and never opened: Open fails, Close, Abort and Flush do nothing, and the bytes stay
/// readable after Close (the class library's Close frees them). IsOpen() is FALSE and GetFilePath() empty. Smaller
/// than the class library's: no constructor on a caller's buffer, no Attach or Detach; read the bytes back with
/// SeekToBegin and Read.
class DEVDEF_API CMemFile : public CFile {
 public:
  /// An empty memory file at position 0, with room for nGrowBytes bytes reserved; it grows beyond that as needed.
  explicit CMemFile(UINT nGrowBytes = 1024);
  /// Frees the bytes.
  ~CMemFile() override = default;

  /// Always fails, as a memory file has no name to open: returns FALSE and, if pError is given, sets its cause to
  /// genericException and its errno value to EINVAL.
  BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr) override;
  /// The number of bytes written so far, gaps included.
  ULONGLONG GetLength() const override { return m_data.size(); }
  /// The current position.
  ULONGLONG GetPosition() const override { return m_nPosition; }
  /// Moves to lOff bytes from nFrom and returns the new position, which may lie past the end (a Write there fills the
  /// gap with zero bytes). A position before the start throws CFileException* (badSeek) and leaves it unchanged.
  ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
  /// Reads up to nCount bytes from the position; returns how many, fewer only at the end (0 there or past it).
  UINT Read(void* lpBuf, UINT nCount) override;
  /// Writes nCount bytes at the position, overwriting and extending the content; only a lack of memory fails it.
  void Write(const void* lpBuf, UINT nCount) override;
  /// Does nothing.
  void Flush() override {}
  /// Does nothing: the bytes stay.
  void Close() override {}
  /// Does nothing: the bytes stay.
  void Abort() override {}

 private:
  std::string m_data;
  size_t m_nPosition = 0;
};

#endif  // DEVDEF_PLATFORM_CMEMFILE_H_
