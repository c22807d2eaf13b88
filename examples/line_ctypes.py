"""Prints the integral of a line of a spectrum, smoothed before: line_ctypes.py LIBKEM SPECTRUM FROM TO"""
import ctypes
import sys
from ctypes import POINTER, byref, c_char, c_char_p, c_double, c_int32, c_size_t, c_void_p


class Failure(ctypes.Structure):
    _fields_ = [("code", c_int32), ("sentence", c_char * 1020)]


kem = ctypes.CDLL(sys.argv[1])
for name, result, *arguments in [
    ("error_size", c_size_t),
    ("open", c_void_p, c_char_p, c_int32, POINTER(Failure)),
    ("axis_name", c_char_p, c_void_p, c_size_t),
    ("axis_unit", c_char_p, c_void_p, c_size_t),
    ("to_record", c_void_p, c_void_p, ctypes.c_int, POINTER(Failure)),
    ("apply", c_void_p, c_void_p, c_char_p, POINTER(c_double), c_size_t, c_void_p, POINTER(Failure)),
    ("measure", c_double, c_void_p, c_char_p, POINTER(c_double), c_size_t, POINTER(Failure)),
    ("dataset_free", None, c_void_p),
    ("record_free", None, c_void_p),
]:
    function = getattr(kem, f"kem_{name}")
    function.restype, function.argtypes = result, arguments

failure = Failure()
assert kem.kem_error_size() == ctypes.sizeof(failure), "this libkem is another one"


def checked(value):
    if failure.code:
        sys.exit(failure.sentence.decode())
    return value


file, low, high = sys.argv[2], float(sys.argv[3]), float(sys.argv[4])
spectrum = checked(kem.kem_open(file.encode(), 1, byref(failure)))
record = checked(kem.kem_to_record(spectrum, 0, byref(failure)))
smooth = checked(kem.kem_apply(record, b"smooth", (c_double * 1)(9), 1, None, byref(failure)))
integral = checked(kem.kem_measure(smooth, b"integral", (c_double * 2)(low, high), 2, byref(failure)))
name, unit = kem.kem_axis_name(spectrum, 0).decode(), kem.kem_axis_unit(spectrum, 0).decode()
print(f"{name}, {low:g} to {high:g} {unit}: {integral:.6g}")
for handle in (smooth, record):
    kem.kem_record_free(handle)
kem.kem_dataset_free(spectrum)
