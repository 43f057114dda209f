// CFile: an unbuffered file of the class library. A failed open or transfer
// raises CFileException (thrown as a pointer). The transfers are virtual so
// that a host or a test can put a file of its own behind an archive.
#ifndef DEVDEF_PLATFORM_CFILE_H_
#define DEVDEF_PLATFORM_CFILE_H_

#include "devdef/platform/export.h"

#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

class CFileException;

class DEVDEF_API CFile {
 public:
  enum OpenFlags : UINT {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareCompat = 0x0000,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyRead = 0x0030,
    shareDenyNone = 0x0040,
    modeNoTruncate = 0x2000,
    modeCreate = 0x1000,
    typeText = 0x4000,
    typeBinary = 0x8000,
  };
  enum SeekPosition { begin = 0, current = 1, end = 2 };

  CFile();
  // Opens the file or throws CFileException*.
  CFile(LPCTSTR lpszFileName, UINT nOpenFlags);
  virtual ~CFile();
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  // Opens the file; on failure fills pError (if given) and returns FALSE.
  virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);
  virtual ULONGLONG GetLength() const;
  virtual ULONGLONG GetPosition() const;
  virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
  void SeekToBegin() { Seek(0, begin); }
  ULONGLONG SeekToEnd() { return Seek(0, end); }
  // Reads up to nCount bytes; returns how many were read (0 at the end).
  virtual UINT Read(void* lpBuf, UINT nCount);
  // Writes all nCount bytes or throws.
  virtual void Write(const void* lpBuf, UINT nCount);
  virtual void Flush();
  // Closes the file; a failure to close throws.
  virtual void Close();
  // Closes the file and ignores any failure.
  virtual void Abort();

  CString GetFilePath() const { return m_strFileName; }
  BOOL IsOpen() const { return m_hFile >= 0; }

 protected:
  [[noreturn]] void ThrowOsError(int osError) const;

  int m_hFile;
  CString m_strFileName;
};

#endif  // DEVDEF_PLATFORM_CFILE_H_
