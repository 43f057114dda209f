// Helpers shared by the definition line readers of every layout.
#ifndef DEVDEF_READER_DEFINITION_HEAD_H_
#define DEVDEF_READER_DEFINITION_HEAD_H_

#include "devdef/catalogue/definition_item.h"
#include "devdef/catalogue/device_item.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/typed_arrays.h"

// The generation of a definition line keyword at the start of pszLine:
// 3, 4 or 5 for "KVR3DEF:", "KVR4DEF:", "KVR5DEF:" (compared exactly), else 0.
int DevdefDefinitionKeyword(const char* pszLine);

// Splits a definition line (nLength bytes at pLine, zero-terminated behind
// them) opening with one of the three keywords: sets the generation of def,
// its text (what follows the first colon behind the keyword) and strHead,
// the number fields in between, normalised: white space at the start is
// removed, tabs become blanks, and every run of blanks closes up to one
// blank (a trailing blank stays). False when the line has no keyword or no
// colon. strHead keeps its storage, so a caller that passes the same string
// for every line allocates nothing for the head.
bool DevdefSplitDefinitionLine(const char* pLine, int nLength, DEVICE_KVRXDEF_ITEM& def, CString& strHead);

// The header list that a keyword names, compared without regard to case:
// "HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST", or null.
CStringArray* DevdefHeaderList(const CString& strKeyword);

// What AddDevice does for a definition that a reader built and drops
// afterwards: sets its hidden bit by nKvrType and its owner, then moves it
// into the device's array instead of copying it.
void DevdefAddReadDefinition(DEVICE_ITEM& device, int nKvrType, DEVICE_KVRXDEF_ITEM& def);

// Appends to pList the piece of a one-line header list that starts at
// nPieceStart in strLine, trimmed of white space at its start and of blanks,
// tabs, "," and ";" at its end; an empty piece is passed over.
void DevdefAppendListPiece(CStringArray* pList, const CString& strLine, int nPieceStart);

#endif  // DEVDEF_READER_DEFINITION_HEAD_H_
