/// The plain types that <windows.h> builds on; see there.
#pragma once

#include <cstddef>
#include <cstdint>

#define WINAPI
#define CALLBACK
#define APIENTRY

using BYTE = uint8_t;
using WORD = uint16_t;
using DWORD = uint32_t;
using INT = int;
using UINT = unsigned int;
using LONG = int32_t;
using SHORT = int16_t;
using BOOL = int;
using CHAR = char;
using WCHAR = char16_t; ///< 16 bits as on Windows, where it is wchar_t: no L"" literals in shared code
using ULONGLONG = uint64_t;
using LONGLONG = int64_t;
using SIZE_T = size_t;
using INT_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using WPARAM = UINT_PTR;
using LPARAM = INT_PTR;
using LRESULT = INT_PTR;
using HRESULT = int32_t;
using LPVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPDWORD = DWORD*;
using LPBOOL = BOOL*;
using LPCCH = const char*;
using LPCWCH = const WCHAR*;

using HANDLE = void*;
using HGLOBAL = HANDLE;
using HFILE = int;
using HWND = struct HWND__*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using HICON = struct HICON__*;
using HCURSOR = HICON;
using HBITMAP = struct HBITMAP__*;
using HDC = struct HDC__*;

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260
#define INVALID_HANDLE_VALUE ((HANDLE)(intptr_t)-1)
#define HFILE_ERROR ((HFILE)-1)

/// Points and rectangles in pixels; a rectangle's right and bottom lie outside of it.
struct POINT {
    LONG x;
    LONG y;
};
struct SIZE {
    LONG cx;
    LONG cy;
};
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

#define LOWORD(value) ((WORD)((uintptr_t)(value)&0xFFFF))
#define HIWORD(value) ((WORD)(((uintptr_t)(value) >> 16) & 0xFFFF))
#define LOBYTE(value) ((BYTE)((uintptr_t)(value)&0xFF))
#define MAKELONG(low, high) \
    ((LONG)(((WORD)((uintptr_t)(low)&0xFFFF)) | ((DWORD)((WORD)((uintptr_t)(high)&0xFFFF))) << 16))
