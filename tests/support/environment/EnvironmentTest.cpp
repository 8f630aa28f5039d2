// What the tests take for granted of the system that they run on. When one of these fails, mend the run and not the
// tests that fail beside it.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

// Asked of the kernel: GetVersion answers what the program's manifest allows it to know.
RTL_OSVERSIONINFOW SystemVersion() {
    using RtlGetVersionFunction = LONG(WINAPI*)(RTL_OSVERSIONINFOW*);
    RTL_OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    const auto rtlGetVersion = reinterpret_cast<RtlGetVersionFunction>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    EXPECT_EQ(rtlGetVersion(&version), 0);
    return version;
}

void HandlePendingMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool BecomesForeground(HWND window) {
    SetForegroundWindow(window);
    for (int i = 0; i < 100 && GetForegroundWindow() != window; ++i) {
        HandlePendingMessages();
        Sleep(20);
    }
    return GetForegroundWindow() == window;
}

TEST(Environment, IsWindows10OrLater) { EXPECT_GE(SystemVersion().dwMajorVersion, 10U); }

TEST(Environment, RunsIn64Bits) { EXPECT_EQ(sizeof(void*), 8U); }

TEST(Environment, HasTheWesternAnsiCodePage) { EXPECT_EQ(GetACP(), 1252U); }

TEST(Environment, MakesFilesWithNamesOfAllScripts) {
    wchar_t path[MAX_PATH];
    ASSERT_NE(GetTempPathW(MAX_PATH, path), 0U);
    const std::wstring name = std::wstring(path) + L"canary \u00e9\u4e2d\U0001f600";
    ASSERT_TRUE(CreateDirectoryW(name.c_str(), nullptr)) << "error " << GetLastError();
    EXPECT_NE(GetFileAttributesW(name.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(RemoveDirectoryW(name.c_str()));
}

TEST(Environment, OpensAWindowThatIsVisibleAndComesToTheFront) {
    HWND window = CreateWindowExW(0, L"STATIC", L"canary", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 20, 300, 200, nullptr,
                                  nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr) << "error " << GetLastError();
    EXPECT_TRUE(IsWindowVisible(window));
    RECT place = {};
    EXPECT_TRUE(GetWindowRect(window, &place));
    EXPECT_EQ(place.right - place.left, 300);
    EXPECT_EQ(place.bottom - place.top, 200);
    EXPECT_EQ(FindWindowW(L"STATIC", L"canary"), window);
    EXPECT_TRUE(BecomesForeground(window));
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_FALSE(IsWindow(window));
}

}  // namespace
