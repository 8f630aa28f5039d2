#include "simhost/scenario/Place.h"

namespace simhost {

Place Place::Member(std::string_view key) const { return {mContext, mPointer + "/" + AsPointerPart(key)}; }

Place Place::Element(std::size_t index) const { return {mContext, mPointer + "/" + std::to_string(index)}; }

Place Place::Aside(const Place& written) const {
    // No pointer to a member: there a tilde is never followed by a letter.
    Place aside(mContext, "/~aside/" + std::to_string(mContext->aside++));
    mContext->origins.SetCopy(aside.mPointer, written.mPointer);
    return aside;
}

bool Place::IsGivenUp() const { return mContext->givenUp.contains(mContext->origins.Of(mPointer).value_or(mPointer)); }

std::string Place::Text() const {
    const std::string path = AsMemberPath(mPointer);
    return mContext->name + (path.empty() ? "" : ".") + path;
}

Position Place::Source() const {
    const auto source = mContext->origins.Of(mPointer);
    return source ? mContext->positions.OfValue(*source) : Position();
}

void Place::Complain(const std::string& words) const {
    const auto source = mContext->origins.Of(mPointer);
    if (!IsGivenUp()) {
        Add(Source(), source.value_or(mPointer), words);
    }
}

void Place::GiveUp(const std::string& words) const {
    Complain(words);
    mContext->givenUp.insert(mContext->origins.Of(mPointer).value_or(mPointer));
}

// The member's name is told by the words, so the path is that of the object around it.
void Place::ComplainOfKey(const std::string& words) const {
    const auto source = mContext->origins.Of(mPointer);
    const std::string pointer = source.value_or(mPointer);
    Add(source ? mContext->positions.OfKey(*source) : Position(), pointer.substr(0, pointer.rfind('/')), words);
}

void Place::Add(Position position, const std::string& pointer, const std::string& words) const {
    mContext->problems.Add({position, AsMemberPath(pointer), words}, mContext->caseName);
}

}  // namespace simhost
