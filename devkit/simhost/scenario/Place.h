// A place in a story that is being read, and where complaints about it go.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "simhost/scenario/Origins.h"
#include "simhost/scenario/Problems.h"

namespace simhost {

// Names that a story gives to things, for whoever names them later.
struct KnownNames {
    std::set<std::string> documents;
    std::set<std::string> otherPlugins;
    // The texts of all items that can ever be in the menu; nothing when nobody knows them.
    std::optional<std::set<std::string>> menuItems{};
};

// What is the same for all places of one story.
struct StoryContext {
    std::string name;      // as reports call the story: "file.json/case"
    std::string caseName;  // empty: the file has no cases
    const PositionIndex& positions;
    Problems& problems;
    std::string workFolder{};  // the folder of the run, as the story's texts have it
    // Beside simhost.exe, where the files lie that a story names. Empty: nobody looks whether they are there.
    std::filesystem::path kit{};
    Origins origins{};
    KnownNames known{};
    std::size_t aside = 0;            // how many places there are that are not in the story
    std::set<std::string> givenUp{};  // where something was written of which no more can be said
};

class Place {
  public:
    // The whole story. The context outlives all its places.
    explicit Place(StoryContext& context) : mContext(&context) {}

    Place Member(std::string_view key) const;
    Place Element(std::size_t index) const;
    // A place that is not in the story, for something that was written where `written` is.
    Place Aside(const Place& written) const;

    StoryContext& Context() const { return *mContext; }
    const std::string& Pointer() const { return mPointer; }
    // For reports of a run: "file.json/case.steps[0]".
    std::string Text() const;
    bool IsGivenUp() const;
    // Where it was written; line 0 when it was written nowhere.
    Position Source() const;

    // The words are about what stands there; `OfKey` about the member's name.
    void Complain(const std::string& words) const;
    void ComplainOfKey(const std::string& words) const;
    // What stands there has no value, so nobody complains about that any more.
    void GiveUp(const std::string& words) const;

  private:
    Place(StoryContext* context, std::string pointer) : mContext(context), mPointer(std::move(pointer)) {}

    void Add(Position position, const std::string& pointer, const std::string& words) const;

    StoryContext* mContext;
    std::string mPointer;
};

}  // namespace simhost
