#!/usr/bin/python3
"""Holds the schema of title databases against `brisktitles check`, with an independent validator:

  schema-agreement.py BRISKTITLES SCHEMA DATABASE

The database and the schema's own examples are right. Of some hundred databases with a few mistakes each, the schema
refuses those in which `check` finds an error of keys or types, and no other.
"""
import copy
import json
import os
import random
import subprocess
import sys
import tempfile

import jsonschema

MUTATIONS = 1500

# What a schema can tell; all other rules of `check` are about what a value means. (A key that is repeated is none to a
# JSON library, and no mutation here has one.)
RULES = {
    "not-an-array",
    "no-title",
    "element-type",
    "unknown-key",
    "wrong-type",
    "number-fraction",
    "number-range",
    "config-type",
    "missing-key",
    "unknown-resolution",
}

VALUES = [
    None, True, False, 0, 1, -1, 1.0, 0.5, -0.0, 1e3, 2147483647, 2147483648, -2147483648, -2147483649, 4294967295,
    4294967296, 1e30, "", "txt", "reg", "width", "native_height", "hight", "1920", "(\\nA=)(\\d+)()", [], [1], ["a"],
    [1, "a"], [1.5], [True], [None], [[]], [{}], {}, {"key": "a", "value": 1}, {"key": "a", "presence": [1]},
]

KEYS = [
    "id", "config_type", "luma_version", "title_name", "publisher", "binary_name", "config_locations", "config_fields",
    "patch_if", "key", "value", "meta", "text", "create_key", "create_value", "presence", "absence", "Id", "patchif", "",
    "$schema",
]


def containers(value):
    if isinstance(value, (dict, list)):
        yield value
        for item in list(value.values() if isinstance(value, dict) else value):
            yield from containers(item)


def mutate(database, chance):
    """Changes one value, adds one, takes one away, or renames a key."""
    place = chance.choice(list(containers(database)))
    kind = chance.randrange(4)
    if isinstance(place, list):
        if kind == 0 or not place:
            place.insert(chance.randint(0, len(place)), copy.deepcopy(chance.choice(VALUES)))
        elif kind == 1:
            del place[chance.randrange(len(place))]
        else:
            place[chance.randrange(len(place))] = copy.deepcopy(chance.choice(VALUES))
    elif kind == 0 or not place:
        place[chance.choice(KEYS)] = copy.deepcopy(chance.choice(VALUES))
    else:
        key = chance.choice(list(place))
        if kind == 1:
            del place[key]
        elif kind == 2:
            place[key] = copy.deepcopy(chance.choice(VALUES))
        else:
            place[chance.choice(KEYS)] = place.pop(key)


def mutations(database):
    chance = random.Random(20240607)
    yield from copy.deepcopy(VALUES)
    for _ in range(MUTATIONS):
        mutated = copy.deepcopy(database)
        for _ in range(chance.choice((1, 1, 1, 2, 3))):
            mutate(mutated, chance)
        yield mutated


def examples(schema):
    for part in containers(schema):
        if isinstance(part, dict) and isinstance(part.get("examples"), list):
            for example in part["examples"]:
                yield part, example


def find_errors(program, databases):
    """For each database, the rules of keys and types that `check` finds broken."""
    with tempfile.TemporaryDirectory() as folder:
        found = {}
        for number, database in enumerate(databases):
            path = os.path.join(folder, f"{number}.json")
            with open(path, "w", encoding="utf-8") as file:
                json.dump(database, file)
            found[path] = set()
        output = subprocess.run([program, "check", "--format", "json", *found], capture_output=True, check=False)
        for finding in json.loads(output.stdout)["findings"]:
            if finding["severity"] == "error" and finding["rule"] in RULES:
                found[finding["file"]].add(finding["rule"])
        return list(found.values())


def main():
    program, schema_path, database_path = sys.argv[1:]
    printed = subprocess.run([program, "schema"], capture_output=True, check=True).stdout
    schema = json.loads(printed)
    with open(schema_path, "rb") as file:
        assert file.read() == printed, "the program prints the document"
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    for_one = jsonschema.Draft7Validator(
        json.loads(subprocess.run([program, "schema", "--title"], capture_output=True, check=True).stdout))
    with open(database_path, encoding="utf-8") as file:
        database = json.load(file)
    validator.validate(database)
    for title in database:
        for_one.validate(title)
    assert not for_one.is_valid(database)
    shown = 0
    for part, example in examples(schema):
        jsonschema.Draft7Validator({**part, "definitions": schema["definitions"]}).validate(example)
        shown += 1
    assert shown > 20

    databases = list(mutations(database))
    refused = 0
    for mutated, rules in zip(databases, find_errors(program, databases)):
        is_valid = validator.is_valid(mutated)
        if is_valid == bool(rules):
            sys.exit(f"the schema {'accepts' if is_valid else 'refuses'} this, check finds {sorted(rules)}:\n"
                     + json.dumps(mutated, indent=1))
        refused += not is_valid
    assert 100 < refused < len(databases) - 100, refused
    print(f"{len(databases)} databases, {refused} of them refused; {shown} examples")


main()
