/// The Windows calls that the plug-in makes, under Windows' own names, for POSIX.
///
/// Nothing else is offered: a call that isn't listed here doesn't compile or link, and an argument that a
/// call here can't serve is refused with ERROR_NOT_SUPPORTED and a line on standard error.  The same source
/// compiles against the real header, so what is said here holds there unless it is marked as a deviation.
///
/// Names.  File names and paths are cp932 with backslashes.  A backslash separates only where it is a
/// character of its own, not where it is the second byte of a double-byte character; doubled and trailing
/// backslashes count once.  A path that begins with a backslash begins at the root of the one tree, any other
/// one at the working directory.  On disk the names are UTF-8 (see win32/path_names.h).  Deviations from
/// Windows, for all calls that take a path:
///  - a path that begins with a letter and a colon is refused (ERROR_INVALID_DRIVE): there are no drives;
///  - a component that holds '/', or that consists of dots and blanks, is refused (ERROR_INVALID_NAME), so
///    that no name leads out of a folder;
///  - names are compared as bytes, not without case, and keep their trailing dots and blanks;
///  - what the file system allows in a name is allowed, also `? * : " < > |` (FindFirstFileA takes `*` and
///  `?`
///    as wildcards all the same).
///
/// Errors.  As on Windows, a call that fails leaves its reason to GetLastError, for the calling thread.
#pragma once

#include "windef.h"

#define S_OK ((HRESULT)0)
#define E_FAIL ((HRESULT)0x80004005)
#define E_INVALIDARG ((HRESULT)0x80070057)
#define E_OUTOFMEMORY ((HRESULT)0x8007000E)
#define SUCCEEDED(result) ((HRESULT)(result) >= 0)
#define FAILED(result) ((HRESULT)(result) < 0)

#define ERROR_SUCCESS 0u
#define ERROR_FILE_NOT_FOUND 2u
#define ERROR_PATH_NOT_FOUND 3u
#define ERROR_TOO_MANY_OPEN_FILES 4u
#define ERROR_ACCESS_DENIED 5u
#define ERROR_INVALID_HANDLE 6u
#define ERROR_NOT_ENOUGH_MEMORY 8u
#define ERROR_INVALID_DRIVE 15u
#define ERROR_NOT_SAME_DEVICE 17u
#define ERROR_NO_MORE_FILES 18u
#define ERROR_WRITE_PROTECT 19u
#define ERROR_GEN_FAILURE 31u
#define ERROR_SHARING_VIOLATION 32u
#define ERROR_HANDLE_EOF 38u
#define ERROR_NOT_SUPPORTED 50u
#define ERROR_FILE_EXISTS 80u
#define ERROR_INVALID_PARAMETER 87u
#define ERROR_DISK_FULL 112u
#define ERROR_INSUFFICIENT_BUFFER 122u
#define ERROR_INVALID_NAME 123u
#define ERROR_MOD_NOT_FOUND 126u
#define ERROR_NEGATIVE_SEEK 131u
#define ERROR_DIR_NOT_EMPTY 145u
#define ERROR_ALREADY_EXISTS 183u
#define ERROR_FILENAME_EXCED_RANGE 206u
#define ERROR_DIRECTORY 267u
#define ERROR_INVALID_FLAGS 1004u
#define ERROR_NO_UNICODE_TRANSLATION 1113u
#define ERROR_INVALID_WINDOW_HANDLE 1400u
#define ERROR_CANNOT_FIND_WND_CLASS 1407u
#define ERROR_CLASS_ALREADY_EXISTS 1410u
#define ERROR_CLASS_DOES_NOT_EXIST 1411u
#define ERROR_CLASS_HAS_WINDOWS 1412u
#define ERROR_INVALID_INDEX 1413u
#define ERROR_IO_DEVICE 1117u
#define ERROR_RESOURCE_NAME_NOT_FOUND 1814u

/// 100-nanosecond steps since 1601-01-01 00:00 UTC, in two halves.
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

/// A broken-down time, years 1601 to 30827, months from 1, wDayOfWeek 0 for Sunday.
struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};

/// Which file an open handle leads to, and how it stands.  Two handles of one file give the same volume and
/// index; a file that replaces another has an index of its own as long as both exist.
struct BY_HANDLE_FILE_INFORMATION {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime; ///< deviation: as in WIN32_FIND_DATAA
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD dwVolumeSerialNumber;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD nNumberOfLinks;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
};

/// The place in the file that a read or a write is for.
struct OVERLAPPED {
    uintptr_t Internal; ///< not used here
    uintptr_t InternalHigh;
    DWORD Offset;
    DWORD OffsetHigh;
    HANDLE hEvent; ///< not used here
};

/// One entry of a directory.
struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime; ///< deviation: the last change of name or rights, POSIX keeps no other
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0; ///< IO_REPARSE_TAG_SYMLINK for a link, else 0
    DWORD dwReserved1;
    CHAR cFileName[MAX_PATH];
    CHAR cAlternateFileName[14]; ///< deviation: always empty, there are no short names
};

extern "C" {

DWORD GetLastError(void);
void SetLastError(DWORD code);

// ---- Files ----------------------------------------------------------------------------------------------

// Access and sharing of _lopen.  What an opening denies is denied to every other opening of the file, in this
// process and others, for as long as the file is open, and an opening that asks for what another one denies
// fails with ERROR_SHARING_VIOLATION; so does deleting, moving or replacing a file that is open.  COMPAT
// denies nothing.  Deviation: this holds among programs over these calls, by advisory locks of the file
// system; where that has no locks, an opening that denies something is refused (ERROR_NOT_SUPPORTED).
#define OF_READ 0x00000000
#define OF_WRITE 0x00000001
#define OF_READWRITE 0x00000002
#define OF_SHARE_COMPAT 0x00000000
#define OF_SHARE_EXCLUSIVE 0x00000010
#define OF_SHARE_DENY_WRITE 0x00000020
#define OF_SHARE_DENY_READ 0x00000030
#define OF_SHARE_DENY_NONE 0x00000040

#define FILE_BEGIN 0
#define FILE_CURRENT 1
#define FILE_END 2

/// Opens a file that exists; HFILE_ERROR if it doesn't or is a directory.
HFILE _lopen(LPCSTR path, int accessAndSharing);

/// Makes a file, or empties the one that exists, and opens it for reading and writing, denying nothing.
/// Attributes other than 0 (an ordinary file) are refused.
HFILE _lcreat(LPCSTR path, int attributes);

/// Reads up to `bytes` bytes: fewer only at the end of the file.  (UINT)HFILE_ERROR on failure.
UINT _lread(HFILE file, LPVOID buffer, UINT bytes);

/// Writes at the current position.  Returns the bytes written: fewer than asked for, or (UINT)HFILE_ERROR, if
/// the disk is full or fails.  0 bytes cut or extend the file to the current position.
UINT _lwrite(HFILE file, LPCCH buffer, UINT bytes);

/// Moves the position and returns it; HFILE_ERROR on failure, also if it would not fit a LONG.
LONG _llseek(HFILE file, LONG offset, int origin);

/// 0, or HFILE_ERROR.  The handle is gone in either case.
HFILE _lclose(HFILE file);

#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_SHARE_READ 0x00000001
#define FILE_SHARE_WRITE 0x00000002
#define CREATE_NEW 1
#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define FILE_ATTRIBUTE_NORMAL 0x00000080

/// Opens a file, or makes it where the disposition says so: CREATE_NEW fails with ERROR_FILE_EXISTS if it is
/// there, OPEN_EXISTING with ERROR_FILE_NOT_FOUND if it isn't, OPEN_ALWAYS takes it either way and leaves
/// ERROR_ALREADY_EXISTS or ERROR_SUCCESS behind.  A new file's name is on the disk when the call returns.
/// What `sharing` leaves out is denied to others, as with _lopen.  The access is GENERIC_READ with or without
/// GENERIC_WRITE, the attributes are FILE_ATTRIBUTE_NORMAL; all else is refused.  INVALID_HANDLE_VALUE on
/// failure.  An HFILE is the same value as an int.
HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD sharing, struct SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD attributes, HANDLE pattern);
BOOL CloseHandle(HANDLE file);

/// Read or write at the place that `at` tells, which must be given.  Reading gives fewer bytes only at the
/// end of the file, and fails with ERROR_HANDLE_EOF if none stand there; writing tells in `done` how many
/// bytes were written when it fails.
BOOL ReadFile(HANDLE file, LPVOID bytes, DWORD count, LPDWORD done, OVERLAPPED* at);
BOOL WriteFile(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD done, OVERLAPPED* at);

BOOL GetFileInformationByHandle(HANDLE file, BY_HANDLE_FILE_INFORMATION* information);

/// These two take the handle of an open file; for an HFILE that is (HANDLE)(intptr_t)file.
/// FlushFileBuffers returns when the file's bytes and its length are on the disk.
BOOL FlushFileBuffers(HANDLE file);
/// Cuts or extends the file to the current position; new bytes are zero.
BOOL SetEndOfFile(HANDLE file);

#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_ARCHIVE 0x00000020
#define FILE_ATTRIBUTE_REPARSE_POINT 0x00000400
#define INVALID_FILE_ATTRIBUTES ((DWORD)-1)
#define IO_REPARSE_TAG_SYMLINK 0xA000000Cu

/// Attributes; a link has REPARSE_POINT and, if it leads to a directory, DIRECTORY.
DWORD GetFileAttributesA(LPCSTR path);

/// The new directory's name is on the disk when the call returns.
BOOL CreateDirectoryA(LPCSTR path, struct SECURITY_ATTRIBUTES* security);

/// Removes an empty directory.  A link to a directory is removed itself; what it leads to stays.
BOOL RemoveDirectoryA(LPCSTR path);

/// Removes a file.  A link is removed itself; a link to a directory is refused (ERROR_ACCESS_DENIED), as a
/// directory is.  Who empties a folder must not list what stands behind an entry with REPARSE_POINT.
BOOL DeleteFileA(LPCSTR path);

/// Moves a file or directory; fails with ERROR_ALREADY_EXISTS if the target exists.  A file may go to another
/// file system: it is then copied, flushed and deleted.
BOOL MoveFileA(LPCSTR from, LPCSTR to);

#define MOVEFILE_REPLACE_EXISTING 0x00000001
#define MOVEFILE_COPY_ALLOWED 0x00000002
#define MOVEFILE_WRITE_THROUGH 0x00000008

/// As MoveFileA, but another file system fails with ERROR_NOT_SAME_DEVICE without COPY_ALLOWED.  With
/// REPLACE_EXISTING a file takes the place of an existing file in one step: whoever opens the name finds the
/// old or the new file.  With WRITE_THROUGH the change of the directory is on the disk when the call returns.
BOOL MoveFileExA(LPCSTR from, LPCSTR to, DWORD flags);

/// Copies bytes and the time of the last write.  The copy appears complete, or not at all, and is on the disk
/// when the call returns.
BOOL CopyFileA(LPCSTR from, LPCSTR to, BOOL failIfExists);

/// Lists a directory, in the order that it gives: the last component of the path is `*` or `*.*`; "." and
/// ".." are among the entries.  A last component without wildcards gives the one entry of that name.  An
/// entry whose name on disk has no cp932 form, or none that fits cFileName, is left out.  No entry at all
/// fails with ERROR_FILE_NOT_FOUND, no such directory with ERROR_PATH_NOT_FOUND.
HANDLE FindFirstFileA(LPCSTR pattern, WIN32_FIND_DATAA* entry);
BOOL FindNextFileA(HANDLE search, WIN32_FIND_DATAA* entry); ///< ERROR_NO_MORE_FILES at the end
BOOL FindClose(HANDLE search);

// ---- Memory ---------------------------------------------------------------------------------------------

#define GMEM_FIXED 0x0000
#define GMEM_MOVEABLE 0x0002
#define GMEM_ZEROINIT 0x0040
#define GPTR 0x0040

/// Fixed blocks alone: GMEM_MOVEABLE is refused here, since it would ask for GlobalLock.  The handle is the
/// block's address, aligned to 16 bytes.  Null if memory ran out.
HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes);

/// Changes the size of a fixed block; flags must hold GMEM_MOVEABLE, so that the block may move.  With
/// GMEM_ZEROINIT the new bytes are zero.  Null if memory ran out: the old block then stands.
HGLOBAL GlobalReAlloc(HGLOBAL block, SIZE_T bytes, UINT flags);
HGLOBAL GlobalFree(HGLOBAL block); ///< null when done
SIZE_T GlobalSize(HGLOBAL block);

// ---- Time -----------------------------------------------------------------------------------------------

void Sleep(DWORD milliseconds);
void GetSystemTime(SYSTEMTIME* utc);
void GetLocalTime(SYSTEMTIME* local);
void GetSystemTimeAsFileTime(FILETIME* utc);
BOOL SystemTimeToFileTime(const SYSTEMTIME* time,
                          FILETIME* fileTime); ///< fails for a date that doesn't exist
BOOL FileTimeToSystemTime(const FILETIME* fileTime, SYSTEMTIME* time);

// ---- Texts ----------------------------------------------------------------------------------------------

#define CP_ACP 0 ///< deviation: always 932
#define CP_UTF8 65001
#define MB_PRECOMPOSED 0x00000001
#define MB_ERR_INVALID_CHARS 0x00000008
#define WC_ERR_INVALID_CHARS 0x00000080
#define WC_NO_BEST_FIT_CHARS 0x00000400

/// Code pages 932 (also as CP_ACP) and CP_UTF8; any other is refused with ERROR_INVALID_PARAMETER.  Lengths
/// of -1 take the NUL along; a target size of 0 asks for the length.  0 on failure.
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCCH text, int bytes, LPWSTR wide, int wideSize);
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWCH wide, int wideLength, LPSTR text, int textSize,
                        LPCCH defaultCharacter, LPBOOL usedDefault);

/// Milliseconds since the machine started, or since the beginning of a clock of one's own (win32/display.h).
DWORD GetTickCount(void);

// ---- Modules and their resources ------------------------------------------------------------------------

#define RT_CURSOR ((LPCSTR)(uintptr_t)1)
#define RT_BITMAP ((LPCSTR)(uintptr_t)2)
#define RT_ICON ((LPCSTR)(uintptr_t)3)
#define RT_DIALOG ((LPCSTR)(uintptr_t)5)
#define RT_STRING ((LPCSTR)(uintptr_t)6)
#define RT_GROUP_CURSOR ((LPCSTR)(uintptr_t)12)
#define RT_GROUP_ICON ((LPCSTR)(uintptr_t)14)
#define MAKEINTRESOURCEA(number) ((LPCSTR)(uintptr_t)(WORD)(number))

using HRSRC = struct HRSRC__*;

#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x00000002
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x00000004

/// The module that a function or an object belongs to: both flags together, no others.
BOOL GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module);

/// The resources that a module was built with (win32/module_resources.h), by number alone; types are numbers
/// or, without case, names.  The bytes are the module's own.
HRSRC FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);
HGLOBAL LoadResource(HMODULE module, HRSRC resource);
LPVOID LockResource(HGLOBAL resource);
DWORD SizeofResource(HMODULE module, HRSRC resource);

// ---- Shell and arithmetic -------------------------------------------------------------------------------

void CoTaskMemFree(LPVOID block);

/// number * numerator / denominator in 64 bits, rounded half away from zero; -1 if that is no int.
int MulDiv(int number, int numerator, int denominator);

} // extern "C"

#include "wingdi.h"
#include "winuser.h"
