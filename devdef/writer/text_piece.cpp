#include "devdef/writer/text_piece.h"

void DevdefWritePiece(CFile& file, const CString& strPiece) {
  if (strPiece.IsEmpty()) return;
  file.Write(static_cast<LPCTSTR>(strPiece), static_cast<UINT>(strPiece.GetLength()));
}

namespace {

// Digits of nValue in base nBase (10 or 16, upper case), written backwards
// from the end of a buffer of 11 bytes; returns the first digit.
char* DigitsBackwards(unsigned nValue, unsigned nBase, char* pEnd) {
  static const char kDigits[] = "0123456789ABCDEF";
  char* p = pEnd;
  do {
    *--p = kDigits[nValue % nBase];
    nValue /= nBase;
  } while (nValue != 0);
  return p;
}

void AppendDigits(CString& strLine, unsigned nValue, unsigned nBase, bool bMinus) {
  char buffer[12];
  char* const end = buffer + sizeof buffer;
  char* first = DigitsBackwards(nValue, nBase, end);
  if (bMinus) *--first = '-';
  strLine.Append(first, static_cast<int>(end - first));
}

}  // namespace

void DevdefAppendInt(CString& strLine, int nValue) {
  // The magnitude in unsigned arithmetic, so that INT_MIN needs no negation
  // of a signed value.
  const unsigned magnitude = nValue < 0 ? 0u - static_cast<unsigned>(nValue) : static_cast<unsigned>(nValue);
  AppendDigits(strLine, magnitude, 10, nValue < 0);
}

void DevdefAppendUnsigned(CString& strLine, unsigned nValue) { AppendDigits(strLine, nValue, 10, false); }

void DevdefAppendHex(CString& strLine, unsigned nValue) { AppendDigits(strLine, nValue, 16, false); }

void DevdefAppendLineStart(CString& strLine, DEVICE_KVRXDEF_ITEM& def) {
  switch (def.m_KvrType) {
    case 3: strLine += "KVR3DEF: "; break;
    case 4: strLine += "KVR4DEF: "; break;
    case 5: strLine += "KVR5DEF: "; break;
    default: break;
  }
  // A definition without a package number can only come from a host; it is
  // written with package 0 so that the line keeps its columns.
  const unsigned package = def.m_PackageIds.GetSize() > 0 ? def.m_PackageIds[0] : 0u;
  DevdefAppendInt(strLine, static_cast<int>(def.m_DefID));
  strLine += ' ';
  DevdefAppendUnsigned(strLine, package);
  strLine += ' ';
  DevdefAppendInt(strLine, static_cast<int>(def.m_ModulId));
  strLine += ' ';
  for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
    if (i > 0) strLine += ',';
    DevdefAppendUnsigned(strLine, static_cast<unsigned>(def.m_AdapterIds[i]));
  }
}
