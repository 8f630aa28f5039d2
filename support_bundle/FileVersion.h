#pragma once

#include <filesystem>
#include <string>

// The file's version in four numbers; "without a version" when its resources have none.
std::wstring FileVersion(const std::filesystem::path& file);
