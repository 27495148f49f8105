"""Builds a wheel with CMake, for pip: needs cmake, a compiler, pybind11 and the installed library."""

import base64
import hashlib
import os
import pathlib
import shutil
import subprocess
import sys
import sysconfig
import tempfile
import zipfile

NAME, VERSION = "qeldevices", "1.3.0"
METADATA = f"""\
Metadata-Version: 2.1
Name: {NAME}
Version: {VERSION}
Summary: Laboratory plate readers from Python
Requires-Python: >=3.9
Requires-Dist: numpy
Provides-Extra: pandas
Requires-Dist: pandas; extra == "pandas"
"""


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    tag = "cp{0}{1}-cp{0}{1}-{2}".format(
        *sys.version_info[:2], sysconfig.get_platform().replace("-", "_").replace(".", "_"))
    wheel = f"{NAME}-{VERSION}-{tag}.whl"
    info = f"{NAME}-{VERSION}.dist-info"
    with tempfile.TemporaryDirectory() as scratch:
        installed = pathlib.Path(scratch, "installed")
        _build(pathlib.Path(scratch, "build"), installed)
        files = {str(path.relative_to(installed)): path.read_bytes()
                 for path in sorted(installed.rglob("*")) if path.is_file()}
    files[f"{info}/METADATA"] = METADATA.encode()
    files[f"{info}/WHEEL"] = (f"Wheel-Version: 1.0\nGenerator: {NAME}\nRoot-Is-Purelib: false\n"
                              f"Tag: {tag}\n").encode()
    files[f"{info}/RECORD"] = _record(files, f"{info}/RECORD").encode()
    with zipfile.ZipFile(os.path.join(wheel_directory, wheel), "w", zipfile.ZIP_DEFLATED) as archive:
        for name, data in files.items():
            archive.writestr(name, data)
    return wheel


def build_sdist(sdist_directory, config_settings=None):
    raise NotImplementedError("the package is built from the project's own sources")


def _build(build, installed):
    source = os.path.dirname(os.path.abspath(__file__))
    os.environ.setdefault("CMAKE_BUILD_TYPE", "Release")
    if shutil.which("ninja"):
        os.environ.setdefault("CMAKE_GENERATOR", "Ninja")
    for command in (
            ["cmake", "-S", source, "-B", build,
             f"-DCMAKE_INSTALL_PREFIX={installed}", "-DQELDEVICES_PYTHON_FOLDER=.",
             f"-DPython3_EXECUTABLE={sys.executable}"],
            ["cmake", "--build", build, "--parallel"],
            ["cmake", "--install", build, "--strip"]):
        subprocess.run(command, check=True)


def _record(files, own_name):
    lines = []
    for name, data in files.items():
        digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
        lines.append(f"{name},sha256={digest},{len(data)}")
    return "\n".join(lines + [f"{own_name},,"]) + "\n"
