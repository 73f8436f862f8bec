"""The databases that the exports are compared on: the example project, and ones that are hard to
export."""

import pathlib
import subprocess

import naive_database as naive

# All bytes but zero, which ends a text; and what JSON, SQL and UTF-8 decoders stumble over.
ODD_TEXTS = [
    bytes(range(1, 256)),
    b"\"quoted\" \\back\\slash 'single' ; DROP TABLE kernel; --",
    b"\x1b[2J\r\n\t\b\f\x7f",
    "\u2028\u2029\ufeff\ufffd\U0001f527".encode(),
    b"\xc0\x80\xed\xa0\x80\xf4\x90\x80\x80\xf8\x88\x80\x80\x80",
    b"\xe2\x82\xf0\x9f\x94\xf0\x9f\xff\xe2",
    b"before\0behind",
    b"",
]


def example(consolidator, source, folder):
    """The example project's database, as its command makes it."""
    path = folder / "accelerator.bin"
    inputs = [
        ("-d", "program.dwarf"),
        ("-h", "system.hier"),
        ("-k", "kernel.xml"),
        ("-x", "checksum_auxiliary.xml"),
        ("-s", "scale_rows.hls"),
        ("-s", "checksum.hls"),
        ("-l", "top.ll"),
        ("-r", "ram_utilization.rpt"),
    ]
    words = [consolidator, "-c", "-f", path, "-p", "accelerator"]
    for option, name in inputs:
        words += [option, pathlib.Path(source) / "examples" / name]
    subprocess.run(words, check=True)
    return path


def odd_kernel(odd):
    return naive.kernel(
        odd,
        [odd, b"top/k_1", b"top/k_10", b"top/k_1"],
        77,
        [naive.variable(odd, odd, odd), naive.variable(odd, odd, b"char*")],
        [naive.variable(b"v", b"v_reg", b"char", [[], [(0, 0), (1, 2)], [(0, 1)]])],
        [
            naive.register(b"/top/k_10/" + odd, [(0, 0), (0xFFFFFFFF, 0xFFFFFFFF), (0, 0)]),
            naive.register(b"/top/k_1/v_reg", [(1, 0), (0, 1)]),
            naive.register(odd + b"/", []),
            naive.register(b"elsewhere", [(0, 0)] * 1000),
        ],
        [
            naive.condition(0, odd),
            naive.condition(1, b""),
            naive.condition(2, odd, 0xFFFFFFFF, odd),
            naive.condition(3, odd),
            naive.condition(0xFFFFFFFF, b""),
        ],
        [odd, odd],
    )


def kernel_data(*kernels):
    return 2, naive.elements(list(kernels))


def hostile():
    """By name; all but "cut off" are whole."""
    megabyte = bytes(range(1, 256)) * 4112
    odd = naive.database(
        (0, b"first"),
        (1, b"first"),
        (0, ODD_TEXTS[0]),
        (3, b"{  }\0"),
        kernel_data(*[odd_kernel(odd) for odd in ODD_TEXTS]),
        (1, bytes(range(256)) * 100),
        kernel_data(naive.kernel(b"another")),
    )
    return {
        "empty": naive.database(),
        "older": naive.database((0, b"\0name"), version=(0, 0xFFFFFFFF)),
        "odd texts": odd,
        "megabyte": naive.database(
            (0, megabyte),
            kernel_data(
                naive.kernel(
                    megabyte,
                    [megabyte],
                    variables=[naive.variable(b"v", megabyte, b"int")],
                    registers=[naive.register(megabyte + b"/" + megabyte, [(1, 2)])],
                )
            ),
        ),
        "many small kernels": naive.database(kernel_data(*[naive.kernel(b"k")] * 1000)),
        "cut off": naive.database(
            (0, b"name"), kernel_data(odd_kernel(b"first"), odd_kernel(b"second"))
        )[:-1],
    }
