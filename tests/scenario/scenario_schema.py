"""The JSON Schema of scenario files, and a validator for it."""

import functools
import json
import pathlib

import jsonschema
from jsonschema.exceptions import best_match

ROOT = pathlib.Path(__file__).parents[2]
SCHEMA = ROOT / "devkit" / "scenarios" / "scenario.schema.json"


@functools.cache
def load() -> dict:
    """Checked against the schema of schemas, once: that takes longer than checking a scenario."""
    schema = json.loads(SCHEMA.read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    return schema


@functools.cache
def validator() -> jsonschema.Draft202012Validator:
    return jsonschema.Draft202012Validator(load())


def fault_of(scenario) -> str:
    """What the schema finds wrong, with the place; empty when it finds nothing."""
    error = best_match(validator().iter_errors(scenario))
    return "" if error is None else f"{error.json_path}: {error.message}"
