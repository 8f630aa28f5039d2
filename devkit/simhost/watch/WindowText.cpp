#include "simhost/watch/WindowText.h"

#include <iterator>
#include <string_view>

#include "doubles/common/Text.h"

namespace simhost {

std::string TextOfWindow(HWND window, UINT patienceMilliseconds) {
    wchar_t text[2048] = L"";
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG,
                        patienceMilliseconds, &length);
    return Utf8(std::wstring_view(text));
}

std::wstring ClassOfWindow(HWND window) {
    wchar_t name[128] = L"";
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return name;
}

}  // namespace simhost
