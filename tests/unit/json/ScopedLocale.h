// A locale of the C runtime for the length of a test.
#pragma once

#include <clocale>
#include <stdexcept>
#include <string>

// Throws when the system does not have the locale, which fails the test: a locale that is not set proves nothing.
class ScopedLocale {
  public:
    explicit ScopedLocale(const char* name) : mPrevious(std::setlocale(LC_ALL, nullptr)) {
        if (std::setlocale(LC_ALL, name) == nullptr) throw std::runtime_error(std::string("no locale ") + name);
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, mPrevious.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

  private:
    std::string mPrevious;
};
