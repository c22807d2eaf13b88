-- Prints the integral of a line of a spectrum, smoothed before: luajit line.lua LIBKEM SPECTRUM FROM TO
local ffi = require "ffi"
ffi.cdef [[
typedef struct { int32_t code; char sentence[1020]; } kem_error;
size_t kem_error_size(void);
void *kem_open(const char *file, int32_t item, kem_error *error);
void kem_dataset_free(void *dataset);
const char *kem_axis_name(const void *dataset, size_t axis);
const char *kem_axis_unit(const void *dataset, size_t axis);
void *kem_to_record(const void *dataset, int part, kem_error *error);
void *kem_apply(const void *record, const char *operation, const double *arguments, size_t count, const void *other,
                kem_error *error);
double kem_measure(const void *record, const char *measure, const double *arguments, size_t count, kem_error *error);
void kem_record_free(void *record);
]]
local kem = ffi.load(arg[1])
local failure = ffi.new("kem_error")
assert(kem.kem_error_size() == ffi.sizeof(failure), "this libkem is another one")

-- What a function of kem gives, freed when nobody has it any more.
local function checked(value, free)
  if failure.code ~= 0 then
    io.stderr:write(ffi.string(failure.sentence), "\n")
    os.exit(1)
  end
  return free and ffi.gc(value, free) or value
end

local from, to = tonumber(arg[3]), tonumber(arg[4])
local spectrum = checked(kem.kem_open(arg[2], 1, failure), kem.kem_dataset_free)
local record = checked(kem.kem_to_record(spectrum, 0, failure), kem.kem_record_free)
local smooth = checked(kem.kem_apply(record, "smooth", ffi.new("double[1]", 9), 1, nil, failure), kem.kem_record_free)
local integral = checked(kem.kem_measure(smooth, "integral", ffi.new("double[2]", from, to), 2, failure))
print(string.format("%s, %g to %g %s: %.6g", ffi.string(kem.kem_axis_name(spectrum, 0)), from, to,
                    ffi.string(kem.kem_axis_unit(spectrum, 0)), integral))
