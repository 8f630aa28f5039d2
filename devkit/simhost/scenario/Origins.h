// Where the members of a story were written. A case replaces members of its file, "${name}" stands for a value that
// stands elsewhere, and defaults stand nowhere. All places are JSON pointers.
#pragma once

#include <map>
#include <optional>
#include <string>

namespace simhost {

class Origins {
  public:
    // Whatever is at `pointer` was written at `source`; what was known of its members is forgotten.
    void Set(const std::string& pointer, const std::string& source);
    // It was written nowhere.
    void SetDefault(const std::string& pointer);
    // It is a copy of what is at `original`, so was written where that was.
    void SetCopy(const std::string& pointer, const std::string& original);

    // Nothing for what was written nowhere. What was never set was written where it is.
    std::optional<std::string> Of(const std::string& pointer) const;

  private:
    using Sources = std::map<std::string, std::optional<std::string>>;

    void ForgetBelow(const std::string& pointer);

    Sources mSources;
};

}  // namespace simhost
