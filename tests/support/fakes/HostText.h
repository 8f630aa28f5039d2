// The texts behind the strings and paths of the fake host. Used by the fakes alone.
#pragma once

#include <string>

using HostText = std::u16string;

HostText Utf16(const std::string& utf8);

// Gives a string or path its text, whether it has one already or not.
void SetText(void*& impl, const std::string& utf8);

// As UTF-8; empty without one.
std::string TextOf(const void* impl);
