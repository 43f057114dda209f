/// \file
/// CArchive, the class library's buffered stream over a CFile.
#ifndef DEVDEF_PLATFORM_CARCHIVE_H_
#define DEVDEF_PLATFORM_CARCHIVE_H_

#include "devdef/platform/export.h"

#include "devdef/platform/types.h"

class CFile;

/// The class library's buffered byte stream over a CFile, for storing or for loading. Bytes written through the
/// archive collect in its buffer and reach the file when the buffer is full, on Flush and on Close; destruction closes
/// an archive that is still open, unless bNoFlushOnDelete is given. The archive neither owns nor closes its file,
/// which must outlive it.
///
/// Failures are thrown as pointers that the catcher frees with Delete(): CArchiveException* for a transfer against
/// the archive's direction or without a file, CFileException* from the file itself. Differences: the file may be
/// null; the destructor swallows a failure of its flush, so a host that must know calls Close first. It carries raw
/// bytes only, with no serialization of objects: no operators << and >>, WriteObject, ReadObject, WriteString,
/// ReadString, WriteCount, ReadCount, CRuntimeClass, schemas or m_pDocument.
class DEVDEF_API CArchive {
 public:
  /// The direction, with the class library's values; bNoFlushOnDelete may be ORed in.
  enum Mode {
    store = 0,            ///< Writing to the file.
    load = 1,             ///< Reading from the file.
    bNoFlushOnDelete = 2  ///< The destructor drops the buffered bytes instead of flushing them.
  };

  /// An archive on pFile in direction nMode, with a buffer of nBufSize bytes (at least 128) of its own, or, when lpBuf
  /// is given, the caller's buffer of nBufSize bytes, which must outlive the archive. pFile may be null: such an
  /// archive has no file (GetFile() is null) and every transfer through it raises CArchiveException*.
  CArchive(CFile* pFile, UINT nMode, int nBufSize = 4096, void* lpBuf = nullptr);
  /// Closes the archive if it still has a file (unless bNoFlushOnDelete), ignoring and freeing any exception, and
  /// frees its own buffer. The file stays open.
  ~CArchive();
  CArchive(const CArchive&) = delete;
  CArchive& operator=(const CArchive&) = delete;

  /// The file; null when there is none or after Close or Abort.
  CFile* GetFile() const { return m_pFile; }
  /// Whether the archive writes (load is not set).
  BOOL IsStoring() const { return (m_nMode & load) == 0; }
  /// Whether the archive reads (load is set).
  BOOL IsLoading() const { return (m_nMode & load) != 0; }

  /// Adds nMax bytes from lpBuf to the buffer, writing the buffer to the file whenever it is full; nMax 0 does
  /// nothing. Throws CArchiveException* without a file (genericException) or when loading (readOnly), and passes on
  /// the file's CFileException*.
  void Write(const void* lpBuf, UINT nMax);
  /// Reads up to nMax bytes into lpBuf through the buffer; returns how many, fewer only at the end of the file (0
  /// there). Throws CArchiveException* without a file (genericException) or when storing (writeOnly), and passes on
  /// the file's CFileException*.
  UINT Read(void* lpBuf, UINT nMax);
  /// Writes the buffered bytes to the file and flushes the file; nothing when loading or without a file. The bytes
  /// leave the buffer even when the file refuses them, so a failed flush is not repeated.
  void Flush();
  /// Flushes and detaches from the file, which stays open; nothing without a file. The archive is detached even
  /// when the flush throws, and the exception passes on.
  void Close();
  /// Detaches from the file without flushing: buffered bytes are dropped. Throws nothing.
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
