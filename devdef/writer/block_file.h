// A file in front of the library's own plain CFile that gathers the pieces
// written to it into blocks, so that writing a catalogue costs a system call
// per 64 KB instead of one per piece.
#ifndef DEVDEF_WRITER_BLOCK_FILE_H_
#define DEVDEF_WRITER_BLOCK_FILE_H_

#include <memory>

#include "devdef/platform/cfile.h"

class DevdefBlockFile : public CFile {
 public:
  static const UINT kBlockSize = 65536;

  explicit DevdefBlockFile(CFile& target);
  // Drops what was not written: the owner calls WritePending first.
  ~DevdefBlockFile() override = default;

  // Whether pieces for file may be gathered: only for the library's plain
  // CFile, whose writes nobody else sees. A subclass, a host's file
  // included, is handed every piece itself.
  static bool Gathers(CFile& file);

  // Holds the piece; a full block, or a piece as large as a block, goes to
  // the file at once.
  void Write(const void* lpBuf, UINT nCount) override;
  // Writes what is held to the file in one write. Should that fail, what is
  // held is dropped, so that nothing reaches the file behind the failure,
  // and the exception passes on.
  void WritePending();

  // Everything else goes to the file, after what is held; Abort ignores a
  // failure to write it.
  ULONGLONG GetLength() const override;
  ULONGLONG GetPosition() const override;
  ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
  UINT Read(void* lpBuf, UINT nCount) override;
  void Flush() override;
  void Close() override;
  void Abort() override;

 private:
  CFile& m_target;
  std::unique_ptr<char[]> m_block;
  UINT m_nUsed = 0;
};

#endif  // DEVDEF_WRITER_BLOCK_FILE_H_
