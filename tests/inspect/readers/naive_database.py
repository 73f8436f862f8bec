"""Databases read and written in the plainest way, with nothing of the program's code.

parse() gives a database's bytes as the JSON document that the inspector is to make of them. The
functions below it put databases together.
"""

import codecs
import struct

TYPE_NAMES = {0: "OpenCL", 1: "C", 2: "RTL", 4: "HLS"}


def _replace_each_byte(error):
    return "\ufffd" * (error.end - error.start), error.end


codecs.register_error("replace-each-byte", _replace_each_byte)


def decoded(data):
    return data.decode("utf-8", errors="replace-each-byte")


class EndOfFile(Exception):
    pass


class Reader:
    def __init__(self, data, position=0):
        self.data = data
        self.position = position

    def bytes(self, size):
        if self.position + size > len(self.data):
            raise EndOfFile
        self.position += size
        return self.data[self.position - size : self.position]

    def number(self):
        return struct.unpack("<I", self.bytes(4))[0]

    def text(self):
        return self.bytes(self.number()).split(b"\0")[0]

    def list(self, read):
        return [read() for _ in range(self.number())]

    def place(self):
        return self.number(), self.number()


def places(pairs):
    bits = [
        {"bit": bit, "address": address, "offset": offset}
        for bit, (address, offset) in enumerate(pairs)
        if (address, offset) != (0, 0)
    ]
    return {"width": len(pairs), "bits": bits}


def read_variable(reader):
    source, hardware, type_text = reader.text(), reader.text(), reader.text()
    locations = reader.list(lambda: reader.list(reader.place))
    result = {
        "source": decoded(source),
        "hardware": decoded(hardware),
        "type": decoded(type_text),
        "width": 64 if b"*" in type_text else 8 if b"char" in type_text else 32,
    }
    if locations:
        result["locations"] = [places(pairs) for pairs in locations]
    return result


def instance_of(net, paths):
    """The longest path in the net; of several of this length, the one that ends first."""
    found = [path for path in paths if path in net]
    return min(found, key=lambda path: (-len(path), net.find(path)), default=None)


def read_register(reader, paths):
    net = reader.text()
    pairs = reader.list(reader.place)
    instance = instance_of(net, paths)
    return {
        "net": decoded(net),
        "hardware": decoded(net.split(b"/")[-1]),
        "instance": None if instance is None else decoded(instance),
        **places(pairs),
    }


def read_condition(reader):
    kind, condition = reader.number(), decoded(reader.text())
    if kind == 0:
        return {"kind": "start", "condition": condition}
    if kind == 1:
        return {"kind": "stop", "condition": condition}
    if kind == 2:
        line, file = reader.number(), decoded(reader.text())
        return {"kind": "line", "file": file, "line": line, "condition": condition}
    return {"kind": "error", "number": kind, "condition": condition}


def read_kernel(reader):
    name = reader.text()
    paths = reader.list(reader.text)
    number = reader.number()
    return {
        "name": decoded(name),
        "type": {"number": number, "name": TYPE_NAMES.get(number, "Unknown")},
        "instances": [decoded(path) for path in paths],
        "arguments": reader.list(lambda: read_variable(reader)),
        "variables": reader.list(lambda: read_variable(reader)),
        "registers": reader.list(lambda: read_register(reader, paths)),
        "conditions": reader.list(lambda: read_condition(reader)),
        "brams": [decoded(bram) for bram in reader.list(reader.text)],
    }


def parse(data):
    """The document, and the DWARF blob or None. Reading ends at the first section that is cut off;
    what came before stays."""
    reader = Reader(data)
    _, major, minor, count = (reader.number() for _ in range(4))
    entries = [struct.unpack("<IIQII", reader.bytes(24)) for _ in range(count)]
    project, dwarf, kernels, complete = b"", None, [], True
    try:
        for kind, _, offset, size, _ in entries:
            reader = Reader(data, offset)
            if kind == 0:
                project = reader.bytes(size).split(b"\0")[0]
            elif kind == 1:
                dwarf = reader.bytes(size)
            elif kind == 2:
                for _ in range(reader.number()):
                    kernels.append(read_kernel(reader))
    except EndOfFile:
        complete = False
    document = {
        "format": 1,
        "version": {"major": major, "minor": minor},
        "complete": complete,
        "project": decoded(project) or None,
        "dwarf": None if dwarf is None else {"size": len(dwarf)},
        "kernels": kernels,
    }
    return document, dwarf


def number(value):
    return struct.pack("<I", value)


def text(data):
    return number(len(data)) + data


def elements(items):
    return number(len(items)) + b"".join(items)


def location_list(pairs):
    return elements([struct.pack("<II", *pair) for pair in pairs])


def variable(source, hardware, type_text, locations=()):
    return (
        text(source)
        + text(hardware)
        + text(type_text)
        + elements([location_list(pairs) for pairs in locations])
    )


def register(net, pairs):
    return text(net) + location_list(pairs)


def condition(kind, condition_text, line=0, file=b""):
    result = number(kind) + text(condition_text)
    return result + number(line) + text(file) if kind == 2 else result


def kernel(
    name,
    paths=(),
    type_number=3,
    arguments=(),
    variables=(),
    registers=(),
    conditions=(),
    brams=(),
):
    return (
        text(name)
        + elements([text(path) for path in paths])
        + number(type_number)
        + elements(arguments)
        + elements(variables)
        + elements(registers)
        + elements(conditions)
        + elements([text(bram) for bram in brams])
    )


def database(*sections, version=(1, 1)):
    """Each section is its type and its payload."""
    result = struct.pack("<IIII", 0xBEEFDAD4, *version, len(sections))
    offset = 16 + 24 * len(sections)
    for kind, payload in sections:
        result += struct.pack("<IIQII", kind, 0, offset, len(payload), 0)
        offset += len(payload)
    return result + b"".join(payload for _, payload in sections)
