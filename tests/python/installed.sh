#!/bin/sh
# Uses the package from an installation of the build, and built by pip against that: installed.sh
#
# Wants PREFIX, the installation, SCRATCH_DIR, a folder to work in, SOURCE_DIR, the top of the
# sources, and PYTHON, the interpreter.
set -eu
rm -rf "$SCRATCH_DIR"
mkdir -p "$SCRATCH_DIR"
cp -a "$PREFIX" "$SCRATCH_DIR/prefix"

measure()
{
    (cd "$SCRATCH_DIR" && PYTHONPATH=$1 "$PYTHON" -B -c '
import sys, qeldevices as qel
assert qel.__file__.startswith(sys.argv[1]), qel.__file__
with qel.open("SIM-A-0001") as reader:
    plate = reader.absorbance(wavelengths=[450, 620])
assert plate.to_pandas().value.gt(0).all()
' "$1")
}

measure "$(echo "$SCRATCH_DIR"/prefix/lib/python3*/*-packages)"

# Not optimised, to be quick.
export CMAKE_BUILD_TYPE=Debug
if ! CMAKE_PREFIX_PATH=$SCRATCH_DIR/prefix "$PYTHON" -m pip install --quiet --no-index --no-deps \
        --disable-pip-version-check --target "$SCRATCH_DIR/by-pip" "$SOURCE_DIR/python" \
        >"$SCRATCH_DIR/log" 2>&1; then
    cat "$SCRATCH_DIR/log"
    exit 1
fi
measure "$SCRATCH_DIR/by-pip"
