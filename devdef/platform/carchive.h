// CArchive: a buffered stream over a CFile. Bytes written through the archive
// collect in its buffer and reach the file when the buffer is full, on Flush
// and on Close; destruction closes an archive that is still open.
#ifndef DEVDEF_PLATFORM_CARCHIVE_H_
#define DEVDEF_PLATFORM_CARCHIVE_H_

#include "devdef/platform/export.h"

#include "devdef/platform/types.h"

class CFile;

class DEVDEF_API CArchive {
 public:
  enum Mode { store = 0, load = 1, bNoFlushOnDelete = 2 };

  // pFile may be null: such an archive has no file (GetFile() is null) and
  // every transfer through it raises CArchiveException. lpBuf, when given, is
  // a caller-owned buffer of nBufSize bytes.
  CArchive(CFile* pFile, UINT nMode, int nBufSize = 4096, void* lpBuf = nullptr);
  ~CArchive();
  CArchive(const CArchive&) = delete;
  CArchive& operator=(const CArchive&) = delete;

  CFile* GetFile() const { return m_pFile; }
  BOOL IsStoring() const { return (m_nMode & load) == 0; }
  BOOL IsLoading() const { return (m_nMode & load) != 0; }

  void Write(const void* lpBuf, UINT nMax);
  UINT Read(void* lpBuf, UINT nMax);
  // Writes the buffered bytes to the file.
  void Flush();
  // Flushes and detaches from the file, which stays open.
  void Close();
  // Detaches without flushing.
  void Abort();

 private:
  CFile* m_pFile;
  UINT m_nMode;
  BYTE* m_lpBufStart;
  UINT m_nBufSize;
  UINT m_nBufUsed = 0;
  UINT m_nBufRead = 0;
  bool m_bUserBuf;
};

#endif  // DEVDEF_PLATFORM_CARCHIVE_H_
