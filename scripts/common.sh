# Shared by the commands of this folder; sourced, never run. The caller stands in the project's root.

export LC_ALL=C.UTF-8

say() { printf '\n== %s\n' "$*"; }

fail() {
    printf '\nFAILED: %s\n' "$*" >&2
    exit 1
}

# need_packages PACKAGE...: installs what is missing, as root or with sudo.
need_packages() {
    missing=
    for package in "$@"; do
        dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    say "Installing:$missing"
    as_root=
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || fail "these packages are missing and need root or sudo to install:$missing"
        as_root=sudo
    fi
    mkdir -p build
    if ! { $as_root apt-get update &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $missing; } \
        >build/packages.log 2>&1; then
        tail -n 20 build/packages.log >&2
        fail "could not install$missing (whole log: build/packages.log)"
    fi
}

need_build_packages() { need_packages cmake ninja-build g++-mingw-w64-x86-64 fp-utils; }

need_run_packages() { need_packages wine wine64 xvfb xauth fonts-wine procps; }

need_test_packages() { need_packages googletest clang-format-19 msitools wixl; }

# logged LOG COMMAND...: runs with the output in LOG; shows its end when it fails.
logged() {
    log=$1
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 || {
        tail -n 60 "$log" >&2
        fail "$* (whole log: $log)"
    }
}

build_delivered() {
    say "Building the plug-in, its texts and the help file"
    logged build/plugin-configure.log cmake --preset plugin
    logged build/plugin-build.log cmake --build --preset plugin
    ls -l dist/KZPWriterUI.dll dist/KZPWriterRes.dll dist/kzpwriter.chm | awk '{ printf "   %s  %d bytes\n", $NF, $5 }'
}

# build_plugin PRESET: the plug-in as that preset makes it (cmake --list-presets), in build/PRESET/dist.
build_plugin() {
    say "Building the plug-in of preset $1"
    logged "build/$1-configure.log" cmake --preset "$1"
    logged "build/$1-build.log" cmake --build --preset "$1"
}

build_tools() { # [PRESET]
    say "Building the driver host, the stand-ins and the tests"
    logged "build/${1:-tests}-configure.log" cmake --preset "${1:-tests}"
    logged "build/${1:-tests}-build.log" cmake --build --preset "${1:-tests}"
}

# build_tools_for PRESET: the tests, with that preset's plug-in beside them instead of the delivered one.
build_tools_for() {
    build_delivered
    build_tools
    build_plugin "$1"
    cp "build/$1/dist/KZPWriterUI.dll" build/tests/bin/
}

restore_delivered() { cp dist/KZPWriterUI.dll build/tests/bin/; }

# run_tests FOLDER [CTEST ARGUMENT...]: the tests of a build folder; sets $passed and $failed.
run_tests() {
    tests=$1
    shift
    start_second_machine
    say "Running the tests"
    (cd "$tests" && timeout 2400 ctest -j3 --output-on-failure --no-tests=error "$@" 2>&1 9>&- </dev/null || :) |
        tee "$tests/ctest.log"
    total=$(sed -n 's/^.* tests failed out of \([0-9]*\)$/\1/p' "$tests/ctest.log")
    failed=$(sed -n 's/^.* \([0-9]*\) tests failed out of [0-9]*$/\1/p' "$tests/ctest.log")
    [ -n "$total" ] || fail "the tests did not run to their end"
    passed=$((total - failed))
}

# Everything that runs under Wine runs in a prefix of the project's own, below build/. Set DISPLAY is used only when
# asked for (KZP_DESKTOP=1); otherwise a display of our own is started and stopped again.
wine_environment() {
    mkdir -p build/wine/home
    wine_root=$(cd build/wine && pwd)
    unset TMPDIR # Wine 10's server ends at once when it is set
    export WINEPREFIX="$wine_root/${KZP_MACHINE:-prefix}" HOME="$wine_root/home" WINEARCH=win64
    export WINEDEBUG="${WINEDEBUG:--all}"
    # The stand-in spooler is taken where it stands beside the program, Wine's own elsewhere.
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d;winspool.drv=n,b"
}

start_wine() { # [FOLDER of the tests' programs]
    tools=${1:-build/tests}
    wine_environment
    # A command that a test runs finds everything in place.
    [ -z "${KZP_WINE_RUNS:-}" ] || return 0
    export KZP_WINE_RUNS=1
    exec 9>"$wine_root/lock"
    flock 9 # one run at a time: they share the prefix's registry and desktop
    displays= machines=
    trap stop_wine EXIT
    trap 'exit 130' INT TERM
    [ "${KZP_DESKTOP:-0}" = 1 ] || start_display
    boot_wine
}

# A second prefix with a display of its own, never a person's desktop; scripts/second-machine runs a command in it.
start_second_machine() {
    first_prefix=$WINEPREFIX first_display=${DISPLAY:-} first_desktop=${KZP_DESKTOP:-0}
    WINEPREFIX="$wine_root/second" KZP_DESKTOP=0
    start_display
    boot_wine
    export KZP_SECOND_PREFIX="$WINEPREFIX" KZP_SECOND_DISPLAY="$DISPLAY"
    WINEPREFIX=$first_prefix DISPLAY=$first_display KZP_DESKTOP=$first_desktop
}

start_display() {
    rm -f "$wine_root/display"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$wine_root/display" 2>/dev/null 9>&- &
    displays="$displays $!"
    tries=0
    while [ ! -s "$wine_root/display" ]; do
        tries=$((tries + 1))
        [ $tries -lt 300 ] || fail "the virtual display did not start"
        sleep 0.1
    done
    DISPLAY=":$(cat "$wine_root/display")"
    export DISPLAY
}

boot_wine() {
    machines="$machines ${WINEPREFIX##*/}"
    if [ ! -f "$WINEPREFIX/prepared" ]; then
        say "Preparing Wine (once, about 20 s)"
        rm -rf "$WINEPREFIX"
        timeout 300 wineboot -i >build/wine/boot.log 2>&1 9>&- || fail "Wine could not set up its prefix; see build/wine/boot.log"
        wineserver -w
        # Crashes print a trace and end instead of waiting for somebody.
        registry_add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0
        registry_add 'HKCU\Software\Wine\Explorer\Desktops' /v KZP /d 1280x1024
        wineserver -w
        # Debian keeps Wine's fonts where this Wine does not look; dialogs want Tahoma.
        mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"
        ln -sf /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
        touch "$WINEPREFIX/prepared"
    fi
    wineserver -p 9>&-
    choose_desktop
    # Services start here, away from the pipes of whoever reads our output.
    timeout 120 wineboot >/dev/null 2>&1 9>&- </dev/null || fail "Wine did not start"
    if [ -f "$tools/bin/keepdesktop.exe" ]; then
        timeout 120 wine "$tools/bin/keepdesktop.exe" >/dev/null 2>&1 9>&- </dev/null || fail "Wine's desktop did not start"
    fi
}

# On a display of our own all windows stand in one that Wine keeps (its "virtual desktop"), so that Wine alone says which
# of them has the keyboard. Without a window manager the X server says it otherwise, late on a busy machine, and
# synthesised presses go to nobody meanwhile. On a person's desktop the windows are that desktop's.
choose_desktop() {
    [ "${KZP_DESKTOP:-0}" != "$(cat "$WINEPREFIX/desktop" 2>/dev/null)" ] || return 0
    if [ "${KZP_DESKTOP:-0}" = 1 ]; then
        registry_add 'HKCU\Software\Wine\X11 Driver' /v Managed /d Y
        registry_forget 'HKCU\Software\Wine\Explorer' /v Desktop
    else
        registry_add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N
        registry_add 'HKCU\Software\Wine\Explorer' /v Desktop /d KZP
    fi
    echo "${KZP_DESKTOP:-0}" >"$WINEPREFIX/desktop"
}

registry_add() { # KEY /v NAME [/t TYPE] /d DATA
    timeout 60 wine reg add "$@" /f >/dev/null 2>&1 9>&- </dev/null || fail "the registry of Wine does not take $*"
}

registry_forget() { # KEY [/v NAME]: gone, or not there at all
    timeout 60 wine reg delete "$@" /f >/dev/null 2>&1 9>&- </dev/null || :
}

# As on a machine where the product was just installed, for a user who never printed.
forget_printer() {
    printers='HKLM\SYSTEM\CurrentControlSet\Control\Print'
    registry_forget 'HKCU\SOFTWARE\Brimlake'
    registry_forget "$printers\\Printers\\Brimlake KZP Writer for 2D"
    registry_forget "$printers\\Forms" /v 'User Defined'
}

stop_wine() {
    status=$?
    trap - EXIT
    for machine in $machines; do
        WINEPREFIX="$wine_root/$machine" wineserver -k 2>/dev/null || :
    done
    [ -z "$displays" ] || kill $displays 2>/dev/null || :
    exit $status
}
