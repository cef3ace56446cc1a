#pragma once

/// The Windows names that this project uses, with their types, values and signatures.
///
/// What answers them here (modules, held keys, windows) is set through the headers in platform/.

#include <cstddef>
#include <cstdint>

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using SHORT = std::int16_t;
using UINT = unsigned int;
using ULONG_PTR = std::uintptr_t;
using INT_PTR = std::intptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using LPVOID = void*;
using PVOID = void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPCTSTR = const wchar_t*;

using HINSTANCE = struct HINSTANCE__*; ///< a loaded module; null is the program
using HMODULE = HINSTANCE;
using HWND = struct HWND__*;
using HCURSOR = struct HCURSOR__*;
using FARPROC = std::intptr_t (*)();

#define WINAPI
#define APIENTRY

inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;

// Modules.

inline constexpr DWORD DLL_PROCESS_DETACH = 0;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;
inline constexpr DWORD DLL_THREAD_ATTACH = 2;
inline constexpr DWORD DLL_THREAD_DETACH = 3;

/// Loads a module with what it needs; a bare name is looked up beside the program first.
/// @return the module, to be given back with FreeLibrary; null when it cannot be loaded
HMODULE LoadLibraryW(LPCWSTR path);

/// Gives a module back; it leaves memory when nobody holds it any more.
/// @return non-zero when the module was loaded
BOOL FreeLibrary(HMODULE module);

/// The address of a function that the module itself exports; null when it exports none of that
/// name.
FARPROC GetProcAddress(HMODULE module, LPCSTR name);

/// The full path of a module's file; null names the program.
/// @param size  characters that `buffer` holds, the terminating zero included
/// @return characters written without the zero; `size` when the path was cut; 0 on failure
DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size);

// Resources of a module.

/// A resource number in the form in which the resource functions take it.
#define MAKEINTRESOURCEW(id) (reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(id)))

/// Copies a string resource, cut to the buffer.
/// @param size  characters that `buffer` holds, the terminating zero included
/// @return characters written without the zero; 0 when the module has no such string
int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size);

/// A cursor resource; it belongs to the module. Null when the module has none of that number.
HCURSOR LoadCursorW(HINSTANCE module, LPCWSTR id);

// Files.

inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;

/// The kind of a file or folder; INVALID_FILE_ATTRIBUTES when there is none.
DWORD GetFileAttributesW(LPCWSTR path);

// Device contexts and fonts.

using HDC = struct HDC__*;
#define CALLBACK

/// The device context of a window, of the screen for null; given back with ReleaseDC. Null when
/// there is none to be had.
HDC GetDC(HWND window);

/// @return 1 when it was given back; 0 for null
int ReleaseDC(HWND window, HDC context);

inline constexpr int LF_FACESIZE = 32;

inline constexpr BYTE ANSI_CHARSET = 0;
inline constexpr BYTE DEFAULT_CHARSET = 1;
inline constexpr BYTE SYMBOL_CHARSET = 2;
inline constexpr BYTE SHIFTJIS_CHARSET = 128;
inline constexpr BYTE HANGUL_CHARSET = 129;
inline constexpr BYTE GB2312_CHARSET = 134;
inline constexpr BYTE CHINESEBIG5_CHARSET = 136;
inline constexpr BYTE GREEK_CHARSET = 161;
inline constexpr BYTE TURKISH_CHARSET = 162;
inline constexpr BYTE VIETNAMESE_CHARSET = 163;
inline constexpr BYTE HEBREW_CHARSET = 177;
inline constexpr BYTE ARABIC_CHARSET = 178;
inline constexpr BYTE BALTIC_CHARSET = 186;
inline constexpr BYTE RUSSIAN_CHARSET = 204;
inline constexpr BYTE THAI_CHARSET = 222;
inline constexpr BYTE EASTEUROPE_CHARSET = 238;

inline constexpr BYTE DEFAULT_PITCH = 0;
inline constexpr BYTE FIXED_PITCH = 1;
inline constexpr BYTE VARIABLE_PITCH = 2;

inline constexpr DWORD TRUETYPE_FONTTYPE = 4;

/// The description of a font. Its bytes are counted, so the face name is UTF-16: CString takes it,
/// wcscpy_s() writes it.
struct LOGFONTW {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight; ///< 400 regular, 700 bold
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    char16_t lfFaceName[LF_FACESIZE];
};

static_assert(sizeof(LOGFONTW) == 92);

/// Measures of a font, in units of its design; what this host does not measure is 0.
struct TEXTMETRICW {
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
    char16_t tmFirstChar;
    char16_t tmLastChar;
    char16_t tmDefaultChar;
    char16_t tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};

/// Is told of one font. @return 0 to end the enumeration
using FONTENUMPROCW = int(CALLBACK*)(const LOGFONTW* font, const TEXTMETRICW* metrics,
                                     DWORD fontType, LPARAM lParam);

/// Enumerates installed fonts: one of every family for a null family, the upright regular one where
/// there is one; else each style of the family, compared without regard to case.
/// @return the callback's last answer; 0 for a null context; 1 when there is no font to tell of
int EnumFontFamiliesW(HDC context, LPCWSTR family, FONTENUMPROCW callback, LPARAM lParam);

namespace platform {
bool copyUtf16(char16_t* target, std::size_t size, const wchar_t* source);
}

/// Copies a text into a UTF-16 array with its terminating zero.
/// @return 0; not 0, the target empty, when the text is null or does not fit
template <std::size_t size>
int wcscpy_s(char16_t (&target)[size], const wchar_t* source)
{
    constexpr int kOutOfRange = 34;
    return platform::copyUtf16(target, size, source) ? 0 : kOutOfRange;
}

/// The number that a text begins with, after white space; 0 when there is none.
double _wtof(const wchar_t* text);

// Windows.

inline constexpr UINT WM_COPYDATA = 0x004A;

/// What WM_COPYDATA carries, at the address in its second parameter.
struct COPYDATASTRUCT {
    ULONG_PTR dwData; ///< kind, chosen by the sender
    DWORD cbData;     ///< bytes at lpData
    PVOID lpData;     ///< texts are UTF-16
};

/// Has the window handle a message now. @return the window's answer; 0 for a null window
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Keyboard and mouse.

inline constexpr int VK_LBUTTON = 0x01; ///< the physical left button, also when buttons are swapped
inline constexpr int VK_RBUTTON = 0x02;
inline constexpr int VK_RETURN = 0x0D;
inline constexpr int VK_CONTROL = 0x11;
inline constexpr int VK_SPACE = 0x20;

inline constexpr int SM_MOUSEPRESENT = 19;
inline constexpr int SM_SWAPBUTTON = 23;

/// The high bit is set while the key or button is held.
SHORT GetAsyncKeyState(int key);

/// As GetAsyncKeyState: input here has no queue of its own that it could lag behind.
SHORT GetKeyState(int key);

/// SM_MOUSEPRESENT, SM_SWAPBUTTON: non-zero when so; 0 for a metric that is not kept.
int GetSystemMetrics(int metric);
