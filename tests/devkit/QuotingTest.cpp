#include "simhost/launch/Quoting.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include <string>

namespace simhost {
namespace {

TEST(Quoting, WindowsReadsBackWhatWasQuoted) {
    for (const std::wstring argument : {L"", L"plain", L"two words", L"C:\\out\\", L"C:\\two words\\\\",
                                        L"He says \"hi\"", L"\"", L"\\\"", L"\\\\\"x", L"a\\b", L"caf\x00E9 \x6587"}) {
        const std::wstring line = L"\"program.exe\" " + Quoted(argument) + L" " + Quoted(L"next");
        int count = 0;
        wchar_t** const arguments = CommandLineToArgvW(line.c_str(), &count);
        ASSERT_EQ(count, 3) << "for " << line.size() << " characters";
        EXPECT_EQ(std::wstring(arguments[1]), argument);
        EXPECT_EQ(std::wstring(arguments[2]), L"next");
        LocalFree(arguments);
    }
}

}  // namespace
}  // namespace simhost
