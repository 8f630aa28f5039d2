#include "simhost/report/FittedJson.h"

#include <optional>
#include <utility>

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::string Dumped(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

class Fitting {
  public:
    explicit Fitting(std::size_t width) : mWidth(width) {}

    // What fits shares a line with its neighbours; arrays and objects that do not fit are broken up.
    void Add(const Json& value, const std::string& before, const std::string& after, std::size_t indent) {
        const std::string line = before + Dumped(value) + after;
        if (!value.is_structured() || value.empty() || indent + line.size() <= mWidth) {
            AddPiece(line, indent, false);
            return;
        }
        AddPiece(before + (value.is_array() ? "[" : "{"), indent, true);
        std::size_t left = value.size();
        for (const auto& [key, member] : value.items()) {
            Add(member, value.is_array() ? "" : Dumped(Json(key)) + ":", --left == 0 ? "" : ",", indent + 2);
        }
        AddPiece((value.is_array() ? "]" : "}") + after, indent, true);
    }

    std::vector<std::string> Take() { return std::move(mLines); }

  private:
    void AddPiece(const std::string& piece, std::size_t indent, bool alone) {
        if (!alone && mIndentOfShared == indent && mLines.back().size() + piece.size() <= mWidth) {
            mLines.back() += piece;
        } else {
            mLines.push_back(std::string(indent, ' ') + piece);
        }
        mIndentOfShared = alone ? std::optional<std::size_t>() : indent;
    }

    std::size_t mWidth;
    std::vector<std::string> mLines;
    std::optional<std::size_t> mIndentOfShared;  // of the last line, when scalars can be added to it
};

}  // namespace

std::vector<std::string> FittedJson(const Json& value, std::size_t width) {
    Fitting fitting(width);
    fitting.Add(value, "", "", 0);
    return fitting.Take();
}

}  // namespace simhost
