#include "orvex/shell.h"

#include "kd/ed.h"
#include "kd/rx.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

constexpr int kPathCapacity = 520;    // characters of a module's path that are looked at
constexpr int kExtensionLength = 4;   // ".krx"
constexpr ULONG_PTR kCommandData = 1; // the kind of copied data that is a command

CString languageLibraryPath(HINSTANCE module)
{
    wchar_t path[kPathCapacity] = L"";
    GetModuleFileNameW(module, path, kPathCapacity);
    const CString modulePath(path);
    return modulePath.Left(modulePath.GetLength() - kExtensionLength) + L"Res.dll";
}

/// The text as the receiver of a message counts it: in units of two bytes.
std::u16string messageText(const CString& text)
{
    std::u16string units;
    for (int i = 0; i < text.GetLength(); ++i) {
        const auto code = static_cast<char32_t>(text[i]);
        if (code < 0x10000) {
            units += static_cast<char16_t>(code);
        } else {
            units += static_cast<char16_t>(0xD7C0 + (code >> 10));
            units += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        }
    }
    return units;
}

} // namespace

HINSTANCE loadLangResourceDLL(HINSTANCE module, int abortOnFailure)
{
    const CString path = languageLibraryPath(module);
    const HINSTANCE library = LoadLibraryW(path);
    if (!library && abortOnFailure)
        kdrx_abort(L"can not load language file  \"%s\" !", path.GetString());
    return library;
}

void freeLangResourceDLL(HINSTANCE library)
{
    if (library)
        FreeLibrary(library);
}

bool isModuleLoaded(const wchar_t* moduleName)
{
    const std::unique_ptr<KdArray<wchar_t*>> names(kdrxLoadedApps());
    if (!names)
        return false;
    const bool found = std::any_of(names->begin(), names->end(), [&](const wchar_t* name) {
        return CString(name).CompareNoCase(moduleName) == 0;
    });
    for (const wchar_t* name : *names)
        delete[] name;
    return found;
}

bool orvex_ArxLoad(const wchar_t* moduleName)
{
    try {
        return isModuleLoaded(moduleName) || kdrxLoadModule(moduleName, false, false);
    } catch (...) {
        return false;
    }
}

void sendCommandToAutoCAD(CString command)
{
    std::u16string text = messageText(command);
    COPYDATASTRUCT record{};
    record.dwData = kCommandData;
    record.cbData = static_cast<DWORD>((text.size() + 1) * sizeof(char16_t));
    record.lpData = text.data();

    const HWND mainWindow = kdsw_kdapiMainWnd();
    SendMessageW(mainWindow, WM_COPYDATA, reinterpret_cast<WPARAM>(mainWindow),
                 reinterpret_cast<LPARAM>(&record));
}

void setTavroTitleCaption(CString caption)
{
    qmSetMainFrameCaptionTitle(caption);
}

CString Orvex::StringFromID(unsigned int id)
{
    CString text;
    if (!text.LoadString(id))
        kdutPrintf(L"\nLoadString error! Please check the string id is right!");
    return text;
}

int Orvex::IsFileExist(CString path)
{
    return !path.IsEmpty() && GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}
