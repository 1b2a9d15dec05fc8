/// Drawing, as <windows.h> brings it; see there for what is offered and how.
///
/// Everything that windows show lies in one frame buffer of 32 bits a pixel.  A device context of a window or
/// of the screen draws into it at once, clipped to what is visible of the window at the moment of the call
/// that made it; one of memory draws into its bitmap.  Colours are exact: nothing but text is smoothed.
///
/// Brushes, pens, fonts, bitmaps and contexts are counted; win32/object_counts.h tells what is left.  A
/// handle that is none, or not of the kind that a call takes, makes the call fail without doing anything.
/// An object that a context has selected can't be deleted (FALSE, as with a bitmap on Windows; deviation for
/// the others, where Windows would delete it underneath).
#pragma once

#include "windef.h"

using HGDIOBJ = void*;
using HBRUSH = struct HBRUSH__*;
using HPEN = struct HPEN__*;
using HFONT = struct HFONT__*;
using COLORREF = DWORD; ///< 0x00BBGGRR

#define RGB(red, green, blue) \
    ((COLORREF)((DWORD)(BYTE)(red) | (DWORD)(BYTE)(green) << 8 | (DWORD)(BYTE)(blue) << 16))
#define GetRValue(color) ((BYTE)(color))
#define GetGValue(color) ((BYTE)(((WORD)(color)) >> 8))
#define GetBValue(color) ((BYTE)((color) >> 16))
#define CLR_INVALID 0xFFFFFFFFu

/// BITMAPINFO of 32 bits, BI_RGB, one plane alone: bytes blue, green, red, unused.  A negative height has its
/// top row first.
struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};
#define BI_RGB 0u
#define DIB_RGB_COLORS 0

struct TEXTMETRICA {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};

extern "C" {

// ---- Contexts -------------------------------------------------------------------------------------------

#define LOGPIXELSX 88
#define LOGPIXELSY 90
#define HORZRES 8
#define VERTRES 10
#define BITSPIXEL 12

/// 96 pixels per inch, the desktop's size, 32 bits; 0 for any other index.
int GetDeviceCaps(HDC context, int index);

/// A context of memory with a bitmap of one pixel.
HDC CreateCompatibleDC(HDC context);
BOOL DeleteDC(HDC context); ///< of memory alone; those of windows go back by ReleaseDC
int SaveDC(HDC context);    ///< objects, colours, modes, position and clipping; the number of the saved state
BOOL RestoreDC(HDC context, int number); ///< -1: the last one
/// Narrows the clipping to a rectangle in the context's coordinates, its right and bottom outside;
/// NULLREGION, SIMPLEREGION or COMPLEXREGION, 0 for no context.
int IntersectClipRect(HDC context, int left, int top, int right, int bottom);
#define NULLREGION 1
#define SIMPLEREGION 2
#define COMPLEXREGION 3

// ---- Objects --------------------------------------------------------------------------------------------

#define PS_SOLID 0
#define PS_DOT 2 ///< alternate pixels (deviation: Windows has dots of three)
#define PS_NULL 5
#define SHIFTJIS_CHARSET 128
#define DEFAULT_CHARSET 1
#define FW_NORMAL 400
#define FW_BOLD 700

#define WHITE_BRUSH 0
#define LTGRAY_BRUSH 1
#define GRAY_BRUSH 2
#define DKGRAY_BRUSH 3
#define BLACK_BRUSH 4
#define NULL_BRUSH 5
#define WHITE_PEN 6
#define BLACK_PEN 7
#define NULL_PEN 8
#define SYSTEM_FONT 13
#define DEFAULT_GUI_FONT 17

HBRUSH CreateSolidBrush(COLORREF color);
/// PS_SOLID, PS_DOT or PS_NULL; a width of 0 is one pixel.
HPEN CreatePen(int style, int width, COLORREF color);
/// Height in pixels: negative for the letters', positive for the line's.  Width 0, no angles.  The nearest
/// font of the machine (fontconfig) stands in for one that isn't there.
HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                  DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision,
                  DWORD quality, DWORD pitchAndFamily, LPCSTR face);
/// Black.  Deviation: always of 32 bits, also for a context of memory that has no bitmap of its own yet.
HBITMAP CreateCompatibleBitmap(HDC context, int width, int height);
HGDIOBJ GetStockObject(int index);                 ///< never deleted, DeleteObject of one gives TRUE
HGDIOBJ SelectObject(HDC context, HGDIOBJ object); ///< the one of its kind that was selected before
BOOL DeleteObject(HGDIOBJ object);

// ---- Drawing --------------------------------------------------------------------------------------------

#define R2_NOT 6
#define R2_XORPEN 7
#define R2_COPYPEN 13
#define TRANSPARENT 1
#define OPAQUE 2
#define SRCCOPY 0x00CC0020u
#define PATINVERT 0x005A0049u
#define DSTINVERT 0x00550009u
#define PATCOPY 0x00F00021u

int SetROP2(HDC context, int mode); ///< R2_NOT, R2_XORPEN or R2_COPYPEN for lines; the old one
int SetBkMode(HDC context, int mode);
COLORREF SetBkColor(HDC context, COLORREF color);
COLORREF SetTextColor(HDC context, COLORREF color);
BOOL MoveToEx(HDC context, int x, int y, POINT* old);
/// Without its last point, as on Windows; one pixel for each step on the longer axis, wider pens as squares.
BOOL LineTo(HDC context, int x, int y);
BOOL Rectangle(HDC context, int left, int top, int right, int bottom); ///< brush inside, pen around
COLORREF SetPixel(HDC context, int x, int y, COLORREF color);
COLORREF GetPixel(HDC context, int x, int y); ///< CLR_INVALID outside of the clipping
BOOL PatBlt(HDC context, int x, int y, int width, int height, DWORD operation);
/// SRCCOPY alone, extents of 0 and more.  The two contexts may overlap in the frame buffer; what would come
/// from outside of the source's pixels is left as it is.
BOOL BitBlt(HDC context, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
            DWORD operation);
/// The whole of a bitmap's rows: `firstLine` 0, `lines` its height.  The lines drawn.
int SetDIBitsToDevice(HDC context, int x, int y, DWORD width, DWORD height, int sourceX, int sourceY,
                      UINT firstLine, UINT lines, const void* bits, const BITMAPINFO* information,
                      UINT colorUse);

// ---- Text: cp932, one line ------------------------------------------------------------------------------

/// How many bytes of the text fit into `most` pixels (whole characters), the width up to the end of each byte
/// and the size of the whole text; `fit` and `widths` may be null.
BOOL GetTextExtentExPointA(HDC context, LPCSTR text, int bytes, int most, int* fit, int* widths, SIZE* size);
BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int bytes, SIZE* size);
BOOL GetTextMetricsA(HDC context, TEXTMETRICA* metrics);
/// The left top of the text's box at (x, y).
BOOL TextOutA(HDC context, int x, int y, LPCSTR text, int bytes);

} // extern "C"
