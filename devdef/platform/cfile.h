/// \file
/// CFile, the class library's unbuffered binary file.
#ifndef DEVDEF_PLATFORM_CFILE_H_
#define DEVDEF_PLATFORM_CFILE_H_

#include "devdef/platform/export.h"

#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

class CFileException;

/// The class library's unbuffered binary file, on the system's file descriptors. As in the class library, the
/// constructor with a name and every transfer raise CFileException as a pointer (`throw new`), which the catcher owns
/// and frees with Delete(). The members are virtual, so that a host or a test can put a file of its own (CMemFile)
/// behind an archive.
///
/// Open flags: modeRead (0), modeWrite or modeReadWrite, with modeCreate (which empties an existing file unless
/// modeNoTruncate is given): 0 reads, modeCreate | modeWrite (0x1001) creates and writes. The share flags, typeText and
/// typeBinary are accepted and ignored: there is no locking and no text translation. Lengths and positions are 64 bits
/// wide, as in later versions of the class library.
///
/// Differences: there is no Windows handle (m_hFile is a protected descriptor; no hFileNull, no constructor on a
/// handle); the exception's m_lOsError is an errno value, not a Windows error code; GetFilePath gives the name as
/// passed to Open; Flush does not force the bytes to the disk. Not provided: Duplicate, LockRange, UnlockRange,
/// SetLength, GetStatus, Rename, Remove, GetFileName, GetFileTitle, SetFilePath.
class DEVDEF_API CFile {
 public:
  /// Open flags, ORed together, with the class library's values.
  enum OpenFlags : UINT {
    modeRead = 0x0000,        ///< Read only: the default.
    modeWrite = 0x0001,       ///< Write only.
    modeReadWrite = 0x0002,   ///< Read and write.
    shareCompat = 0x0000,     ///< Accepted and ignored.
    shareExclusive = 0x0010,  ///< Accepted and ignored: there is no locking.
    shareDenyWrite = 0x0020,  ///< Accepted and ignored: there is no locking.
    shareDenyRead = 0x0030,   ///< Accepted and ignored: there is no locking.
    shareDenyNone = 0x0040,   ///< Accepted and ignored.
    modeNoTruncate = 0x2000,  ///< With modeCreate: keep the content of an existing file.
    modeCreate = 0x1000,      ///< Create the file if it is missing, else empty it (unless modeNoTruncate).
    typeText = 0x4000,        ///< Accepted and ignored: there is no text translation.
    typeBinary = 0x8000,      ///< Accepted and ignored: every file is binary.
  };
  /// Where Seek counts from.
  enum SeekPosition {
    begin = 0,    ///< From the start of the file.
    current = 1,  ///< From the current position.
    end = 2       ///< From the end of the file.
  };

  /// A file object with no file open.
  CFile();
  /// Opens the file as Open does, or throws CFileException* (cause, errno value and name) on failure.
  CFile(LPCTSTR lpszFileName, UINT nOpenFlags);
  /// Closes an open file; a failure is not reported (call Close to learn of one).
  virtual ~CFile();
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  /// Opens the file, first closing one that is open without reporting a failure. On failure returns FALSE and, if
  /// pError is given, fills its cause, errno value and name; it throws nothing. A null or empty name fails with
  /// fileNotFound, a directory with invalidFile.
  virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);
  /// The file's length in bytes; throws CFileException* on failure or when no file is open.
  virtual ULONGLONG GetLength() const;
  /// The current position; throws CFileException* on failure or when no file is open.
  virtual ULONGLONG GetPosition() const;
  /// Moves to lOff bytes from nFrom (a SeekPosition) and returns the new position; throws CFileException* on
  /// failure (a position before the start, a file that cannot seek) or when no file is open.
  virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
  /// Seek(0, begin).
  void SeekToBegin() { Seek(0, begin); }
  /// Seek(0, end): returns the length.
  ULONGLONG SeekToEnd() { return Seek(0, end); }
  /// Reads up to nCount bytes into lpBuf; returns how many were read, fewer only at the end (0 there). Throws
  /// CFileException* on failure or when no file is open.
  virtual UINT Read(void* lpBuf, UINT nCount);
  /// Writes all nCount bytes from lpBuf, or throws CFileException* (diskFull when the system takes no more).
  virtual void Write(const void* lpBuf, UINT nCount);
  /// Does nothing: writes go straight to the system, and nothing forces them to the disk.
  virtual void Flush();
  /// Closes the file (nothing when none is open). It counts as closed even when closing fails, which throws
  /// CFileException*.
  virtual void Close();
  /// Closes the file and ignores any failure; nothing when none is open.
  virtual void Abort();

  /// The name as passed to Open (not made absolute); it stays after Close.
  CString GetFilePath() const { return m_strFileName; }
  /// Not in the class library: whether a file is open. Always FALSE for a CMemFile.
  BOOL IsOpen() const { return m_hFile >= 0; }

 protected:
  /// Throws a new CFileException with the cause of the errno value osError, osError itself and the file's name.
  [[noreturn]] void ThrowOsError(int osError) const;

  int m_hFile;            ///< The open file descriptor, or -1 when none is open.
  CString m_strFileName;  ///< The name as passed to Open.
};

#endif  // DEVDEF_PLATFORM_CFILE_H_
