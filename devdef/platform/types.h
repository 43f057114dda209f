/// \file
/// Basic types and constants of the Windows class library, with the widths a 32-bit Windows program sees, on every
/// platform. Text is bytes: there is no Unicode build, so TCHAR is char.
#ifndef DEVDEF_PLATFORM_TYPES_H_
#define DEVDEF_PLATFORM_TYPES_H_

#include <cstdint>

typedef int BOOL;                 ///< A truth value: 0 is false, anything else true (TRUE is 1).
typedef unsigned char BYTE;       ///< An unsigned byte.
typedef std::uint16_t WORD;       ///< An unsigned 16-bit number.
typedef std::uint32_t DWORD;      ///< An unsigned 32-bit number, everywhere; `unsigned long` is 64 bits on Linux.
typedef unsigned int UINT;        ///< An unsigned 32-bit number.
typedef std::int32_t LONG;        ///< A signed 32-bit number, everywhere; `long` is 64 bits on Linux.
typedef std::uint64_t ULONGLONG;  ///< An unsigned 64-bit number: file lengths and positions.
typedef std::int64_t LONGLONG;    ///< A signed 64-bit number: file offsets.
typedef char TCHAR;               ///< A character: always a byte (no Unicode build).
typedef const char* LPCTSTR;      ///< A read-only zero-terminated byte string.
typedef const char* LPCSTR;       ///< A read-only zero-terminated byte string.
typedef char* LPTSTR;             ///< A writable zero-terminated byte string.
typedef char* LPSTR;              ///< A writable zero-terminated byte string.

#ifndef TRUE
/// The BOOL value for true; left alone when a system header defines it.
#define TRUE 1
#endif
#ifndef FALSE
/// The BOOL value for false; left alone when a system header defines it.
#define FALSE 0
#endif

/// The type behind HWND; never defined.
struct HWND__;
/// A window handle. There is no window system: it is only passed along and never looked at.
typedef HWND__* HWND;

/// The type behind POSITION; it has no content.
struct __POSITION {};
/// The opaque handle of a CList node; null addresses no node. Compare it with null or another POSITION only.
typedef __POSITION* POSITION;

/// The host's tree-view item; the type is never defined.
struct _TREEITEM;
/// A handle of the host's tree-view item: the library only stores, copies and compares it.
typedef _TREEITEM* HTREEITEM;

/// Message box types (buttons and icon, ORed together), with the values of the Windows API.
enum : UINT {
  MB_OK = 0x00000000u,                  ///< One OK button.
  MB_OKCANCEL = 0x00000001u,            ///< OK and Cancel buttons.
  MB_YESNO = 0x00000004u,               ///< Yes and No buttons.
  MB_ICONHAND = 0x00000010u,            ///< A stop-sign icon.
  MB_ICONQUESTION = 0x00000020u,        ///< A question-mark icon.
  MB_ICONEXCLAMATION = 0x00000030u,     ///< An exclamation-mark icon.
  MB_ICONINFORMATION = 0x00000040u,     ///< An information icon.
  MB_ICONERROR = MB_ICONHAND,           ///< The same as MB_ICONHAND.
  MB_ICONWARNING = MB_ICONEXCLAMATION,  ///< The same as MB_ICONEXCLAMATION.
};
/// Message box results, with the values of the Windows API.
enum : int {
  IDOK = 1,      ///< OK was chosen.
  IDCANCEL = 2,  ///< Cancel was chosen.
  IDYES = 6,     ///< Yes was chosen.
  IDNO = 7       ///< No was chosen.
};

#endif  // DEVDEF_PLATFORM_TYPES_H_
