// Basic types and constants of the Windows class library, with the widths a
// 32-bit Windows program sees, on every platform.
#ifndef DEVDEF_PLATFORM_TYPES_H_
#define DEVDEF_PLATFORM_TYPES_H_

#include <cstdint>

typedef int BOOL;
typedef unsigned char BYTE;
typedef std::uint16_t WORD;
typedef std::uint32_t DWORD;  // 32 bits everywhere, unlike unsigned long
typedef unsigned int UINT;
typedef std::int32_t LONG;
typedef std::uint64_t ULONGLONG;
typedef std::int64_t LONGLONG;
typedef char TCHAR;
typedef const char* LPCTSTR;
typedef const char* LPCSTR;
typedef char* LPTSTR;
typedef char* LPSTR;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

// A window handle. There is no window system; it is only passed along.
struct HWND__;
typedef HWND__* HWND;

// Opaque handle of a list node; null addresses no node.
struct __POSITION {};
typedef __POSITION* POSITION;

// The host's tree-view item: only stored, copied and compared.
struct _TREEITEM;
typedef _TREEITEM* HTREEITEM;

// Message box types and results.
enum : UINT {
  MB_OK = 0x00000000u,
  MB_OKCANCEL = 0x00000001u,
  MB_YESNO = 0x00000004u,
  MB_ICONHAND = 0x00000010u,
  MB_ICONQUESTION = 0x00000020u,
  MB_ICONEXCLAMATION = 0x00000030u,
  MB_ICONINFORMATION = 0x00000040u,
  MB_ICONERROR = MB_ICONHAND,
  MB_ICONWARNING = MB_ICONEXCLAMATION,
};
enum : int { IDOK = 1, IDCANCEL = 2, IDYES = 6, IDNO = 7 };

#endif  // DEVDEF_PLATFORM_TYPES_H_
