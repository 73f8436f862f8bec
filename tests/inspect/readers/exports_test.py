"""The exports of the inspector, read by programs that share nothing with it.

    exports_test.py json|sqlite|queries CONSOLIDATOR INSPECTOR SOURCE_FOLDER

json: Python's parser takes every document, the schema in docs/ describes it, and it says what the
database's bytes say. sqlite: so do the tables, and SQLite finds nothing wrong with them. queries:
each query in docs/sqlite.md gives what stands there below it.
"""

import base64
import copy
import json
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile
import unittest

import jsonschema
import naive_database as naive
import samples

CONSOLIDATOR, INSPECTOR, SOURCE = (pathlib.Path(word) for word in sys.argv[2:5])


class ExportTest(unittest.TestCase):
    maxDiff = 2000

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def inspect(self, *words, status=0):
        result = subprocess.run([INSPECTOR, *words], capture_output=True, check=False)
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertEqual(result.stderr == b"", status == 0)
        return result.stdout

    def for_each_database(self, check):
        """Calls check(path, document, dwarf, status) with what the bytes at the path say."""
        databases = samples.hostile()
        databases["example"] = samples.example(CONSOLIDATOR, SOURCE, self.folder).read_bytes()
        for name, data in databases.items():
            with self.subTest(name):
                path = self.folder / "db"
                path.write_bytes(data)
                document, dwarf = naive.parse(data)
                self.assertEqual(document["complete"], name != "cut off")
                check(path, document, dwarf, 0 if document["complete"] else 2)


class Json(ExportTest):
    def test_every_layout_says_what_the_bytes_say(self):
        def check(path, document, dwarf, status):
            for layout in [], ["--pretty"]:
                text = self.inspect("json", *layout, path, status=status)
                self.assertEqual(json.loads(text), document)
                with_dwarf = json.loads(
                    self.inspect("json", "--dwarf", *layout, path, status=status)
                )
                if dwarf is not None:
                    self.assertEqual(
                        base64.b64decode(with_dwarf["dwarf"].pop("base64"), validate=True), dwarf
                    )
                self.assertEqual(with_dwarf, document)

        self.for_each_database(check)

    def test_every_document_is_as_the_schema_says(self):
        validator = self.validator()

        def check(path, _document, _dwarf, status):
            validator.validate(
                json.loads(self.inspect("json", "--dwarf", path, status=status))
            )

        self.for_each_database(check)

    def test_the_schema_describes_nothing_else(self):
        validator = self.validator()
        path = self.folder / "db"
        path.write_bytes(samples.hostile()["odd texts"])
        good = json.loads(self.inspect("json", "--dwarf", path))
        del good["kernels"][1:]
        for node in self.paths_of_members(good):
            other = copy.deepcopy(good)
            parent = other
            for step in node[:-1]:
                parent = parent[step]
            value = parent.pop(node[-1])
            optional = node[-1] in ("base64", "locations")
            self.assertEqual(validator.is_valid(other), optional, f"without {node}")
            parent["another"] = value
            self.assertFalse(validator.is_valid(other), f"renamed {node}")
            del parent["another"]
            parent[node[-1]] = {"of": "another kind"}
            self.assertFalse(validator.is_valid(other), f"changed {node}")

    def paths_of_members(self, value, path=()):
        """The paths of all members of objects, but only the first elements of lists."""
        if isinstance(value, dict):
            for key, member in value.items():
                yield (*path, key)
                yield from self.paths_of_members(member, (*path, key))
        elif isinstance(value, list):
            for index, element in enumerate(value[:5]):
                yield from self.paths_of_members(element, (*path, index))

    def validator(self):
        schema = json.loads((SOURCE / "docs/consolidator-inspect.schema.json").read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        return jsonschema.Draft202012Validator(schema)


class Sqlite(ExportTest):
    def test_the_tables_say_what_the_bytes_say(self):
        def check(path, document, dwarf, status):
            out = self.folder / "out.sqlite"
            self.assertEqual(self.inspect("sqlite", "--force", path, out, status=status), b"")
            connection = sqlite3.connect(out)
            connection.row_factory = sqlite3.Row
            self.addCleanup(connection.close)
            self.assertEqual(connection.execute("PRAGMA integrity_check").fetchone()[0], "ok")
            self.assertEqual(connection.execute("PRAGMA foreign_key_check").fetchall(), [])
            self.assertEqual(self.document_of(connection), (document, dwarf))
            self.check_view(connection)

        self.for_each_database(check)

    def document_of(self, connection):
        """What JSON would be made of the tables, and the DWARF blob."""
        (database,) = connection.execute("SELECT * FROM database")
        dwarf = database["dwarf"]
        kernels = connection.execute("SELECT * FROM kernel ORDER BY id").fetchall()
        document = {
            "format": 1,
            "version": {
                "major": database["major_version"],
                "minor": database["minor_version"],
            },
            "complete": bool(database["complete"]),
            "project": database["project"],
            "dwarf": None if dwarf is None else {"size": len(dwarf)},
            "kernels": [self.kernel_of(connection, kernel) for kernel in kernels],
        }
        return document, dwarf

    def kernel_of(self, connection, kernel):
        def rows(table, more="1"):
            return connection.execute(
                f"SELECT * FROM {table} WHERE kernel_id = ? AND {more} ORDER BY id", [kernel["id"]]
            )

        def variables(role):
            return [self.variable_of(connection, row) for row in rows("variable", f"role = '{role}'")]

        instances = {row["id"]: row["path"] for row in rows("instance")}
        return {
            "name": kernel["name"],
            "type": {"number": kernel["type_number"], "name": kernel["type"]},
            "instances": list(instances.values()),
            "arguments": variables("argument"),
            "variables": variables("variable"),
            "registers": [
                {
                    "net": row["net"],
                    "hardware": row["hardware_name"],
                    "instance": instances.get(row["instance_id"]),
                    "width": row["width"],
                    "bits": self.bits_of(connection, "bit", f"register_id = {row['id']}"),
                }
                for row in rows("register")
            ],
            "conditions": [self.condition_of(row) for row in rows("condition")],
            "brams": [row["name"] for row in rows("bram")],
        }

    def bits_of(self, connection, table, condition):
        query = f"SELECT bit, address, offset FROM {table} WHERE {condition} ORDER BY bit"
        return [dict(row) for row in connection.execute(query)]

    def variable_of(self, connection, row):
        result = {
            "source": row["source_name"],
            "hardware": row["hardware_name"],
            "type": row["type"],
            "width": row["width"],
        }
        widths = connection.execute(
            "SELECT width FROM variable_instance WHERE variable_id = ? ORDER BY instance",
            [row["id"]],
        ).fetchall()
        if widths:
            result["locations"] = [
                {
                    "width": width,
                    "bits": self.bits_of(
                        connection,
                        "variable_bit",
                        f"variable_id = {row['id']} AND instance = {instance}",
                    ),
                }
                for instance, (width,) in enumerate(widths)
            ]
        return result

    def condition_of(self, row):
        result = {"kind": row["kind"], "condition": row["condition"]}
        if row["kind"] == "line":
            result.update(file=row["file"], line=row["line"])
        elif row["kind"] == "error":
            result["number"] = row["kind_number"]
        return result

    def check_view(self, connection):
        """The view has each pair of a variable and a bit of a register that bears its name."""
        registers = connection.execute(
            "SELECT kernel_id, hardware_name, count(bit) FROM register JOIN bit ON register_id = id"
            " GROUP BY kernel_id, hardware_name"
        )
        bits = {(kernel, name): count for kernel, name, count in registers}
        expected = sum(
            bits.get(tuple(row), 0)
            for row in connection.execute("SELECT kernel_id, hardware_name FROM variable")
        )
        (count,) = connection.execute("SELECT count(*) FROM source_bit").fetchone()
        self.assertEqual(count, expected)


class Queries(ExportTest):
    def test_each_gives_what_the_documentation_shows(self):
        out = self.folder / "out.sqlite"
        self.inspect("sqlite", samples.example(CONSOLIDATOR, SOURCE, self.folder), out)
        connection = sqlite3.connect(out)
        self.addCleanup(connection.close)
        examples = re.findall(
            r"^```sql\n(.*?)^```\n+```text\n(.*?)^```$",
            (SOURCE / "docs/sqlite.md").read_text(),
            re.MULTILINE | re.DOTALL,
        )
        self.assertEqual(len(examples), 10)
        for query, shown in examples:
            with self.subTest(query):
                heading, _dashes, *rows = (self.cells(line) for line in shown.splitlines())
                result = connection.execute(query)
                self.assertEqual([column[0] for column in result.description], heading)
                self.assertEqual([[str(cell) for cell in row] for row in result], rows)

    def test_the_documentation_shows_the_tables_as_they_are(self):
        out = self.folder / "out.sqlite"
        path = self.folder / "db"
        path.write_bytes(naive.database())
        self.inspect("sqlite", path, out)
        connection = sqlite3.connect(out)
        self.addCleanup(connection.close)
        text = (SOURCE / "docs/sqlite.md").read_text()
        for name, columns in re.findall(r"^\| `(\w+)` \| (.*?) \|", text, re.MULTILINE):
            with self.subTest(name):
                shown = re.findall(r"`(\w+)`", columns)
                rows = connection.execute(f"SELECT name FROM pragma_table_info('{name}')")
                self.assertEqual([row[0] for row in rows], shown)
        documented = set(re.findall(r"^\| `(\w+)` \|", text, re.MULTILINE))
        rows = connection.execute("SELECT name FROM sqlite_schema WHERE type IN ('table', 'view')")
        self.assertEqual(documented, {row[0] for row in rows})

    def cells(self, line):
        """Two blanks or more stand between columns."""
        return re.split(r" {2,}", line.strip())


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], sys.argv[1].capitalize()])
