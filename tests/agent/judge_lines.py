"""Judges lines of JSON by a JSON schema: judge_lines.py SCHEMA LINES

Says on standard error what is wrong with the first bad line, and exits with status 1. Members that
the schema does not name are wrong here, though a reader of the output has to ignore them.
"""

import json
import sys

import jsonschema


def closed(schema):
    """The schema with no other members allowed in any object than those it names."""
    if isinstance(schema, list):
        return [closed(item) for item in schema]
    if not isinstance(schema, dict):
        return schema
    result = {key: closed(value) for key, value in schema.items()}
    if schema.get("type") == "object":
        result["additionalProperties"] = False
    return result


def no_constant(text):
    raise ValueError(text + " is no JSON")


def main(schema_path, lines_path):
    with open(schema_path, encoding="utf-8") as file:
        schema = closed(json.load(file))
    jsonschema.Draft202012Validator.check_schema(schema)
    whole = jsonschema.Draft202012Validator(schema)
    by_type = {}
    for branch in schema["oneOf"]:
        definition = schema["$defs"][branch["$ref"].split("/")[-1]]
        one = {"$defs": schema["$defs"], **definition}
        name = definition["properties"]["type"]["const"]
        by_type[name] = jsonschema.Draft202012Validator(one)
    with open(lines_path, "rb") as file:
        lines = file.read().splitlines()
    for number, line in enumerate(lines, 1):
        try:
            value = json.loads(line.decode("utf-8"), parse_constant=no_constant)
            by_type[value["type"]].validate(value)  # says best what is wrong
            whole.validate(value)
        except UnicodeDecodeError:
            sys.exit(f"line {number}: no UTF-8")
        except (ValueError, KeyError, TypeError) as error:
            sys.exit(f"line {number}: {error}: {line!r}")
        except jsonschema.ValidationError as error:
            sys.exit(f"line {number}: {error.json_path}: {error.message}: {line!r}")


main(*sys.argv[1:])
