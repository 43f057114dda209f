// The recognisers of the read loop. Each scans the read buffer from
// m_nBufPos, never past m_nBufSize, and leaves the position one byte short of
// where the loop is to go on, since the loop's tail adds one.
#include <cstring>

#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/read_observer.h"

namespace {

bool IsLineEnd(unsigned char c) { return c == '\n' || c == '\r'; }
bool EndsName(unsigned char c) { return c == ' ' || IsLineEnd(c); }

const char kVersionKeyword[] = "DEF_LAYOUT_VERSION";
const int kVersionKeywordLength = sizeof kVersionKeyword - 1;

// strToken equals the keyword without regard to case.
bool IsVersionKeyword(const CString& strToken) {
  return strToken.GetLength() == kVersionKeywordLength && strToken.CompareNoCase(kVersionKeyword) == 0;
}

}  // namespace

int KCDeviceDefCtrl::RDF_ReadDefVersion(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                        unsigned char& cCurrent, int& nLineState) {
  if (!strToken.IsEmpty() || posKind != nullptr || posManuf != nullptr || posDevice != nullptr || m_nFileLayout != -1) {
    return 0;
  }
  const BYTE* buffer = m_FileBuf.GetData();
  const DWORD lineStart = m_nBufPos;
  bool keywordSeen = false;
  for (;;) {
    if (m_nBufPos >= m_nBufSize) {
      if (DevdefReadObserver* observer = DevdefActiveReadObserver()) {
        observer->VersionLine(lineStart, m_nBufSize, false, keywordSeen, -1, false, -1);
      }
      return 0;
    }
    cCurrent = buffer[m_nBufPos];
    // The keyword is compared before each byte is appended, so it is seen
    // exactly when the line opens with it; only at its length can it match.
    if (!keywordSeen && IsVersionKeyword(strToken)) keywordSeen = true;
    if (IsLineEnd(cCurrent)) break;
    strToken += cCurrent;
    ++m_nBufPos;
  }
  bool numberRead = false;
  int equals = -1;
  if (keywordSeen) {
    equals = strToken.Find('=');
    int layout = 0;
    if (equals >= 0 && DevdefScanDecimal(static_cast<LPCTSTR>(strToken) + equals + 1, &layout) == 1) {
      m_nFileLayout = layout;
      numberRead = true;
    }
  }
  if (DevdefReadObserver* observer = DevdefActiveReadObserver()) {
    observer->VersionLine(lineStart, m_nBufPos, true, keywordSeen,
                          equals >= 0 ? static_cast<long>(lineStart) + equals : -1, numberRead, m_nFileLayout);
  }
  --m_nBufPos;
  if (!numberRead) return 0;
  nLineState = 2;
  return 1;
}

POSITION KCDeviceDefCtrl::RDF_ManufacturerItem(POSITION posKind, CString& strToken, unsigned char& cCurrent,
                                               int& nLineState) {
  DevdefReadObserver* const observer = DevdefActiveReadObserver();
  const DWORD colon = m_nBufPos;
  if (posKind == nullptr) {
    if (observer != nullptr) observer->Manufacturer(colon, colon, nullptr);
    return nullptr;
  }
  TAG_KIND_OF_DEVICE& kind = m_DeviceList.GetAt(posKind);
  if (kind.m_pManufList == nullptr) kind.m_pManufList = new CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>(10);
  const BYTE* buffer = m_FileBuf.GetData();
  for (;;) {
    ++m_nBufPos;
    if (m_nBufPos >= m_nBufSize) {
      if (observer != nullptr) observer->Manufacturer(colon, m_nBufSize, nullptr);
      return nullptr;
    }
    cCurrent = buffer[m_nBufPos];
    if (EndsName(cCurrent)) break;
    strToken += cCurrent;
  }
  const DWORD nameEnd = m_nBufPos;
  --m_nBufPos;
  strToken.Replace('_', ' ');
  TAG_DEVICE_MANUF manuf;
  manuf.m_Name = strToken;
  manuf.m_pDeviceList = nullptr;
  manuf.m_KindPos = posKind;
  const POSITION posManuf = kind.m_pManufList->AddTail(manuf);
  strToken.Empty();
  nLineState = 2;
  if (observer != nullptr) observer->Manufacturer(colon, nameEnd, posManuf);
  return posManuf;
}

int KCDeviceDefCtrl::RDF_CheckForDeviceKindItem(POSITION& posKind, CString& strToken, int& nLineState) {
  if (!(m_nBufPos + 1 < m_nBufSize) || !EndsName(m_FileBuf.GetData()[m_nBufPos + 1])) return 0;
  strToken.Replace('_', ' ');
  TAG_KIND_OF_DEVICE kind;
  kind.m_Name = strToken;
  kind.m_pManufList = nullptr;
  posKind = m_DeviceList.AddTail(kind);
  strToken.Empty();
  nLineState = 2;
  return 1;
}

int KCDeviceDefCtrl::RDF_CheckForDeviceItem(POSITION posKind, POSITION posManuf, POSITION& posDevice, CString& strToken,
                                            unsigned char& cCurrent, int& nLineState) {
  if (posKind == nullptr || posManuf == nullptr) return 0;
  const BYTE* buffer = m_FileBuf.GetData();
  const DWORD nameStart = m_nBufPos;
  for (;;) {
    if (m_nBufPos >= m_nBufSize) return 0;
    cCurrent = buffer[m_nBufPos];
    if (cCurrent == ':') return 0;
    if (EndsName(cCurrent)) break;
    strToken += cCurrent;
    ++m_nBufPos;
  }
  DWORD flags = 0;
  if (!strToken.IsEmpty()) {
    const unsigned char first = static_cast<unsigned char>(strToken[0]);
    if (first == 0xB0) {
      strToken.Delete(0);
      flags |= 1;
    } else if (first == 0xDF) {
      strToken.Delete(0);
      flags |= 2;
    }
    strToken.Replace('_', ' ');
  }
  DEVICE_ITEM device;
  device.m_DeviceName = strToken;
  device.m_DeviceFlags = flags;
  device.m_ManufPos = posManuf;
  device.m_KindPos = posKind;
  // The current manufacturer may belong to an earlier kind than the current
  // one, so it is reached through its own position.
  TAG_DEVICE_MANUF& manuf = CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf);
  if (manuf.m_pDeviceList == nullptr) manuf.m_pDeviceList = new CList<DEVICE_ITEM, DEVICE_ITEM&>(10);
  posDevice = manuf.m_pDeviceList->AddTail(device);
  strToken.Empty();
  nLineState = 2;
  if (DevdefReadObserver* observer = DevdefActiveReadObserver()) {
    observer->Device(nameStart, m_nBufPos, posManuf, posDevice);
  }
  return 1;
}

int KCDeviceDefCtrl::RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                         unsigned char& cCurrent, int& nLineState) {
  return RDF_ReadBlockLines(posKind, posManuf, posDevice, strToken, cCurrent, nLineState,
                            &KCDeviceDefCtrl::RDF_ReadKvrXDefLine);
}

namespace {

// The first line end ('\n' or '\r') at or behind nFrom, or nEnd. Both are
// looked for in windows that double in size, so that the search costs the
// length of the line even in a file whose lines all end in the same one of
// the two.
DWORD LineEndFrom(const BYTE* pBuffer, DWORD nFrom, DWORD nEnd) {
  size_t window = 256;
  for (DWORD at = nFrom; at < nEnd; window *= 2) {
    const BYTE* from = pBuffer + at;
    const size_t count = nEnd - at < window ? nEnd - at : window;
    const void* newline = std::memchr(from, '\n', count);
    const size_t untilNewline =
        newline != nullptr ? static_cast<size_t>(static_cast<const BYTE*>(newline) - from) : count;
    const void* ret = std::memchr(from, '\r', untilNewline);
    if (ret != nullptr) return at + static_cast<DWORD>(static_cast<const BYTE*>(ret) - from);
    if (newline != nullptr) return at + static_cast<DWORD>(untilNewline);
    at += static_cast<DWORD>(count);
  }
  return nEnd;
}

// Where the comment of the line [nFrom, nEnd) starts (its first ";"), or nEnd.
DWORD CommentFrom(const BYTE* pBuffer, DWORD nFrom, DWORD nEnd) {
  if (nFrom >= nEnd) return nEnd;
  const void* semicolon = std::memchr(pBuffer + nFrom, ';', nEnd - nFrom);
  return semicolon != nullptr ? static_cast<DWORD>(static_cast<const BYTE*>(semicolon) - pBuffer) : nEnd;
}

}  // namespace

int KCDeviceDefCtrl::RDF_ReadBlockLines(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                        unsigned char& cCurrent, int& nLineState, BlockLineReader pfnLine) {
  if (posKind == nullptr || posManuf == nullptr || posDevice == nullptr) return 0;
  // However the block ends, the device's definitions are all read: its array
  // gives back the room that growing left over (a catalogue holds many
  // devices with a few definitions each).
  struct TrimOnExit {
    CArray<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& defs;
    ~TrimOnExit() {
      try {
        defs.FreeExtra();
      } catch (...) {  // no memory for the smaller block: the array stays as it is
      }
    }
  } trim{CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice).m_DefArray};
  const BYTE* buffer = m_FileBuf.GetData();
  DevdefReadObserver* const observer = DevdefActiveReadObserver();
  bool braceSeen = false;
  for (;;) {
    // Takes the line's bytes up to its line end, without white space at
    // either end; from the first ";" on none is kept.
    const DWORD lineStart = m_nBufPos;
    const DWORD at = LineEndFrom(buffer, lineStart, m_nBufSize);
    if (at >= m_nBufSize) {
      // The buffer ends inside the line: the last byte looked at stays.
      if (at > lineStart) cCurrent = buffer[at - 1];
      m_nBufPos = m_nBufSize;
      const DWORD comment = CommentFrom(buffer, lineStart, at);
      strToken.Empty();
      strToken.Append(reinterpret_cast<const char*>(buffer) + lineStart, static_cast<int>(comment - lineStart));
      if (observer != nullptr) {
        observer->BlockLine(lineStart, comment, m_nBufSize, kDevdefBlockCutOff);
        observer->BlockEnd(0, m_nBufPos);
      }
      return 0;
    }
    cCurrent = buffer[at];
    m_nBufPos = at + 1;
    const DWORD lineEnd = at;
    DWORD first = lineStart;
    DWORD last = CommentFrom(buffer, lineStart, at);
    while (first < last && DevdefIsSpace(buffer[first])) ++first;
    while (last > first && DevdefIsSpace(buffer[last - 1])) --last;
    strToken.Empty();
    strToken.Append(reinterpret_cast<const char*>(buffer) + first, static_cast<int>(last - first));
    if (strToken.IsEmpty()) continue;
    if (!braceSeen) {
      if (strToken[0] != '{') {
        if (observer != nullptr) {
          observer->BlockLine(first, last, lineEnd, kDevdefBlockNotOpen);
          observer->BlockEnd(0, m_nBufPos);
        }
        return 0;
      }
      braceSeen = true;
      if (observer != nullptr) observer->BlockLine(first, last, lineEnd, kDevdefBlockOpen);
      continue;
    }
    if (strToken[0] == '}') {
      strToken.Empty();
      // The "}" stands in front of its line end, so lineEnd is at least 1.
      m_nBufPos = lineEnd - 1;
      nLineState = 2;
      if (observer != nullptr) {
        observer->BlockLine(first, last, lineEnd, kDevdefBlockClose);
        observer->BlockEnd(1, m_nBufPos);
      }
      return 1;
    }
    if (observer != nullptr) observer->BlockLine(first, last, lineEnd, kDevdefBlockLine);
    // A virtual reader named here is still reached through the virtual table.
    if (!(this->*pfnLine)(posKind, posManuf, posDevice, strToken)) {
      if (observer != nullptr) observer->BlockEnd(0, m_nBufPos);
      return 0;
    }
  }
}
