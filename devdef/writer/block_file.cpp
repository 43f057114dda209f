#include "devdef/writer/block_file.h"

#include <cstring>
#include <typeinfo>

#include "devdef/platform/exceptions.h"

DevdefBlockFile::DevdefBlockFile(CFile& target) : m_target(target), m_block(new char[kBlockSize]) {}

bool DevdefBlockFile::Gathers(CFile& file) { return typeid(file) == typeid(CFile); }

void DevdefBlockFile::Write(const void* lpBuf, UINT nCount) {
  if (nCount > kBlockSize - m_nUsed) {
    WritePending();
    if (nCount >= kBlockSize) {
      m_target.Write(lpBuf, nCount);
      return;
    }
  }
  std::memcpy(m_block.get() + m_nUsed, lpBuf, nCount);
  m_nUsed += nCount;
}

void DevdefBlockFile::WritePending() {
  const UINT used = m_nUsed;
  m_nUsed = 0;
  if (used > 0) m_target.Write(m_block.get(), used);
}

ULONGLONG DevdefBlockFile::GetLength() const {
  const_cast<DevdefBlockFile*>(this)->WritePending();
  return m_target.GetLength();
}

ULONGLONG DevdefBlockFile::GetPosition() const {
  const_cast<DevdefBlockFile*>(this)->WritePending();
  return m_target.GetPosition();
}

ULONGLONG DevdefBlockFile::Seek(LONGLONG lOff, UINT nFrom) {
  WritePending();
  return m_target.Seek(lOff, nFrom);
}

UINT DevdefBlockFile::Read(void* lpBuf, UINT nCount) {
  WritePending();
  return m_target.Read(lpBuf, nCount);
}

void DevdefBlockFile::Flush() {
  WritePending();
  m_target.Flush();
}

void DevdefBlockFile::Close() {
  WritePending();
  m_target.Close();
}

void DevdefBlockFile::Abort() {
  try {
    WritePending();
  } catch (CException* e) {
    e->Delete();
  }
  m_target.Abort();
}
