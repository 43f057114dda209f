// Building the pieces of text that the writers put out.
#ifndef DEVDEF_WRITER_TEXT_PIECE_H_
#define DEVDEF_WRITER_TEXT_PIECE_H_

#include "devdef/catalogue/definition_item.h"
#include "devdef/platform/cfile.h"
#include "devdef/platform/cstring.h"

// Writes the piece to the file in one write of exactly its length.
void DevdefWritePiece(CFile& file, const CString& strPiece);

// Append a number exactly as "%d", "%u" and "%X" print it. The writers put
// out a dozen numbers per line; going through a format for each costs more
// than all the rest of the line.
void DevdefAppendInt(CString& strLine, int nValue);
void DevdefAppendUnsigned(CString& strLine, unsigned nValue);
void DevdefAppendHex(CString& strLine, unsigned nValue);

// Appends the keyword of the definition's generation ("KVR3DEF: " and so
// on; nothing for a generation other than 3, 4 and 5), then the id, the
// first package number and the module, each with a blank behind it, then
// the adapter numbers joined by ",".
void DevdefAppendLineStart(CString& strLine, DEVICE_KVRXDEF_ITEM& def);

#endif  // DEVDEF_WRITER_TEXT_PIECE_H_
