"""The rooms of the product are as docs/architecture.md draws them.

    architecture_test.py arrows|files SOURCE_FOLDER

arrows: what each file includes lies in its own room or in one that its room may know. files: every
file and folder that docs/architecture.md names is there.

Each also tries itself out on a case that it must not let pass.
"""

import collections
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(sys.argv[2])

# Whom each room knows beside itself. A file is in the room with the longest name that its path begins
# with. The parser of shared/schemas is a room of its own: only who reads XML knows it.
KNOWS = {
    "shared": set(),
    "shared/schemas": set(),
    "model": {"shared"},
    "consolidated": {"model", "shared"},
    "readers": {"consolidated", "model", "shared", "shared/schemas"},
    "driver": {"readers", "consolidated", "model", "shared"},
    "query": {"consolidated", "model", "shared"},
    "inspect": {"query", "driver", "readers", "consolidated", "model", "shared", "shared/schemas"},
}

# Includes that break the order on purpose, each with its reason.
EXCEPTIONS = {
    ("model/RAMFile.h", "consolidated/InputFile.h"):
        "a reader, which programs that use the library include from model/",
}

Include = collections.namedtuple("Include", "file line included")


def room_of(path):
    """The room that a path from the top folder lies in; None outside of all rooms."""
    rooms = [room for room in KNOWS if path.startswith(room + "/")]
    return max(rooms, key=len, default=None)


def includes():
    """What the product's files include between double quotes."""
    top_folders = {room.partition("/")[0] for room in KNOWS}
    for folder in sorted(top_folders):
        for path in sorted((SOURCE / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                if match := re.match(r'\s*#\s*include\s*"([^"]*)"', line):
                    yield Include(path.relative_to(SOURCE).as_posix(), number, match[1])


def backwards(all_includes):
    """Those that break the order, but for the exceptions, as a compiler would print them."""
    for include in all_includes:
        ours, theirs = room_of(include.file), room_of(include.included)
        if (include.file, include.included) in EXCEPTIONS or ours == theirs:
            continue
        if theirs not in KNOWS[ours]:
            yield (f"{include.file}:{include.line}: includes {include.included}, but {ours}/ knows only "
                   f"{', '.join(sorted(KNOWS[ours])) or 'itself'}")


class ArrowsTest(unittest.TestCase):
    def test_all_includes_follow_the_arrows(self):
        found = list(includes())
        self.assertGreater(len(found), 300, "the includes were not found")
        self.assertEqual("", "\n".join(backwards(found)))

    def test_no_arrow_leads_back(self):
        # Rooms that know a room know what it knows, so a circle would show as a room knowing itself;
        # only the parser of XML is kept from some who know its users.
        for room, known in KNOWS.items():
            for other in known:
                self.assertNotIn(room, KNOWS[other])
                self.assertLessEqual(KNOWS[other] - {"shared/schemas"}, known)

    def test_each_exception_is_needed(self):
        self.assertLessEqual(set(EXCEPTIONS), {(one.file, one.included) for one in includes()})

    def test_includes_that_point_backwards_are_noticed(self):
        wrong = [Include("shared/Words.cpp", 1, "model/Kernel.h"),
                 Include("model/Kernel.cpp", 2, "consolidated/InputFile.h"),
                 Include("readers/LLFile.cpp", 3, "driver/Inputs.h"),
                 Include("query/Stops.cpp", 4, "readers/LLFile.h"),
                 Include("query/Stops.cpp", 5, "shared/schemas/XmlReader.h"),
                 Include("driver/Driver.cpp", 6, "inspect/Inspector.h"),
                 Include("model/Kernel.cpp", 7, "elsewhere/Kernel.h"),
                 Include("model/Kernel.cpp", 8, "KernelType.h")]
        right = [Include("query/integrity/ContainerCheck.cpp", 1, "query/Words.h"),
                 Include("shared/schemas/Binding.cpp", 2, "shared/schemas/Binding.h"),
                 Include("inspect/main.cpp", 3, "driver/Process.h")]
        self.assertEqual(len(wrong), len(list(backwards(wrong))))
        self.assertEqual([], list(backwards(right)))


def named_paths(text):
    """What a document names between backticks as a path of ours: `shared/KeyedHash`, `driver/Inputs.*`,
    `query/integrity/`, `SECURITY.md`. Examples of other people's files have no folder."""
    for name in re.findall(r"`([\w./*-]+)`", text):
        if ("/" in name and not name.startswith("/")) or name.endswith(".md"):
            yield name


def is_there(name):
    """Whether there is such a folder, if it ends with "/", or such a file, with or without its ending."""
    if name.endswith("/"):
        return (SOURCE / name).is_dir()
    return any(path.is_file() for pattern in (name, name + ".*") for path in SOURCE.glob(pattern))


class FilesTest(unittest.TestCase):
    def test_all_that_is_named_is_there(self):
        names = list(named_paths((SOURCE / "docs/architecture.md").read_text(encoding="utf-8")))
        self.assertGreater(len(names), 50, "the names were not found")
        self.assertEqual([], [name for name in names if not is_there(name)])

    def test_links_lead_somewhere(self):
        text = (SOURCE / "docs/architecture.md").read_text(encoding="utf-8")
        links = re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", text)
        self.assertEqual([], [link for link in links if not (SOURCE / "docs" / link).exists()])

    def test_what_is_not_there_is_noticed(self):
        text = "`model/Kernel` `model/Kernal.h` `queries/` `driver/Inputs.*` `db.bin` `GONE.md` `query/`"
        names = list(named_paths(text))
        self.assertEqual(["model/Kernal.h", "queries/", "GONE.md"],
                         [name for name in names if not is_there(name)])


if __name__ == "__main__":
    tests = {"arrows": ArrowsTest, "files": FilesTest}
    suite = unittest.defaultTestLoader.loadTestsFromTestCase(tests[sys.argv[1]])
    sys.exit(not unittest.TextTestRunner().run(suite).wasSuccessful())
