// The keys of every kind of object in a scenario file, one place for the readers, for `simhost list` and so for the
// test that compares them with the JSON Schema. The keys of a step depend on its verb: see verbs/VerbTable.
#pragma once

#include <string_view>

namespace simhost {

struct ObjectKind {
    std::string_view name;
    std::string_view keys;  // separated by blanks
};

namespace keys {

inline constexpr ObjectKind kScenario{"scenario",
                                      "$schema title values cases plugin time_limit step_time_limit files copies "
                                      "launch_info processes answers bus_answers host begin "
                                      "steps end expect"};
// What a case may replace. "values" is merged by name instead.
inline constexpr ObjectKind kCase{"case",
                                  "title values plugin time_limit step_time_limit files copies launch_info processes "
                                  "answers bus_answers host begin steps end "
                                  "expect"};
inline constexpr ObjectKind kLike{"like", "like set"};
inline constexpr ObjectKind kUsual{"usual", "usual items"};
inline constexpr ObjectKind kFile{"file", "path text from modified"};
inline constexpr ObjectKind kCopy{"copy", "copy to"};
inline constexpr ObjectKind kLaunchInfo{"launch_info", "local common"};
inline constexpr ObjectKind kExpect{"expect", "library messaging_library violations"};
inline constexpr ObjectKind kHost{"host",
                                  "documents default_fonts empty_handle_for_no_matches refused_suites plugins menu"};
inline constexpr ObjectKind kDocument{"document", "path modified frames placed file"};
inline constexpr ObjectKind kPlugin{"plugin", "name result"};
inline constexpr ObjectKind kHostMenuItem{"host_menu_item", "text group key owner"};
inline constexpr ObjectKind kBox{"box", "caption text style"};
inline constexpr ObjectKind kPanelEvent{"panel_event", "type scope application extension data"};
inline constexpr ObjectKind kFailure{"failure", "operation nth code"};
inline constexpr ObjectKind kNested{"nested", "during nth step"};
inline constexpr ObjectKind kMenuGroup{"menu_group", "group items"};
inline constexpr ObjectKind kMenuItem{"menu_item", "text options enabled checked key owner groups"};
inline constexpr ObjectKind kTimer{"timer", "name period active"};
inline constexpr ObjectKind kFileFormat{"file_format",
                                        "name types title title_order extensions options extended_options priority"};
inline constexpr ObjectKind kSentMessage{"sent_message", "to caller selector item set_up"};

inline constexpr const ObjectKind* kAll[] = {
    &kScenario, &kCase,   &kLike,      &kUsual,    &kFile,         &kCopy,       &kLaunchInfo,
    &kExpect,   &kHost,   &kDocument,  &kPlugin,   &kHostMenuItem, &kBox,        &kPanelEvent,
    &kFailure,  &kNested, &kMenuGroup, &kMenuItem, &kTimer,        &kFileFormat, &kSentMessage,
};

// A story as it is read, with its values and defaults written out. Nobody writes one.
inline constexpr ObjectKind kStory{"story",
                                   "title plugin time_limit step_time_limit files copies launch_info processes answers "
                                   "bus_answers host begin steps end expect"};

// Of every step; of a step that sends a message; of such a step unless it is nested in another.
inline constexpr std::string_view kOfStep = "do say";
inline constexpr std::string_view kOfMessage = "answer";
inline constexpr std::string_view kOfOuterMessage =
    "calls bus_calls panel_events loads boxes fail nested host_calls foreground_switches";

}  // namespace keys

}  // namespace simhost
