"""All checks of a built plug-in, by name."""

import code_checks
import interface_checks
import memory_checks
import resource_checks

CHECKS = {
    "64-bit": memory_checks.is_a_64_bit_library,
    "address-randomised": memory_checks.is_placed_at_random,
    "high-addresses": memory_checks.is_placed_in_the_whole_address_space,
    "no-executable-data": memory_checks.executes_no_data,
    "nothing-shared": memory_checks.shares_no_section,
    "exports": interface_checks.exports_the_entry_point_alone,
    "imports": interface_checks.imports_what_is_allowed,
    "no-late-imports": interface_checks.loads_nothing_late,
    "buffers-guarded": code_checks.buffers_are_guarded,
    "stack-protector": code_checks.all_of_our_code_is_built_with_the_stack_protector,
    "parts-kept": code_checks.holds_the_parts_that_nothing_calls_yet,
    "property-list": resource_checks.has_the_property_list,
    "notice": resource_checks.has_the_notice_in_seven_languages,
    "version-texts": resource_checks.version_texts_are_the_builds,
    "version-numbers": resource_checks.version_numbers_are_the_builds,
    "no-machine": interface_checks.tells_nothing_of_the_building_machine,
    "no-time": interface_checks.says_no_time_of_building,
}

# What Windows offers and our tools cannot do, with the check that it would have to pass. The day it does, the waiver goes.
WAIVERS = {
    "control-flow-guard": (
        memory_checks.has_control_flow_guard,
        "GCC makes no table of the functions that may be called through pointers, and ld has no word for it",
    ),
    "shadow-stack": (
        memory_checks.has_shadow_stack_mark,
        "ld cannot write the mark, and the frame that stops exceptions of another compiler was never tried under it",
    ),
}


def findings_of(file):
    """What is wrong, each with the check's name before it."""
    if of_another_kind := list(memory_checks.is_a_64_bit_library(file)):
        # Nothing else can be read from it.
        return [f"64-bit: {each}" for each in of_another_kind]
    found = [f"{name}: {each}" for name, check in CHECKS.items() for each in check(file)]
    for name, (check, _) in WAIVERS.items():
        if not list(check(file)):
            found.append(f"{name}: is there now; take the waiver out of plugin_checks.py")
    return found
