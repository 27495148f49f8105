#!/bin/sh
# Installs the build and uses the installation as other projects would: installed.sh CASE
#
# Wants SOURCE_DIR and BUILD_DIR, the top of either tree, SCRATCH_DIR, a folder to work in, and the
# build's CXX and CXXFLAGS. The case "install" goes first. Each other case moves a copy of that
# installation to a place of its own, so that none depends on another nor on where it stood first.
set -eu

case=$1
scratch=$SCRATCH_DIR/$case
prefix=$scratch/prefix
rm -rf "$scratch"
mkdir -p "$scratch"
export LC_ALL=C.UTF-8

fail()
{
    echo "$case: $*"
    exit 1
}

quietly()
{
    "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log"; fail "'$*' failed"; }
}

# has FILE PATTERN: some line of the file matches.
has()
{
    grep -q -e "$2" "$1" || { cat "$1"; fail "expected a line like '$2'"; }
}

# build_against_installation PROJECT: from sources to a part of the installation.
build_against_installation()
{
    quietly cmake -S "$1" -B "$scratch/build" -G Ninja \
        -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_INSTALL_PREFIX="$prefix"
    quietly cmake --build "$scratch/build" --target install
}

# keeps_rules TEST: the driver's project has this test, and it passes.
keeps_rules()
{
    quietly ctest --test-dir "$scratch/build" --output-on-failure --no-tests=error -R "^$1\$"
}

# The only symbols that a driver shows are those by which Qt finds its plugin object; what templates
# leave behind is weak.
is_tight()
{
    test -f "$1" || fail "there is no '$1'"
    shown=$(nm -D --defined-only "$1" | awk '$2 ~ /[A-TX-Z]/ { print $3 }' | sort | xargs)
    test "$shown" = "qt_plugin_instance qt_plugin_query_metadata" || fail "'$1' shows: $shown"
}

# Nothing in an installation looks for libraries in the folders of the build or of another prefix.
is_movable()
{
    for file in "$prefix"/lib/*.so "$prefix"/bin/* "$prefix"/bin/devicedrivers/*; do
        test -f "$file" || continue
        path=$(readelf -d "$file" | sed -n 's/.*RUNPATH.*\[\(.*\)\]/\1/p')
        case $path in
        "" | \$ORIGIN | \$ORIGIN/*) ;;
        *) fail "'$file' looks for libraries in '$path'" ;;
        esac
    done
}

# has_plate FILE: reads of eight rows of twelve numbers.
has_plate()
{
    rows=$(awk 'NF == 13 && /^[A-H]/ && $2 > 0 && $13 > 0' "$1" | wc -l)
    test "$rows" -ge 8 && test $((rows % 8)) -eq 0 || { cat "$1"; fail "expected reads of 8 rows, found $rows rows"; }
}

if test "$case" = install; then
    quietly cmake --install "$BUILD_DIR" --prefix "$prefix"
    is_movable
    exit
fi
cp -a "$SCRATCH_DIR/install/prefix" "$prefix"
examples=$prefix/share/doc/qeldevices/examples

case $case in
system_prefix)
    DESTDIR=$scratch/stage quietly cmake --install "$BUILD_DIR" --prefix /usr
    plugins=$("$(pkg-config --variable=host_bins Qt5Core)/qmake" -query QT_INSTALL_PLUGINS)
    is_tight "$scratch/stage$plugins/devicedrivers/simulator.so"
    test -f "$scratch/stage/usr/share/doc/qeldevices/doctor.schema.json" || fail "no schemas"
    test ! -e "$scratch/stage/usr/bin/devicedrivers" || fail "a driver stands beside the tool"
    ;;
driver)
    build_against_installation "$examples/minimal-driver"
    is_tight "$prefix/bin/devicedrivers/minimal.so"
    keeps_rules minimal_conformance
    "$prefix/bin/qelctl" list >"$scratch/list"
    has "$scratch/list" MIN-0001
    "$prefix/bin/qelctl" run MIN-0001 ambient-temperature >"$scratch/result"
    has "$scratch/result" '21\.5'
    ;;
incomplete_driver)
    cp -r "$examples/minimal-driver" "$scratch/project"
    echo 'void forgotten(); void user() { forgotten(); }' >>"$scratch/project/plugin.cpp"
    if (build_against_installation "$scratch/project") >"$scratch/messages"; then
        fail "a driver with an undefined symbol was linked"
    fi
    has "$scratch/messages" 'undefined.*forgotten'
    ;;
simulator)
    rm -r "$prefix/bin/devicedrivers"
    mkdir "$scratch/project"
    cp -r "$SOURCE_DIR/drivers/simulator" "$scratch/project"
    cat >"$scratch/project/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.22)
project(copied LANGUAGES CXX)
find_package(QelDevices 1.3 REQUIRED)
add_subdirectory(simulator)
END
    build_against_installation "$scratch/project"
    is_tight "$prefix/bin/devicedrivers/simulator.so"
    "$prefix/bin/qelctl" list >"$scratch/list"
    has "$scratch/list" SIM-A-0001
    ;;
application)
    build_against_installation "$examples/minimal-application"
    "$prefix/bin/minimal-application" >"$scratch/result"
    has_plate "$scratch/result"
    "$prefix/bin/minimal-application" SIM-A-0001 >"$scratch/result"
    has_plate "$scratch/result"
    ! "$prefix/bin/minimal-application" nonesuch 2>"$scratch/result" || fail "it knows 'nonesuch'"
    has "$scratch/result" 'There is no instrument "nonesuch"'
    # Elsewhere it finds no driver but those it is told of.
    mv "$prefix/bin/devicedrivers" "$scratch/drivers"
    ! "$prefix/bin/minimal-application" 2>"$scratch/result" || fail "it measures without drivers"
    QELDEVICES_PLUGIN_PATH=$scratch/drivers "$prefix/bin/minimal-application" >"$scratch/result"
    has_plate "$scratch/result"
    ;;
widgets)
    cp -r "$examples/widgets-application" "$scratch/project"
    build_against_installation "$scratch/project"
    cp "$SOURCE_DIR/tests/widgets-application/main.cpp" "$scratch/project"
    cat >>"$scratch/project/CMakeLists.txt" <<'END'
find_package(Qt5 REQUIRED COMPONENTS Test)
target_link_libraries(widgets-application PRIVATE Qt5::Test)
END
    build_against_installation "$scratch/project"
    QT_QPA_PLATFORM=offscreen quietly "$prefix/bin/widgets-application"
    ;;
server)
    # Called by its name from anywhere, as an operator does.
    export XDG_RUNTIME_DIR="$scratch/run" XDG_CONFIG_HOME="$scratch/config"
    PATH=$prefix/bin:$PATH
    cd "$scratch"
    mkdir -m 700 run run/qeldevices
    qeldevicesd --state state --socket "$XDG_RUNTIME_DIR/qeldevices/socket" 2>server &
    server=$!
    trap 'kill $server; wait' EXIT
    for _ in $(seq 100); do
        # The driver may still be starting when the server answers.
        qelctl connect --local >connect 2>&1 && grep -q SIM-A-0001 connect && break
        sleep 0.1
    done
    has connect 'SIM-A-0001'
    ;;
pkg_config)
    flags=$(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --cflags --libs qelfrontend)
    # shellcheck disable=SC2086 # several words each
    quietly "$CXX" -std=c++17 $CXXFLAGS "$examples/minimal-application/main.cpp" \
        -o "$prefix/bin/by-hand" $flags -Wl,-rpath,"$prefix/lib"
    "$prefix/bin/by-hand" >"$scratch/result"
    has_plate "$scratch/result"
    ;;
*)
    fail "there is no such case"
    ;;
esac
