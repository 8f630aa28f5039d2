// The error objects of the plug-in, and the one place that says who throws what and who catches it.
//
// | thrown                 | by                                        | caught by                                    |
// |------------------------|-------------------------------------------|----------------------------------------------|
// | std::int32_t           | ThrowIfError, AcquireSuiteOrThrow: a code | the operation that asked, which returns it;  |
// |                        | of the host                               | of a refused menu suite StartupPlugin, or    |
// |                        |                                           | the dispatch                                 |
// | ai::Error              | strings and paths of the host             | AddIllustratorMenu; else the dispatch        |
// | ATE::Exception         | references of the text engine             | the scan, per frame and per run              |
// | SuiteNotHeld           | HeldSuite: a suite that the host lacks    | the dispatch                                 |
// | NoPluginCore           | RequirePluginCore: no library is loaded   | the dispatch                                 |
// | ForeignException       | CallForeignCode: code of another compiler | the boundary that called, else the dispatch  |
// | utf8::exception        | utfcpp: text that is ill-formed           | AppendSuppressionWords, ParseMenuJson; else  |
// |                        |                                           | the dispatch                                 |
// | std::out_of_range,     | MenuObjectMember, JsonValue: a menu       | the dispatch                                 |
// | std::bad_variant_access| description that is not to be trusted     |                                              |
// | std::bad_alloc         | the C++ runtime                           | the boundary that was called                 |
//
// The boundaries let nothing out: the dispatch (one log line, answer 0), CheckFileFormat (-1), AddIllustratorMenu,
// SuppressionHookProc, StopAtFirstMatch (which rethrows behind Windows' frames), the listener of PortNumberExchange.
// Rows 2 to 6 are one family. Row 1 stays a plain number, as the host's codes are everywhere, and utf8::exception stays
// the library's own: its texts are logged.
#pragma once

#include <cstdint>
#include <exception>

// The base of every error object that the plug-in defines. `what` is a literal; nothing is allocated.
class PluginError : public std::exception {
  public:
    const char* what() const noexcept override { return mText; }

  protected:
    explicit PluginError(const char* text) noexcept : mText(text) {}

  private:
    const char* mText;
};

// One that carries a 32-bit code of the host.
class CodedError : public PluginError {
  public:
    std::int32_t Code() const noexcept { return mCode; }

  protected:
    CodedError(const char* text, std::int32_t code) noexcept : PluginError(text), mCode(code) {}

  private:
    std::int32_t mCode;
};

// A suite is used that the host does not offer.
class SuiteNotHeld : public PluginError {
  public:
    SuiteNotHeld() noexcept : PluginError("a host suite is not held") {}
};

// The PluginCore is needed and not loaded.
class NoPluginCore : public PluginError {
  public:
    NoPluginCore() noexcept : PluginError("the PluginCore is not loaded") {}
};

// What a stopped exception of another compiler is turned into.
class ForeignException : public PluginError {
  public:
    ForeignException() noexcept : PluginError("code of another compiler threw an exception") {}
};

namespace ai {

// The host refuses an operation on one of its strings or paths.
class Error : public CodedError {
  public:
    explicit Error(std::int32_t code) noexcept
        : CodedError("the host refused an operation on a string or a path", code) {}
};

}  // namespace ai

namespace ATE {

// The text engine refuses an operation on one of its references.
class Exception : public CodedError {
  public:
    explicit Exception(std::int32_t code) noexcept : CodedError("the text engine refused an operation", code) {}
};

}  // namespace ATE
