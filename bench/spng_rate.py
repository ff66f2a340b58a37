#!/usr/bin/env python3
"""The rate at which libspng alone makes a PNG of a photograph of 48 megapixels, RGB of 8 bits.

    spng_rate.py

Encodes the pixels of "flate-48" of make_images.py from memory to memory, with the library's own settings and with its
fastest that filter (compression level 1, filters Sub and Up). image_speed.py runs corvane as a whole: there pixels
are also inflated, and written to the disk.
"""

import ctypes
import time

import make_images

ENCODER, AS_FILE, FINALIZE = 2, 256, 2
LEVEL, FILTERS, TO_BUFFER = 2, 10, 12
SUB_AND_UP = 16 | 32


class Header(ctypes.Structure):
    _fields_ = [("width", ctypes.c_uint32), ("height", ctypes.c_uint32), ("bits", ctypes.c_uint8),
                ("colours", ctypes.c_uint8), ("compression", ctypes.c_uint8), ("filter", ctypes.c_uint8),
                ("interlace", ctypes.c_uint8)]


def encode(library, pixels, settings):
    """Seconds of processor time, and bytes of the file."""
    height, width, _ = pixels.shape
    context = ctypes.c_void_p(library.spng_ctx_new(ENCODER))
    try:
        header = Header(width, height, 8, 2, 0, 0, 0)
        library.spng_set_ihdr(context, ctypes.byref(header))
        for option, value in (TO_BUFFER, 1), *settings:
            if library.spng_set_option(context, option, value) != 0:
                raise RuntimeError("libspng does not take an option")
        start = time.process_time()
        fault = library.spng_encode_image(context, pixels.ctypes.data_as(ctypes.c_void_p),
                                          ctypes.c_size_t(pixels.nbytes), AS_FILE, FINALIZE)
        if fault != 0:
            raise RuntimeError(f"libspng fails with {fault}")
        seconds = time.process_time() - start
        size, error = ctypes.c_size_t(), ctypes.c_int()
        library.spng_get_png_buffer.restype = ctypes.c_void_p
        made = library.spng_get_png_buffer(context, ctypes.byref(size), ctypes.byref(error))
        ctypes.CDLL(None).free(ctypes.c_void_p(made))
        return seconds, size.value
    finally:
        library.spng_ctx_free(context)


def main():
    library = ctypes.CDLL("libspng.so.0")
    library.spng_ctx_new.restype = ctypes.c_void_p
    pixels = make_images.photograph(8000, 6000)
    for name, settings in ("its own settings", ()), ("level 1, Sub and Up", ((LEVEL, 1), (FILTERS, SUB_AND_UP))):
        seconds, size = encode(library, pixels, settings)
        print(f"{name:20}{seconds:8.3f} s{pixels.nbytes / seconds / 1e6:8.1f} MB/s{size:12,} bytes")


if __name__ == "__main__":
    main()
